#pragma once

#include "base/async/CancellationToken.h"
#include "base/async/Clock.h"
#include "platform/ports/MicrophoneAccess.h"
#include "platform/ports/ScreenCaptureAccess.h"
#include "platform/ports/SettingsOpener.h"

#include <QCoroTask>
#include <QObject>
#include <QString>

#include <chrono>
#include <optional>

namespace kestrum {

// The interface's view of the two permissions: screen capture, without which nothing records, and the
// microphone, which is optional. It reads the states, asks for them, and sends the user to the system's
// settings once asking is no longer possible. The coordinator and the capturer read the system's state
// by themselves and do not depend on this object.
//
// Threads: main thread throughout; the microphone answer resumes on the main thread before any field
// changes. Every field is published through `changed`. The ports must outlive the object.
class RecordingPermissions : public QObject {
    Q_OBJECT

  public:
    static constexpr Clock::Duration kPollPeriod = std::chrono::seconds(2);
    static inline const QString kSettingsLinkPrefix =
        QStringLiteral("x-apple.systempreferences:com.apple.preference.security?");
    static inline const QString kScreenCaptureAnchor = QStringLiteral("Privacy_ScreenCapture");
    static inline const QString kMicrophoneAnchor = QStringLiteral("Privacy_Microphone");
    static inline const QString kSettingsErrorText =
        QStringLiteral("Open System Settings → Privacy & Security to manage access for Kestrum.");

    // `settingsErrorText` is what `settingsError` says when the settings cannot be opened; a platform with
    // no settings pane for these permissions gives its own advice there.
    RecordingPermissions(ScreenCaptureAccess& screenCaptureAccess, MicrophoneAccess& microphoneAccess,
                         SettingsOpener& settingsOpener, QString settingsErrorText = kSettingsErrorText,
                         QObject* parent = nullptr);

    bool hasScreenAccess() const { return hasScreenAccess_; }
    MicrophoneAccess::Status microphoneStatus() const { return microphoneStatus_; }
    bool isRequestingMicrophone() const { return isRequestingMicrophone_; }
    // The system prompt was shown in this run; never stored, so a restart may prompt once more.
    bool hasRequestedScreenAccess() const { return hasRequestedScreenAccess_; }
    // The text shown when the system's settings could not be opened.
    std::optional<QString> settingsError() const { return settingsError_; }

    // Reads both states into the fields.
    void refresh();
    // Prompts once per run; after that, opens the screen capture pane of the settings instead.
    void requestScreenAccess();
    // Prompts when the state is undecided; opens the microphone pane when access was denied.
    QCoro::Task<void> requestMicrophoneAccess();
    // Opens the settings page of `anchor`, and sets or clears `settingsError` by the outcome.
    void openSettings(const QString& anchor);

    // The polling of the settings' permission section: every 2 seconds on `clock`, a refresh, until
    // `token` is cancelled (the section leaves the screen).
    QCoro::Task<void> pollWhileShown(Clock& clock, CancellationToken token);

  signals:
    // Emitted after any published field changed value.
    void changed();

  private:
    template <class T>
    void publish(T& field, T value);

    ScreenCaptureAccess& screenCaptureAccess_;
    MicrophoneAccess& microphoneAccess_;
    SettingsOpener& settingsOpener_;
    const QString settingsErrorText_;

    bool hasScreenAccess_ = false;
    MicrophoneAccess::Status microphoneStatus_ = MicrophoneAccess::Status::notDetermined;
    bool isRequestingMicrophone_ = false;
    bool hasRequestedScreenAccess_ = false;
    std::optional<QString> settingsError_;
};

}  // namespace kestrum

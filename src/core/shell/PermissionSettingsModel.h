#pragma once

#include "base/async/Clock.h"
#include "base/async/Job.h"
#include "core/recording/RecordingPermissions.h"
#include "core/shell/PermissionTexts.h"

#include <QObject>

#include <optional>

namespace kestrum {

// The permission rows of the settings (screen capture and microphone, under no section title) and the
// microphone's note under the audio switches, as texts over RecordingPermissions. While the settings
// window is open the states are read again every 2 seconds, so a change made outside shows by itself.
//
// Threads: main thread. The permissions and the clock must outlive it.
class PermissionSettingsModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString screenTitle READ screenTitle CONSTANT)
    Q_PROPERTY(QString screenDetail READ screenDetail CONSTANT)
    Q_PROPERTY(QString screenState READ screenState NOTIFY changed)
    Q_PROPERTY(bool hasScreenAccess READ hasScreenAccess NOTIFY changed)
    Q_PROPERTY(QString screenNote READ screenNote NOTIFY changed)
    Q_PROPERTY(bool showsOpenSystemSettings READ showsOpenSystemSettings NOTIFY changed)
    Q_PROPERTY(QString openSystemSettingsTitle READ openSystemSettingsTitle CONSTANT)
    Q_PROPERTY(QString microphoneTitle READ microphoneTitle CONSTANT)
    Q_PROPERTY(QString microphoneDetail READ microphoneDetail CONSTANT)
    Q_PROPERTY(QString microphoneState READ microphoneState NOTIFY changed)
    Q_PROPERTY(QString microphoneStateNote READ microphoneStateNote NOTIFY changed)
    Q_PROPERTY(QString microphoneNote READ microphoneNote NOTIFY changed)
    Q_PROPERTY(bool showsMicrophoneRequest READ showsMicrophoneRequest NOTIFY changed)
    Q_PROPERTY(QString microphoneRequestTitle READ microphoneRequestTitle CONSTANT)
    Q_PROPERTY(QString settingsError READ settingsError NOTIFY changed)
    Q_PROPERTY(bool isPolling READ isPolling NOTIFY changed)

  public:
    PermissionSettingsModel(RecordingPermissions& permissions, PermissionTexts texts, Clock& clock,
                            QObject* parent = nullptr);
    ~PermissionSettingsModel() override;

    QString screenTitle() const { return QStringLiteral("Screen Recording"); }
    QString screenDetail() const {
        return QStringLiteral("Required to record and share the League game window.");
    }
    // "Allowed"; "Required"; after a request on a system that asks, "Waiting for permission…".
    QString screenState() const;
    bool hasScreenAccess() const { return permissions_.hasScreenAccess(); }
    // Under the row while capture is not possible; empty otherwise.
    QString screenNote() const;
    bool showsOpenSystemSettings() const;
    QString openSystemSettingsTitle() const { return QStringLiteral("Open System Settings…"); }

    QString microphoneTitle() const { return QStringLiteral("Microphone"); }
    QString microphoneDetail() const {
        return QStringLiteral("Optional. Only used when Microphone is enabled under Audio.");
    }
    // "Allowed", "Restricted" or "Optional".
    QString microphoneState() const;
    // Under the microphone row when access is restricted; empty otherwise.
    QString microphoneStateNote() const;
    // Under the audio section's microphone switch: waiting, restricted, or access missing; empty with
    // access.
    QString microphoneNote() const;
    bool showsMicrophoneRequest() const;
    QString microphoneRequestTitle() const { return QStringLiteral("Allow Microphone Access"); }
    // Empty when there is none.
    QString settingsError() const { return permissions_.settingsError().value_or(QString()); }
    bool isPolling() const { return pollTask_.has_value(); }

    Q_INVOKABLE void requestScreenAccess();
    Q_INVOKABLE void openSystemSettings();
    Q_INVOKABLE void requestMicrophoneAccess();

    // The settings window opened: reads the states and starts the 2-second polling. Again while polling:
    // nothing more.
    void startPolling();
    // The settings window closed: the polling ends.
    void stopPolling();

  signals:
    void changed();

  private:
    RecordingPermissions& permissions_;
    const PermissionTexts texts_;
    Clock& clock_;
    std::optional<Job<void>> pollTask_;  // main thread
};

}  // namespace kestrum

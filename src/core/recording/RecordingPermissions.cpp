#include "core/recording/RecordingPermissions.h"

#include <QUrl>

namespace kestrum {

RecordingPermissions::RecordingPermissions(ScreenCaptureAccess& screenCaptureAccess,
                                           MicrophoneAccess& microphoneAccess, SettingsOpener& settingsOpener,
                                           QString settingsErrorText, QObject* parent)
    : QObject(parent),
      screenCaptureAccess_(screenCaptureAccess),
      microphoneAccess_(microphoneAccess),
      settingsOpener_(settingsOpener),
      settingsErrorText_(std::move(settingsErrorText)),
      hasScreenAccess_(screenCaptureAccess.preflight()),
      microphoneStatus_(microphoneAccess.status()) {}

template <class T>
void RecordingPermissions::publish(T& field, T value) {
    if (field == value) return;
    field = std::move(value);
    emit changed();
}

void RecordingPermissions::refresh() {
    publish(hasScreenAccess_, screenCaptureAccess_.preflight());
    publish(microphoneStatus_, microphoneAccess_.status());
}

void RecordingPermissions::requestScreenAccess() {
    refresh();
    if (hasScreenAccess_) return;
    if (hasRequestedScreenAccess_) {
        // The system shows its prompt only once per run.
        openSettings(kScreenCaptureAnchor);
        return;
    }
    publish(hasRequestedScreenAccess_, true);
    screenCaptureAccess_.request();
    refresh();
}

QCoro::Task<void> RecordingPermissions::requestMicrophoneAccess() {
    refresh();
    if (isRequestingMicrophone_) co_return;
    switch (microphoneStatus_) {
        case MicrophoneAccess::Status::notDetermined: {
            publish(isRequestingMicrophone_, true);
            co_await microphoneAccess_.request();
            publish(isRequestingMicrophone_, false);
            publish(microphoneStatus_, microphoneAccess_.status());
            break;
        }
        case MicrophoneAccess::Status::denied:
            openSettings(kMicrophoneAnchor);
            break;
        default:  // restricted, authorized and any number the system may add: nothing to ask
            break;
    }
}

void RecordingPermissions::openSettings(const QString& anchor) {
    const QUrl link(kSettingsLinkPrefix + anchor, QUrl::StrictMode);
    if (link.isValid() && settingsOpener_.openSettingsLink(link)) {
        publish(settingsError_, std::optional<QString>());
    } else {
        publish(settingsError_, std::optional<QString>(settingsErrorText_));
    }
}

QCoro::Task<void> RecordingPermissions::pollWhileShown(Clock& clock, CancellationToken token) {
    while (!token.isCancelled()) {
        co_await clock.sleep(kPollPeriod, token);  // a failed sleep is ignored
        if (token.isCancelled()) co_return;
        refresh();
    }
}

}  // namespace kestrum

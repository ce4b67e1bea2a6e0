#include "core/shell/PermissionSettingsModel.h"

namespace kestrum {

using MicrophoneStatus = MicrophoneAccess::Status;

PermissionSettingsModel::PermissionSettingsModel(RecordingPermissions& permissions, PermissionTexts texts,
                                                 Clock& clock, QObject* parent)
    : QObject(parent), permissions_(permissions), texts_(std::move(texts)), clock_(clock) {
    connect(&permissions_, &RecordingPermissions::changed, this, &PermissionSettingsModel::changed);
}

PermissionSettingsModel::~PermissionSettingsModel() {
    if (pollTask_) pollTask_->cancel();
}

QString PermissionSettingsModel::screenState() const {
    if (permissions_.hasScreenAccess()) return QStringLiteral("Allowed");
    if (texts_.showsSystemSettingsButtons && permissions_.hasRequestedScreenAccess()) {
        return QStringLiteral("Waiting for permission…");
    }
    return QStringLiteral("Required");
}

QString PermissionSettingsModel::screenNote() const {
    return permissions_.hasScreenAccess() ? QString() : texts_.screenAccessMissingNote;
}

bool PermissionSettingsModel::showsOpenSystemSettings() const {
    return texts_.showsSystemSettingsButtons && !permissions_.hasScreenAccess() &&
           permissions_.hasRequestedScreenAccess();
}

QString PermissionSettingsModel::microphoneState() const {
    switch (permissions_.microphoneStatus()) {
        case MicrophoneStatus::authorized:
            return QStringLiteral("Allowed");
        case MicrophoneStatus::restricted:
            return QStringLiteral("Restricted");
        default:
            return QStringLiteral("Optional");
    }
}

QString PermissionSettingsModel::microphoneStateNote() const {
    if (permissions_.microphoneStatus() != MicrophoneStatus::restricted) return {};
    return QStringLiteral("Microphone access is restricted by this Mac’s policy.");
}

QString PermissionSettingsModel::microphoneNote() const {
    if (permissions_.isRequestingMicrophone()) return QStringLiteral("Waiting for permission…");
    switch (permissions_.microphoneStatus()) {
        case MicrophoneStatus::authorized:
            return {};
        case MicrophoneStatus::restricted:
            return QStringLiteral(
                "Microphone access is restricted on this Mac. Recordings will continue without it.");
        default:
            return QStringLiteral(
                "Microphone access is needed to include your voice. Recordings will continue without it.");
    }
}

bool PermissionSettingsModel::showsMicrophoneRequest() const {
    const MicrophoneStatus status = permissions_.microphoneStatus();
    return !permissions_.isRequestingMicrophone() && status != MicrophoneStatus::authorized &&
           status != MicrophoneStatus::restricted;
}

void PermissionSettingsModel::requestScreenAccess() {
    permissions_.requestScreenAccess();
}

void PermissionSettingsModel::openSystemSettings() {
    permissions_.openSettings(RecordingPermissions::kScreenCaptureAnchor);
}

void PermissionSettingsModel::requestMicrophoneAccess() {
    Job<void>::start(
        [permissions = &permissions_](CancellationToken) { return permissions->requestMicrophoneAccess(); });
}

void PermissionSettingsModel::startPolling() {
    permissions_.refresh();
    if (pollTask_) return;
    pollTask_ = Job<void>::start([permissions = &permissions_, clock = &clock_](CancellationToken token) {
        return permissions->pollWhileShown(*clock, token);
    });
    emit changed();
}

void PermissionSettingsModel::stopPolling() {
    if (!pollTask_) return;
    pollTask_->cancel();
    pollTask_.reset();
    emit changed();
}

}  // namespace kestrum

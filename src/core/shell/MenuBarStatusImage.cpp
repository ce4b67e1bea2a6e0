#include "core/shell/MenuBarStatusImage.h"

namespace kestrum {

MenuBarStatusImage menuBarStatusImage(RecordingStatus status) {
    switch (status) {
        case RecordingStatus::idle:
            return {QStringLiteral("MenuBarIdle"), false};
        case RecordingStatus::ready:
            return {QStringLiteral("MenuBarReady"), false};
        case RecordingStatus::recording:
            return {QStringLiteral("MenuBarRecording"), false};
        case RecordingStatus::permissionRequired:
        case RecordingStatus::storageLimitReached:
            break;
    }
    return {QStringLiteral("exclamationmark.triangle.fill"), true};
}

QString trayIconName(RecordingStatus status,
                     std::optional<DesktopColorScheme::Preference> desktopPreference) {
    const bool darkDesktop = desktopPreference == DesktopColorScheme::Preference::prefersDark;
    return menuBarStatusImage(status).name +
           (darkDesktop ? QStringLiteral("-dark") : QStringLiteral("-light"));
}

}  // namespace kestrum

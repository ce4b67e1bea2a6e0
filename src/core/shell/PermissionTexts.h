#pragma once

#include <QString>

namespace kestrum {

// The permission texts that differ by platform. On Linux no permission is asked: screen capture works
// wherever an X11 (or XWayland) display is reachable, the microphone wherever the sound server has an
// input, and there is no settings pane to send the user to.
struct PermissionTexts {
    // Under the screen capture row when capture is not possible.
    QString screenAccessMissingNote;
    // `RecordingPermissions::settingsError` when the system's settings could not be opened.
    QString settingsErrorText;
    // Whether the buttons that open the system's settings are shown.
    bool showsSystemSettingsButtons = false;
};

PermissionTexts linuxPermissionTexts();

}  // namespace kestrum

#pragma once

#include "core/recording/RecordingStatus.h"
#include "platform/ports/DesktopColorScheme.h"

#include <QString>

#include <optional>

namespace kestrum {

// The image of the tray icon and of the panel's status mark for a recording status: our own images
// "MenuBarIdle", "MenuBarReady" and "MenuBarRecording", or the warning symbol
// "exclamationmark.triangle.fill" when the user must act (a permission, the storage budget).
struct MenuBarStatusImage {
    QString name;
    bool isSystemSymbol = false;  // a symbol name of the icon set, not one of our images

    friend bool operator==(const MenuBarStatusImage&, const MenuBarStatusImage&) = default;
};

MenuBarStatusImage menuBarStatusImage(RecordingStatus status);

// The tray cannot tell us the colour of the panel it sits on, so the tray icon comes in two variants and
// the desktop's colour scheme picks one: "-dark" (a light glyph) for a dark desktop, "-light" (a dark
// glyph) otherwise, including when the desktop cannot say. The result is the image's name with the
// suffix, as "MenuBarRecording-dark" or "exclamationmark.triangle.fill-light".
QString trayIconName(RecordingStatus status, std::optional<DesktopColorScheme::Preference> desktopPreference);

}  // namespace kestrum

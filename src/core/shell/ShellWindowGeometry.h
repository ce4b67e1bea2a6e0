#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>

#include <optional>

namespace kestrum {

// A screen as window placement needs it, in the desktop's coordinates (one point is one pixel on X11,
// the origin at the top left): the whole screen, and the part left by panels and docks.
struct ScreenFrames {
    QRectF frame;
    QRectF availableFrame;

    friend bool operator==(const ScreenFrames&, const ScreenFrames&) = default;
};

inline constexpr QSizeF kDashboardMinimumSize(1050, 520);
inline constexpr QSizeF kDashboardSizeWithoutScreen(1664, 936);
inline constexpr QSizeF kSettingsWindowPreferredSize(580, 760);

// The review window's first content size: always 16:9, as large as fits in 0.9 of the available width
// and 0.9 of the available height of `screen` (the main screen, or the first one); 1664 by 936 with no
// screen at all. Fractional; the window rounds it to whole pixels.
QSizeF dashboardContentSize(const std::optional<ScreenFrames>& screen);

// Where a window of `windowSize` goes to be centred on the whole screen (not its available part, unlike
// the size): the frame's middle less half the window. Absent with no screen: the platform centres it.
std::optional<QPointF> centredWindowOrigin(QSizeF windowSize, const std::optional<ScreenFrames>& screen);

// The settings window: 580 by 760, no wider or taller than the available part of the screen (the form
// scrolls).
QSizeF settingsWindowSize(const std::optional<ScreenFrames>& screen);

// The tray's panel opens by the pointer that clicked the tray icon (the tray cannot tell where its icon
// is): centred across the pointer, below it when the tray sits in the upper half of the screen and above
// it otherwise, `kMenuBarPanelGapPx` away; then moved as little as needed to lie wholly in the available
// part of the screen (the top left wins when the panel is larger than that part).
inline constexpr double kMenuBarPanelGapPx = 6;
QPointF menuBarPanelOrigin(QPointF pointer, QSizeF panelSize, const ScreenFrames& screen);

}  // namespace kestrum

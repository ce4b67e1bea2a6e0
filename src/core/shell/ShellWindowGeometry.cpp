#include "core/shell/ShellWindowGeometry.h"

#include <algorithm>

namespace kestrum {

namespace {
constexpr double kAspectRatio = 16.0 / 9.0;
constexpr double kUsableShare = 0.9;
}  // namespace

QSizeF dashboardContentSize(const std::optional<ScreenFrames>& screen) {
    if (!screen) return kDashboardSizeWithoutScreen;
    const double usableWidth = screen->availableFrame.width() * kUsableShare;
    const double usableHeight = screen->availableFrame.height() * kUsableShare;
    const double width = std::min(usableWidth, usableHeight * kAspectRatio);
    return {width, width / kAspectRatio};
}

std::optional<QPointF> centredWindowOrigin(QSizeF windowSize, const std::optional<ScreenFrames>& screen) {
    if (!screen) return std::nullopt;
    const QPointF middle = screen->frame.center();
    return QPointF(middle.x() - windowSize.width() / 2, middle.y() - windowSize.height() / 2);
}

QSizeF settingsWindowSize(const std::optional<ScreenFrames>& screen) {
    if (!screen) return kSettingsWindowPreferredSize;
    return {std::min(kSettingsWindowPreferredSize.width(), screen->availableFrame.width()),
            std::min(kSettingsWindowPreferredSize.height(), screen->availableFrame.height())};
}

QPointF menuBarPanelOrigin(QPointF pointer, QSizeF panelSize, const ScreenFrames& screen) {
    const QRectF available = screen.availableFrame;
    const bool trayAtTop = pointer.y() < screen.frame.center().y();
    double x = pointer.x() - panelSize.width() / 2;
    double y =
        trayAtTop ? pointer.y() + kMenuBarPanelGapPx : pointer.y() - kMenuBarPanelGapPx - panelSize.height();
    // Right and bottom first, so that a panel larger than the screen keeps its top left on it.
    x = std::max(std::min(x, available.right() - panelSize.width()), available.left());
    y = std::max(std::min(y, available.bottom() - panelSize.height()), available.top());
    return {x, y};
}

}  // namespace kestrum

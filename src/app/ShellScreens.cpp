#include "app/ShellScreens.h"

#include <QGuiApplication>
#include <QScreen>

namespace kestrum {

std::optional<ScreenFrames> screenFrames(const QScreen* screen) {
    if (!screen) return std::nullopt;
    return ScreenFrames{QRectF(screen->geometry()), QRectF(screen->availableGeometry())};
}

std::optional<ScreenFrames> screenFramesAt(QPoint point) {
    const QScreen* screen = QGuiApplication::screenAt(point);
    return screenFrames(screen ? screen : QGuiApplication::primaryScreen());
}

}  // namespace kestrum

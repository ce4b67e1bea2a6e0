#pragma once

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QString>
#include <QStringList>

#include <optional>

namespace kestrum::test {

// What a user's hand and eyes do on the X server named by DISPLAY (a test's private Xvfb), through the
// same tools another program would use: xdotool for the pointer and the window list, ffmpeg's x11grab
// for the pixels. Main thread; each call waits for its tool, at most a few seconds.

// xdotool's answer, trimmed; empty when it failed or found nothing.
QString xdotool(const QStringList& arguments);
// A window's frame on the screen, from xdotool; empty when the window is gone.
QRect windowGeometry(const QString& windowId);
// The largest visible window whose name (or, with `byClass`, class) matches the regular expression
// `pattern`; empty when none.
QRect visibleWindow(const QString& pattern, bool byClass = false);
// Moves the pointer to `point` and clicks its first button there.
void clickAt(QPoint point);
// One picture of `region` of the screen, read by `ffmpeg -f x11grab` without the pointer, as another
// program would capture it (the composited screen, not our own buffers). Format_RGB32; absent, with the
// reason in `failure`, when ffmpeg is missing or fails.
std::optional<QImage> grabScreenRegion(const QRect& region, QString* failure = nullptr);

}  // namespace kestrum::test

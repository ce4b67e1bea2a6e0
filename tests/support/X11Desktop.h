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
// The screen's pixels in `region`, as another program capturing the screen reads them; absent when
// ffmpeg could not grab them.
std::optional<QImage> grabScreenRegion(QRect region);

}  // namespace kestrum::test

#pragma once

#include "core/shell/ShellWindowGeometry.h"

#include <QPoint>

#include <optional>

class QScreen;

namespace kestrum {

// The screen under `point` as the shell's geometry reads it; the primary screen when no screen holds the
// point; absent with no screen at all. Main thread.
std::optional<ScreenFrames> screenFramesAt(QPoint point);
std::optional<ScreenFrames> screenFrames(const QScreen* screen);

}  // namespace kestrum

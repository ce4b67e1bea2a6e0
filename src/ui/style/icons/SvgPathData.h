#pragma once

#include <QString>
#include <QStringView>

#include <optional>
#include <vector>

namespace kestrum::ui {

// One subpath of an SVG path's data, made to stand alone: it starts with an absolute moveto at the point
// where it began in the whole path, so that it draws the same on its own.
struct SvgSubpath {
    QString data;
    // Ends with a closepath, or comes back to its own start (within 0.01 units): it bounds an area.
    bool closed = false;
    // Only straight segments (lines, horizontal, vertical): a stroke that encloses nothing by itself.
    bool straight = true;

    bool operator==(const SvgSubpath&) const = default;
};

// Splits SVG path data (the "d" attribute) into its subpaths, following the current point through every
// command (M L H V C S Q T A Z, absolute and relative, with implicit repetitions and the compact number
// forms "1.5.5", "-1-1" and arc flags written without separators). Absent when the data is malformed:
// an unknown command, a missing number, or data that does not begin with a moveto.
std::optional<std::vector<SvgSubpath>> splitSvgPathData(QStringView data);

}  // namespace kestrum::ui

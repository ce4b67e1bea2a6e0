#pragma once

#include <QRect>
#include <QSize>

#include <optional>

namespace kestrum {

// The share window's size and place for a source of aspect ratio `ratio` (width over height). All in
// the screen's logical pixels.

// Two ratios closer than this are one: the window is not resized for it.
inline constexpr double kLeagueShareRatioTolerance = 0.001;

// Whether `next` differs enough from `current` to resize the window.
bool isLeagueShareRatioChange(double current, double next);

// The content size: within min(960, inset width) by min(540, inset height) of the visible area inset by
// 24 on each side, the box's height kept when the box is wider than `ratio`, else its width. Absent
// when `ratio` is not a finite positive normal number or the inset area is empty.
std::optional<QSize> leagueShareWindowSize(double ratio, const QRect& visibleArea);

// The frame for `ratio`: the new size centred on the centre of `currentFrame`, then moved (never
// shrunk) to lie within `visibleArea` as far as it fits. Absent when the size is.
std::optional<QRect> leagueShareWindowFrame(double ratio, const QRect& visibleArea,
                                            const QRect& currentFrame);

}  // namespace kestrum

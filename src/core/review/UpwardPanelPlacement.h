#pragma once

#include <QRectF>
#include <QSizeF>

namespace kestrum {

// Where a pop-up of the timeline strip goes: the strip lies at the bottom of the movie, so its pop-ups
// open upwards, inside the window that holds them. Points are the window's own coordinates (y down).
namespace upwardPanelLayout {
inline constexpr double gapAboveAnchor = 8;  // the panel's bottom edge stands this far above the anchor's top
inline constexpr double windowInset = 4;     // the panel keeps this far inside every edge of the window
}  // namespace upwardPanelLayout

// The frame of a panel of `panelSize` for `anchor`: centred horizontally on the anchor, its bottom edge 8
// points above the anchor's top, then moved (never resized) to stay 4 points inside a window of
// `windowSize`. A panel too large for the window keeps its left and top edges at the inset.
QRectF upwardPanelFrame(const QRectF& anchor, const QSizeF& panelSize, const QSizeF& windowSize);

}  // namespace kestrum

#include "core/review/UpwardPanelPlacement.h"

#include <algorithm>

namespace kestrum {

namespace {

// `start` moved within [inset, extent - inset - length]; the lower bound wins when the range is empty.
double keptInside(double start, double length, double extent) {
    using upwardPanelLayout::windowInset;
    return std::max(windowInset, std::min(start, extent - windowInset - length));
}

}  // namespace

QRectF upwardPanelFrame(const QRectF& anchor, const QSizeF& panelSize, const QSizeF& windowSize) {
    const double x = anchor.center().x() - panelSize.width() / 2;
    const double y = anchor.top() - upwardPanelLayout::gapAboveAnchor - panelSize.height();
    return {keptInside(x, panelSize.width(), windowSize.width()),
            keptInside(y, panelSize.height(), windowSize.height()), panelSize.width(), panelSize.height()};
}

}  // namespace kestrum

#include "core/review/UpwardPanelPlacement.h"

#include <gtest/gtest.h>

namespace kestrum {
namespace {

TEST(UpwardPanelPlacement, CentresAboveTheAnchorAndStaysFourPointsInsideTheWindow) {
    const QSizeF window(1000, 600);
    const struct {
        const char* what;
        QRectF anchor;
        QSizeF panel;
        QRectF frame;
    } rows[] = {
        {"centred, bottom 8 above the anchor", {480, 500, 40, 30}, {200, 150}, {400, 342, 200, 150}},
        {"odd widths centre on the half point", {481, 500, 41, 30}, {201, 150}, {401, 342, 201, 150}},
        {"pushed right off the left edge", {0, 500, 40, 30}, {200, 150}, {4, 342, 200, 150}},
        {"exactly at the left inset", {0, 500, 208, 30}, {200, 150}, {4, 342, 200, 150}},
        {"pushed left off the right edge", {960, 500, 40, 30}, {200, 150}, {796, 342, 200, 150}},
        {"an anchor near the top: pushed down, over the anchor",
         {480, 60, 40, 30},
         {200, 150},
         {400, 4, 200, 150}},
        {"wider than the window: the left inset wins", {480, 500, 40, 30}, {1200, 100}, {4, 392, 1200, 100}},
        {"taller than the window: the top inset wins", {480, 500, 40, 30}, {200, 900}, {400, 4, 200, 900}},
        {"an anchor outside the window still lands inside",
         {1500, 900, 40, 30},
         {200, 150},
         {796, 446, 200, 150}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(upwardPanelFrame(row.anchor, row.panel, window), row.frame) << row.what;
}

}  // namespace
}  // namespace kestrum

// Blending the pointer's sprite into a read picture: colours and clipping.
#include "platform/linux/x11/X11StreamCursorOverlay.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace kestrum {
namespace {

constexpr int kSide = 4;  // the picture and the sprite are 4 by 4 pixels

struct OverlayRow {
    const char* what;
    std::uint32_t spriteArgb;  // every pixel of the sprite, premultiplied
    int left;
    int top;
    std::uint32_t pictureBgrx;  // every pixel of the picture before, as a little-endian word
    bool drawn;
    std::uint32_t topLeftAfter;
    std::uint32_t bottomRightAfter;
};

class X11StreamCursorOverlayBlend : public testing::TestWithParam<OverlayRow> {};

TEST_P(X11StreamCursorOverlayBlend, BlendsTheSpriteOverThePictureWithinItsBounds) {
    const OverlayRow& row = GetParam();
    std::vector<std::uint32_t> picture(kSide * kSide, row.pictureBgrx);
    const std::vector<std::uint32_t> sprite(kSide * kSide, row.spriteArgb);
    const bool drawn = drawCursorSprite(reinterpret_cast<std::uint8_t*>(picture.data()), kSide, kSide,
                                        kSide * 4, {sprite.data(), kSide, kSide, row.left, row.top});
    EXPECT_EQ(drawn, row.drawn);
    EXPECT_EQ(picture.front(), row.topLeftAfter);
    EXPECT_EQ(picture.back(), row.bottomRightAfter);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, X11StreamCursorOverlayBlend,
    testing::Values(OverlayRow{"opaque white covers red, the fourth byte kept", 0xFFFFFFFF, 0, 0, 0x7FFF0000,
                               true, 0x7FFFFFFF, 0x7FFFFFFF},
                    OverlayRow{"half-transparent grey over blue adds to half the blue", 0x80808080, 0, 0,
                               0x000000FF, true, 0x008080FF, 0x008080FF},
                    OverlayRow{"hanging over the top left, only the inside part drawn", 0xFF00FF00, -2, -2,
                               0x000000FF, true, 0x0000FF00, 0x000000FF},
                    OverlayRow{"hanging over the bottom right", 0xFF00FF00, 3, 3, 0x000000FF, true,
                               0x000000FF, 0x0000FF00},
                    OverlayRow{"entirely outside", 0xFFFFFFFF, 4, 0, 0x000000FF, false, 0x000000FF,
                               0x000000FF}),
    [](const testing::TestParamInfo<OverlayRow>& info) { return "Row" + std::to_string(info.index); });

}  // namespace
}  // namespace kestrum

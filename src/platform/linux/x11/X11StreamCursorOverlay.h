#pragma once

#include <cstdint>

namespace kestrum {

// Where and what the pointer's sprite is, as the X server reports it: `argb` holds width * height
// premultiplied ARGB pixels (alpha in the top byte), `left` and `top` place its top-left pixel in the
// picture's coordinates, in pixels; either may be negative or beyond the picture.
struct X11StreamCursorSprite {
    const std::uint32_t* argb = nullptr;
    int width = 0;
    int height = 0;
    int left = 0;
    int top = 0;
};

// Draws `sprite` over a BGRX picture (bytes blue, green, red, unused; `bytesPerRow` apart) with source-over
// blending, clipped to the picture. The unused byte is left as it was. Gives true when any pixel of the
// sprite fell on the picture.
bool drawCursorSprite(std::uint8_t* pixels, int width, int height, int bytesPerRow,
                      const X11StreamCursorSprite& sprite);

}  // namespace kestrum

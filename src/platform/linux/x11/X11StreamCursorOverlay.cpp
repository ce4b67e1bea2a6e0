#include "platform/linux/x11/X11StreamCursorOverlay.h"

#include <algorithm>

namespace kestrum {

namespace {

// One channel of premultiplied source-over: source + destination * (1 - alpha), rounded.
std::uint8_t blendChannel(std::uint32_t source, std::uint32_t destination, std::uint32_t alpha) {
    return static_cast<std::uint8_t>(
        std::min<std::uint32_t>(255, source + (destination * (255 - alpha) + 127) / 255));
}

}  // namespace

bool drawCursorSprite(std::uint8_t* pixels, int width, int height, int bytesPerRow,
                      const X11StreamCursorSprite& sprite) {
    const int firstColumn = std::max(0, -sprite.left);
    const int endColumn = std::min(sprite.width, width - sprite.left);
    const int firstRow = std::max(0, -sprite.top);
    const int endRow = std::min(sprite.height, height - sprite.top);
    if (!sprite.argb || firstColumn >= endColumn || firstRow >= endRow) return false;
    for (int row = firstRow; row < endRow; ++row) {
        const std::uint32_t* source = sprite.argb + static_cast<std::size_t>(row) * sprite.width;
        std::uint8_t* target = pixels + static_cast<std::size_t>(sprite.top + row) * bytesPerRow;
        for (int column = firstColumn; column < endColumn; ++column) {
            const std::uint32_t argb = source[column];
            const std::uint32_t alpha = argb >> 24;
            if (alpha == 0) continue;
            std::uint8_t* pixel = target + static_cast<std::size_t>(sprite.left + column) * 4;
            pixel[0] = blendChannel(argb & 0xFF, pixel[0], alpha);
            pixel[1] = blendChannel((argb >> 8) & 0xFF, pixel[1], alpha);
            pixel[2] = blendChannel((argb >> 16) & 0xFF, pixel[2], alpha);
        }
    }
    return true;
}

}  // namespace kestrum

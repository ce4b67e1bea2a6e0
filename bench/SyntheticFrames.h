#pragma once

#include "base/media/PixelBuffer.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <random>
#include <vector>

namespace kestrum::bench {

// A cycle of game-like frames (scrolling gradient, a moving block, grain), made before timing starts.
inline std::vector<std::shared_ptr<const PixelBuffer>> makeFrames(int width, int height, int count) {
    std::vector<std::shared_ptr<const PixelBuffer>> frames;
    std::minstd_rand noise(7);
    for (int index = 0; index < count; ++index) {
        std::vector<std::uint8_t> bytes(static_cast<std::size_t>(width) * height * 4);
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                std::uint8_t* pixel = bytes.data() + (static_cast<std::size_t>(y) * width + x) * 4;
                const bool block =
                    std::abs(x - index * 20) < width / 10 && std::abs(y - height / 2) < height / 8;
                const int grain = static_cast<int>(noise() % 24);
                pixel[0] = static_cast<std::uint8_t>(((x + index * 6) % 256) / 2 + grain);
                pixel[1] = static_cast<std::uint8_t>((block ? 200 : (y % 128)) + grain / 2);
                pixel[2] = static_cast<std::uint8_t>(((x + y) / 4 + index) % 200 + grain);
                pixel[3] = 0xFF;
            }
        }
        frames.push_back(PixelBuffer::make(width, height, width * 4, std::move(bytes)));
    }
    return frames;
}

}  // namespace kestrum::bench

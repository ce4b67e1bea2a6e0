#pragma once

#include "base/media/PixelBufferPool.h"

#include <map>
#include <memory>
#include <tuple>
#include <vector>

struct SwsContext;

namespace kestrum {

// Brings the pictures read from a window (BGRX: the window's colour with an unused fourth byte) to the
// stream's output size in BGRA, opaque.
//
// A picture of the output size is copied with its alpha set. Any other is scaled bilinearly by libswscale
// on planar RGB: packed RGB would go through its internal YUV and back, which costs two and a half times
// as much and shifts colours. A 2560-wide game shrunk to 1280 is averaged, not sampled, so it does not
// shimmer.
//
// The libswscale stages and their planes are built once per pair of source and output sizes and kept: a
// window that goes back and forth between two sizes does not rebuild them each time. The pictures' stores
// come from a pool and go back to it when the writer and the capturer are done with them. Capture thread
// only.
class X11StreamScaler {
  public:
    X11StreamScaler();
    ~X11StreamScaler();
    X11StreamScaler(const X11StreamScaler&) = delete;
    X11StreamScaler& operator=(const X11StreamScaler&) = delete;

    // A new picture of `width` by `height` pixels, rows tightly packed; null when libswscale refuses
    // the sizes. `pixels` holds `sourceHeight` rows of `sourceBytesPerRow` bytes.
    std::shared_ptr<const PixelBuffer> scale(const std::uint8_t* pixels, int sourceWidth, int sourceHeight,
                                             int sourceBytesPerRow, int width, int height);

  private:
    using SizePair = std::tuple<int, int, int, int>;  // source width, height; output width, height

    // Three planes (green, blue, red) of one size, rows aligned for libswscale's vector code.
    struct Planes {
        Planes(int width, int height);
        std::vector<std::uint8_t> bytes;
        std::uint8_t* data[4] = {};
        int bytesPerRow[4] = {};
    };
    // Packed source to planes, planes to planes of the output size, planes to packed output.
    struct Pipeline {
        Pipeline(int sourceWidth, int sourceHeight, int width, int height);
        ~Pipeline();
        Pipeline(const Pipeline&) = delete;
        Pipeline& operator=(const Pipeline&) = delete;
        bool isValid() const { return toPlanes && resize && toPacked; }

        SwsContext* toPlanes;
        SwsContext* resize;
        SwsContext* toPacked;
        Planes sourcePlanes;
        Planes outputPlanes;
    };

    Pipeline* pipelineFor(const SizePair& sizes);

    std::map<SizePair, std::unique_ptr<Pipeline>> pipelines_;
    PixelBufferPool pool_;
};

}  // namespace kestrum

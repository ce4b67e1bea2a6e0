#pragma once

#include "base/media/PixelBuffer.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

namespace kestrum {

// Recycles the byte stores of pictures made at a steady rate, so that a capture at 60 frames a second
// does not ask the allocator for (and the kernel to zero) eight fresh megabytes per frame.
//
// `take` hands out a store whose bytes are unspecified; `make` wraps a filled store into a PixelBuffer
// that gives the store back when its last reference goes, on whichever thread drops it. Stores of another
// size than asked are dropped rather than resized, and at most `maximumIdle` wait in the pool. Buffers may
// outlive the pool object. Thread-safe.
class PixelBufferPool {
  public:
    explicit PixelBufferPool(std::size_t maximumIdle);

    std::vector<std::uint8_t> take(std::size_t byteCount);
    std::shared_ptr<const PixelBuffer> make(int width, int height, int bytesPerRow,
                                            std::vector<std::uint8_t> bytes);

    std::size_t idleCount() const;

  private:
    struct Stores {
        explicit Stores(std::size_t maximumIdle) : maximumIdle(maximumIdle) {}
        void giveBack(std::vector<std::uint8_t> bytes);

        const std::size_t maximumIdle;
        mutable std::mutex mutex;
        std::vector<std::vector<std::uint8_t>> idle;  // guarded by mutex
    };

    std::shared_ptr<Stores> stores_;
};

}  // namespace kestrum

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace kestrum {

// One captured picture in BGRA order (byte 0 blue, byte 3 alpha), rows `bytesPerRow` apart. Immutable
// once made, so it is shared between the capture thread, the privacy renderer and the writer's encoder
// thread as `std::shared_ptr<const PixelBuffer>` without locks or copies: the writer reads the bytes in
// place while converting them and releases its reference right after.
class PixelBuffer {
  public:
    // `bytes` holds at least bytesPerRow * height bytes; it is moved in, never copied.
    PixelBuffer(int width, int height, int bytesPerRow, std::vector<std::uint8_t> bytes)
        : width_(width), height_(height), bytesPerRow_(bytesPerRow), bytes_(std::move(bytes)) {}

    static std::shared_ptr<const PixelBuffer> make(int width, int height, int bytesPerRow,
                                                   std::vector<std::uint8_t> bytes) {
        return std::make_shared<const PixelBuffer>(width, height, bytesPerRow, std::move(bytes));
    }

    int width() const { return width_; }
    int height() const { return height_; }
    int bytesPerRow() const { return bytesPerRow_; }
    const std::uint8_t* data() const { return bytes_.data(); }
    std::size_t byteCount() const { return bytes_.size(); }
    // True when the sizes are positive and the bytes cover every row.
    bool isValid() const {
        return width_ > 0 && height_ > 0 && bytesPerRow_ >= width_ * 4 &&
               bytes_.size() >= static_cast<std::size_t>(bytesPerRow_) * static_cast<std::size_t>(height_);
    }

    // Hands the bytes over and leaves the buffer empty (invalid); for the owner of a mutable buffer that
    // recycles its store.
    std::vector<std::uint8_t> takeBytes() { return std::exchange(bytes_, {}); }

  private:
    int width_;
    int height_;
    int bytesPerRow_;
    std::vector<std::uint8_t> bytes_;
};

}  // namespace kestrum

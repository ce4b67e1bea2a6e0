#include "platform/linux/x11/X11StreamScaler.h"

extern "C" {
#include <libavutil/pixfmt.h>
#include <libswscale/swscale.h>
}

#include <cstring>

namespace kestrum {

namespace {

// A window that keeps changing size would otherwise collect pipelines without end; beyond this many the
// cache starts afresh.
constexpr std::size_t kMaximumPipelines = 4;
constexpr int kRowAlignmentBytes = 64;
constexpr std::uint32_t kOpaqueAlpha = 0xFF000000u;  // of a BGRA pixel read as a little-endian word

SwsContext* makeContext(int sourceWidth, int sourceHeight, AVPixelFormat sourceFormat, int width, int height,
                        AVPixelFormat format) {
    return sws_getContext(sourceWidth, sourceHeight, sourceFormat, width, height, format, SWS_BILINEAR,
                          nullptr, nullptr, nullptr);
}

// Pictures in flight at once: the writer's queue, the one being encoded, the capturer's last seen one
// and the one being read. More than these may wait in the pool.
constexpr std::size_t kIdlePictures = 8;

std::size_t byteCountOf(int bytesPerRow, int height) {
    return static_cast<std::size_t>(bytesPerRow) * static_cast<std::size_t>(height);
}

void copyOpaque(const std::uint8_t* pixels, int width, int height, int sourceBytesPerRow,
                std::vector<std::uint8_t>& bytes) {
    const int bytesPerRow = width * 4;
    for (int row = 0; row < height; ++row) {
        const std::uint8_t* source = pixels + static_cast<std::size_t>(row) * sourceBytesPerRow;
        std::uint8_t* target = bytes.data() + static_cast<std::size_t>(row) * bytesPerRow;
        for (int column = 0; column < width; ++column) {
            std::uint32_t pixel;
            std::memcpy(&pixel, source + column * 4, 4);
            pixel |= kOpaqueAlpha;
            std::memcpy(target + column * 4, &pixel, 4);
        }
    }
}

}  // namespace

X11StreamScaler::Planes::Planes(int width, int height) {
    const int alignedBytesPerRow = (width + kRowAlignmentBytes - 1) / kRowAlignmentBytes * kRowAlignmentBytes;
    const std::size_t planeBytes =
        static_cast<std::size_t>(alignedBytesPerRow) * static_cast<std::size_t>(height);
    bytes.resize(planeBytes * 3 + kRowAlignmentBytes);
    // The vector's own start is only as aligned as the allocator makes it.
    const auto misalignment = reinterpret_cast<std::uintptr_t>(bytes.data()) % kRowAlignmentBytes;
    std::uint8_t* first = bytes.data() + (misalignment ? kRowAlignmentBytes - misalignment : 0);
    for (int plane = 0; plane < 3; ++plane) {
        data[plane] = first + planeBytes * static_cast<std::size_t>(plane);
        bytesPerRow[plane] = alignedBytesPerRow;
    }
}

X11StreamScaler::Pipeline::Pipeline(int sourceWidth, int sourceHeight, int width, int height)
    : toPlanes(makeContext(sourceWidth, sourceHeight, AV_PIX_FMT_BGR0, sourceWidth, sourceHeight,
                           AV_PIX_FMT_GBRP)),
      resize(makeContext(sourceWidth, sourceHeight, AV_PIX_FMT_GBRP, width, height, AV_PIX_FMT_GBRP)),
      toPacked(makeContext(width, height, AV_PIX_FMT_GBRP, width, height, AV_PIX_FMT_BGRA)),
      sourcePlanes(sourceWidth, sourceHeight),
      outputPlanes(width, height) {}

X11StreamScaler::Pipeline::~Pipeline() {
    sws_freeContext(toPlanes);
    sws_freeContext(resize);
    sws_freeContext(toPacked);
}

X11StreamScaler::X11StreamScaler() : pool_(kIdlePictures) {}

X11StreamScaler::~X11StreamScaler() = default;

X11StreamScaler::Pipeline* X11StreamScaler::pipelineFor(const SizePair& sizes) {
    const auto found = pipelines_.find(sizes);
    if (found != pipelines_.end()) return found->second.get();
    if (pipelines_.size() >= kMaximumPipelines) pipelines_.clear();
    const auto [sourceWidth, sourceHeight, width, height] = sizes;
    auto pipeline = std::make_unique<Pipeline>(sourceWidth, sourceHeight, width, height);
    if (!pipeline->isValid()) return nullptr;
    return pipelines_.emplace(sizes, std::move(pipeline)).first->second.get();
}

std::shared_ptr<const PixelBuffer> X11StreamScaler::scale(const std::uint8_t* pixels, int sourceWidth,
                                                          int sourceHeight, int sourceBytesPerRow, int width,
                                                          int height) {
    const int bytesPerRow = width * 4;
    if (sourceWidth == width && sourceHeight == height) {
        std::vector<std::uint8_t> bytes = pool_.take(byteCountOf(bytesPerRow, height));
        copyOpaque(pixels, width, height, sourceBytesPerRow, bytes);
        return pool_.make(width, height, bytesPerRow, std::move(bytes));
    }
    Pipeline* pipeline = pipelineFor({sourceWidth, sourceHeight, width, height});
    if (!pipeline) return nullptr;
    const std::uint8_t* const packedSource[4] = {pixels, nullptr, nullptr, nullptr};
    const int packedSourceBytesPerRow[4] = {sourceBytesPerRow, 0, 0, 0};
    sws_scale(pipeline->toPlanes, packedSource, packedSourceBytesPerRow, 0, sourceHeight,
              pipeline->sourcePlanes.data, pipeline->sourcePlanes.bytesPerRow);
    sws_scale(pipeline->resize, pipeline->sourcePlanes.data, pipeline->sourcePlanes.bytesPerRow, 0,
              sourceHeight, pipeline->outputPlanes.data, pipeline->outputPlanes.bytesPerRow);
    std::vector<std::uint8_t> bytes = pool_.take(byteCountOf(bytesPerRow, height));
    std::uint8_t* const packedOutput[4] = {bytes.data(), nullptr, nullptr, nullptr};
    const int packedOutputBytesPerRow[4] = {bytesPerRow, 0, 0, 0};
    const int rows =
        sws_scale(pipeline->toPacked, pipeline->outputPlanes.data, pipeline->outputPlanes.bytesPerRow, 0,
                  height, packedOutput, packedOutputBytesPerRow);
    if (rows != height) return nullptr;
    return pool_.make(width, height, bytesPerRow, std::move(bytes));
}

}  // namespace kestrum

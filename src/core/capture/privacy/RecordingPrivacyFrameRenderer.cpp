#include "core/capture/privacy/RecordingPrivacyFrameRenderer.h"

#include <QImage>
#include <QPainter>

#include <limits>
#include <new>
#include <stdexcept>
#include <utility>
#include <vector>

namespace kestrum {
namespace {

// Copies the source rows into a new, tightly packed buffer; false when the memory cannot be had. The
// bytes are appended rather than zero-filled first: at 1440p that saves a pass over 14 MB per frame.
bool copyRows(const PixelBuffer& source, int bytesPerRow, std::vector<std::uint8_t>& bytes) {
    const auto rowBytes = static_cast<std::size_t>(bytesPerRow);
    const auto rows = static_cast<std::size_t>(source.height());
    try {
        bytes.reserve(rowBytes * rows);
        if (source.bytesPerRow() == bytesPerRow) {
            bytes.insert(bytes.end(), source.data(), source.data() + rowBytes * rows);
            return true;
        }
        for (std::size_t row = 0; row < rows; ++row) {
            const std::uint8_t* begin = source.data() + row * static_cast<std::size_t>(source.bytesPerRow());
            bytes.insert(bytes.end(), begin, begin + rowBytes);
        }
    } catch (const std::bad_alloc&) {
        return false;
    } catch (const std::length_error&) {
        return false;
    }
    return true;
}

}  // namespace

RecordingPrivacyFrameRenderer::RecordingPrivacyFrameRenderer(QString markPath)
    : painter_(std::move(markPath)) {}

std::shared_ptr<const PixelBuffer> RecordingPrivacyFrameRenderer::makeFrame(const PixelBuffer& source) {
    if (!source.isValid() || source.width() > std::numeric_limits<int>::max() / 4) return nullptr;
    const int width = source.width();
    const int height = source.height();
    const int bytesPerRow = width * 4;
    std::vector<std::uint8_t> bytes;
    if (!copyRows(source, bytesPerRow, bytes)) return nullptr;
    {
        // Wraps the bytes without owning them; it is gone before the bytes move into the frame.
        QImage canvas(bytes.data(), width, height, bytesPerRow, QImage::Format_ARGB32_Premultiplied);
        if (canvas.isNull()) return nullptr;
        QPainter painter(&canvas);
        if (!painter.isActive()) return nullptr;
        painter_.paint(painter, width, height);
    }
    return PixelBuffer::make(width, height, bytesPerRow, std::move(bytes));
}

}  // namespace kestrum

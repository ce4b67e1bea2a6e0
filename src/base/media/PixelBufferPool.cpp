#include "base/media/PixelBufferPool.h"

#include <algorithm>

namespace kestrum {

PixelBufferPool::PixelBufferPool(std::size_t maximumIdle) : stores_(std::make_shared<Stores>(maximumIdle)) {}

std::vector<std::uint8_t> PixelBufferPool::take(std::size_t byteCount) {
    {
        const std::lock_guard lock(stores_->mutex);
        auto& idle = stores_->idle;
        const auto found = std::find_if(idle.begin(), idle.end(),
                                        [byteCount](const auto& bytes) { return bytes.size() == byteCount; });
        if (found != idle.end()) {
            std::vector<std::uint8_t> bytes = std::move(*found);
            idle.erase(found);
            return bytes;
        }
        // The sizes changed: the stores of the old size are of no more use.
        idle.clear();
    }
    return std::vector<std::uint8_t>(byteCount);
}

std::shared_ptr<const PixelBuffer> PixelBufferPool::make(int width, int height, int bytesPerRow,
                                                         std::vector<std::uint8_t> bytes) {
    auto* buffer = new PixelBuffer(width, height, bytesPerRow, std::move(bytes));
    return std::shared_ptr<const PixelBuffer>(buffer, [stores = stores_](const PixelBuffer* made) {
        // The pool made this buffer mutable; only its consumers saw it const.
        auto* owned = const_cast<PixelBuffer*>(made);
        stores->giveBack(owned->takeBytes());
        delete owned;
    });
}

std::size_t PixelBufferPool::idleCount() const {
    const std::lock_guard lock(stores_->mutex);
    return stores_->idle.size();
}

void PixelBufferPool::Stores::giveBack(std::vector<std::uint8_t> bytes) {
    const std::lock_guard lock(mutex);
    if (idle.size() < maximumIdle) idle.push_back(std::move(bytes));
}

}  // namespace kestrum

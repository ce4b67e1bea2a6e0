#include "core/library/detail/ThumbnailMemoryCache.h"

#include <algorithm>

namespace kestrum {

std::optional<QImage> ThumbnailMemoryCache::find(const QString& key) const {
    const auto found = images_.constFind(key);
    if (found == images_.constEnd()) return std::nullopt;
    return *found;
}

void ThumbnailMemoryCache::store(const QString& key, const QImage& image) {
    images_.insert(key, image);
    order_.erase(std::remove(order_.begin(), order_.end(), key), order_.end());
    order_.push_back(key);
    if (order_.size() > limit_) {
        images_.remove(order_.front());
        order_.pop_front();
    }
}

}  // namespace kestrum

#pragma once

#include <QHash>
#include <QImage>
#include <QString>

#include <cstddef>
#include <deque>
#include <optional>

namespace kestrum {

// The detail loader's decoded thumbnails: at most `limit` images, least recently stored first out. A
// lookup does not count as a use; only a store moves a key to the newest end. Not thread-safe: it
// belongs to the loader's executor.
class ThumbnailMemoryCache {
  public:
    static constexpr std::size_t kDefaultLimit = 24;

    explicit ThumbnailMemoryCache(std::size_t limit = kDefaultLimit) : limit_(limit) {}

    std::optional<QImage> find(const QString& key) const;

    // Puts the image under `key`, makes the key the newest, and drops the oldest beyond the limit.
    void store(const QString& key, const QImage& image);

    // Keys from the oldest store to the newest.
    const std::deque<QString>& order() const { return order_; }

  private:
    std::size_t limit_;
    QHash<QString, QImage> images_;
    std::deque<QString> order_;
};

}  // namespace kestrum

#include "ui/style/PictureCache.h"

namespace kestrum::ui {

PictureCache& PictureCache::shared() {
    static PictureCache* const cache = new PictureCache();
    return *cache;
}

QImage PictureCache::picture(const QString& key, const std::function<QImage()>& draw) {
    {
        const std::lock_guard lock(mutex_);
        if (const QImage* found = pictures_.object(key)) return *found;
    }
    // Drawn outside the lock: two threads may draw the same picture once each, never block each other.
    QImage drawn = draw();
    if (drawn.isNull()) return drawn;
    const std::lock_guard lock(mutex_);
    pictures_.insert(key, new QImage(drawn));
    return drawn;
}

}  // namespace kestrum::ui

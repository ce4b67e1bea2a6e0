#include "media/mpv/MpvUpdateRelay.h"

#include <QQuickItem>

namespace kestrum {

void MpvUpdateRelay::requestUpdate() {
    const std::lock_guard lock(mutex_);
    if (item_ == nullptr) return;
    // Queued on the item, so it runs on the GUI thread, and not at all if the item is destroyed first.
    QQuickItem* item = item_;
    QMetaObject::invokeMethod(
        item, [item] { item->update(); }, Qt::QueuedConnection);
}

void MpvUpdateRelay::detach() {
    const std::lock_guard lock(mutex_);
    item_ = nullptr;
}

}  // namespace kestrum

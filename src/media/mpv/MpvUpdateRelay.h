#pragma once

#include <mutex>

class QQuickItem;

namespace kestrum {

// Carries "draw again" to an item on the GUI thread from any thread: mpv's update callback (one of mpv's
// threads, where no mpv call may be made) and the item's renderer (the render thread). It only queues
// the item's update(); once the item is gone it does nothing.
//
// Threads: requestUpdate from any thread; detach on the GUI thread, from the item's destructor.
class MpvUpdateRelay {
  public:
    explicit MpvUpdateRelay(QQuickItem& item) : item_(&item) {}

    void requestUpdate();
    // The item goes: no update is queued from now on (one being queued finishes first).
    void detach();

  private:
    std::mutex mutex_;
    QQuickItem* item_;  // guarded by mutex_; null once detached
};

}  // namespace kestrum

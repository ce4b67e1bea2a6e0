#include "base/async/EventLoopHandle.h"

#include <QMetaObject>
#include <QObject>

#include <mutex>
#include <thread>
#include <utility>

namespace kestrum {

// Shared between every handle of one thread and that thread's holder. `receiver` is the QObject whose
// thread affinity routes queued calls; it is reset under `mutex` before the object is deleted, so a
// poster never touches a deleted receiver.
struct EventLoopHandle::Mailbox {
    std::mutex mutex;
    QObject* receiver = nullptr;  // guarded by mutex; owned by the thread's Holder
    std::thread::id threadId;     // immutable after creation
};

EventLoopHandle EventLoopHandle::current() {
    // One per thread that asked for its handle; destroyed when the thread ends (or at exit for the main
    // thread). Deleting the receiver drops the calls still queued to it.
    class Holder {
      public:
        Holder() : mailbox_(std::make_shared<Mailbox>()) {
            mailbox_->receiver = new QObject;
            mailbox_->threadId = std::this_thread::get_id();
        }
        ~Holder() {
            QObject* receiver = nullptr;
            {
                std::lock_guard lock(mailbox_->mutex);
                receiver = std::exchange(mailbox_->receiver, nullptr);
            }
            delete receiver;
        }
        Holder(const Holder&) = delete;
        Holder& operator=(const Holder&) = delete;

        const std::shared_ptr<Mailbox>& mailbox() const { return mailbox_; }

      private:
        std::shared_ptr<Mailbox> mailbox_;
    };

    thread_local Holder holder;
    return EventLoopHandle(holder.mailbox());
}

bool EventLoopHandle::post(std::function<void()> work) const {
    std::lock_guard lock(mailbox_->mutex);
    if (mailbox_->receiver == nullptr) return false;
    return QMetaObject::invokeMethod(mailbox_->receiver, std::move(work), Qt::QueuedConnection);
}

bool EventLoopHandle::isCurrent() const {
    return mailbox_->threadId == std::this_thread::get_id();
}

}  // namespace kestrum

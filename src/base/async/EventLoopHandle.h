#pragma once

#include <functional>
#include <memory>

namespace kestrum {

// A handle on the Qt event loop of one thread, so that work can be queued to that thread from any
// other. Coroutines capture the handle of the thread they suspend on and are resumed through it, which
// keeps each coroutine on the thread that started it.
//
// The handle is copyable and thread-safe. Work only runs while the thread processes Qt events
// (QCoreApplication::exec, a QEventLoop, processEvents). Work that has not run when the thread ends is
// dropped unrun (and destroyed); once the thread's storage is gone (after a std::thread's join; a
// QThread's `wait()` may return slightly earlier), `post` refuses work outright.
class EventLoopHandle {
  public:
    // The handle of the calling thread's event loop. The first call on a thread creates the per-thread
    // receiver; it lives until the thread ends.
    static EventLoopHandle current();

    // Queues `work` to run on the handle's thread at its next event-loop turn, never inline, even when
    // called on that thread. Returns false, without running `work`, when the thread has ended.
    bool post(std::function<void()> work) const;

    // True on the handle's own thread.
    bool isCurrent() const;

    friend bool operator==(const EventLoopHandle& a, const EventLoopHandle& b) {
        return a.mailbox_ == b.mailbox_;
    }

  private:
    struct Mailbox;
    explicit EventLoopHandle(std::shared_ptr<Mailbox> mailbox) : mailbox_(std::move(mailbox)) {}

    std::shared_ptr<Mailbox> mailbox_;
};

}  // namespace kestrum

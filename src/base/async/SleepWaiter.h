#pragma once

#include "base/async/CancellationToken.h"
#include "base/async/EventLoopHandle.h"

#include <atomic>
#include <coroutine>
#include <memory>
#include <utility>

namespace kestrum {

// The completion of one suspended sleep, shared by the clock that will end it and the cancellation
// that may end it first. A clock creates it on the sleeper's thread, then the sleeper does
// `co_await waiter->completion()`.
//
// Threads: `create`, the awaiting and `complete` belong to the sleeper's thread; a cancellation from
// any thread is turned into a `complete(false)` queued to that thread's event loop. Whichever completion
// comes first wins; later ones do nothing.
class SleepWaiter : public std::enable_shared_from_this<SleepWaiter> {
    struct Private {};

  public:
    explicit SleepWaiter(Private) {}
    SleepWaiter(const SleepWaiter&) = delete;
    SleepWaiter& operator=(const SleepWaiter&) = delete;

    // A waiter bound to the calling thread's event loop.
    static std::shared_ptr<SleepWaiter> create();

    // Arranges that cancelling `token` completes the wait with false, through the sleeper's event loop.
    // Call once, before awaiting.
    void completeOnCancel(const CancellationToken& token);

    // Ends the wait with `fullDurationPassed` and resumes the suspended sleeper inline. Sleeper's
    // thread only. Returns false, doing nothing, when the wait had already ended.
    bool complete(bool fullDurationPassed);

    // True once a completion has won. Any thread.
    bool isFinished() const { return finished_.load(std::memory_order_acquire); }

    // What the sleeper awaits: `co_await waiter->completion()` yields the completion's argument.
    class Completion {
      public:
        explicit Completion(std::shared_ptr<SleepWaiter> waiter) : waiter_(std::move(waiter)) {}
        bool await_ready() const noexcept { return waiter_->isFinished(); }
        void await_suspend(std::coroutine_handle<> sleeper) noexcept { waiter_->sleeper_ = sleeper; }
        bool await_resume() const noexcept { return waiter_->fullDurationPassed_; }

      private:
        std::shared_ptr<SleepWaiter> waiter_;
    };
    Completion completion() { return Completion(shared_from_this()); }

  private:
    EventLoopHandle loop_ = EventLoopHandle::current();  // the sleeper's thread
    std::atomic<bool> finished_{false};
    bool fullDurationPassed_ = false;  // sleeper's thread; set before finished_
    std::coroutine_handle<> sleeper_;  // sleeper's thread; empty until suspended
    CancellationToken::Registration cancellation_;
};

}  // namespace kestrum

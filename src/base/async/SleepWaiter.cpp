#include "base/async/SleepWaiter.h"

#include <utility>

namespace kestrum {

std::shared_ptr<SleepWaiter> SleepWaiter::create() {
    return std::make_shared<SleepWaiter>(Private{});
}

void SleepWaiter::completeOnCancel(const CancellationToken& token) {
    // Weak: the registration lives inside the waiter, so a strong capture would keep it alive forever.
    cancellation_ = token.onCancel([weak = weak_from_this()] {
        const std::shared_ptr<SleepWaiter> waiter = weak.lock();
        if (!waiter) return;
        waiter->loop_.post([waiter] { waiter->complete(false); });
    });
}

bool SleepWaiter::complete(bool fullDurationPassed) {
    if (isFinished()) return false;
    fullDurationPassed_ = fullDurationPassed;
    finished_.store(true, std::memory_order_release);
    // Resuming may end the sleeper's frame and with it the last other owner of this waiter.
    const std::shared_ptr<SleepWaiter> keepAlive = shared_from_this();
    if (const std::coroutine_handle<> sleeper = std::exchange(sleeper_, {})) sleeper.resume();
    return true;
}

}  // namespace kestrum

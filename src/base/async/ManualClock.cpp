#include "base/async/ManualClock.h"

#include "base/async/SleepWaiter.h"

#include <algorithm>

namespace kestrum {

ManualClock::~ManualClock() = default;

Clock::TimePoint ManualClock::now() const {
    std::lock_guard lock(mutex_);
    return now_;
}

QCoro::Task<bool> ManualClock::sleep(Duration duration, CancellationToken token) {
    if (token.isCancelled()) co_return false;
    if (duration <= Duration::zero()) co_return true;
    const std::shared_ptr<SleepWaiter> waiter = SleepWaiter::create();
    {
        std::lock_guard lock(mutex_);
        sleepers_.emplace(SleepKey{now_ + duration, nextSequence_++}, waiter);
    }
    waiter->completeOnCancel(token);
    co_return co_await waiter->completion();
}

void ManualClock::advance(Duration duration) {
    TimePoint target;
    {
        std::lock_guard lock(mutex_);
        target = now_ + std::max(duration, Duration::zero());
    }
    // The lock is released around each resumption: the resumed coroutine may sleep again.
    while (const std::shared_ptr<SleepWaiter> sleeper = takeDueSleeper(target)) sleeper->complete(true);
    std::lock_guard lock(mutex_);
    now_ = std::max(now_, target);
}

std::shared_ptr<SleepWaiter> ManualClock::takeDueSleeper(TimePoint target) {
    std::lock_guard lock(mutex_);
    while (!sleepers_.empty()) {
        auto first = sleepers_.begin();
        const TimePoint deadline = first->first.first;
        if (deadline > target) return nullptr;
        std::shared_ptr<SleepWaiter> sleeper = std::move(first->second);
        sleepers_.erase(first);
        if (sleeper->isFinished()) continue;  // woken by a cancellation already
        now_ = std::max(now_, deadline);
        return sleeper;
    }
    return nullptr;
}

std::size_t ManualClock::pendingSleepCount() const {
    std::lock_guard lock(mutex_);
    std::size_t count = 0;
    for (const auto& [key, sleeper] : sleepers_) {
        if (!sleeper->isFinished()) ++count;
    }
    return count;
}

}  // namespace kestrum

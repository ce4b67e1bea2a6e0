#include "core/review/DelayedActions.h"

#include <utility>

namespace kestrum {

DelayedActions::~DelayedActions() {
    cancelAll();
}

Job<void> DelayedActions::after(Clock::Duration delay, std::function<void()> action) {
    std::erase_if(waiting_, [](const Job<void>& job) { return job.isFinished(); });
    Job<void> job = Job<void>::start(
        [clock = &clock_, delay, action = std::move(action)](CancellationToken token) -> QCoro::Task<void> {
            QCoro::Task<bool> sleep = clock->sleep(delay, token);
            const bool waited = co_await sleep;
            // A cancelled sleep wakes from the event loop after its owner may have gone: touch nothing.
            if (!waited || token.isCancelled()) co_return;
            action();
        });
    waiting_.push_back(job);
    return job;
}

void DelayedActions::cancelAll() {
    for (const Job<void>& job : waiting_) job.cancel();
    waiting_.clear();
}

}  // namespace kestrum

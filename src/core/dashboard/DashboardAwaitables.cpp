#include "core/dashboard/DashboardAwaitables.h"

#include "base/async/EventLoopHandle.h"
#include "base/async/SleepWaiter.h"

namespace kestrum {

QCoro::Task<bool> yieldToEventLoop(CancellationToken token) {
    if (token.isCancelled()) co_return false;
    const std::shared_ptr<SleepWaiter> waiter = SleepWaiter::create();
    waiter->completeOnCancel(token);
    EventLoopHandle::current().post([waiter] { waiter->complete(true); });
    co_return co_await waiter->completion();
}

QCoro::Task<bool> seekAndWait(VideoPlayer& player, double timeSeconds, VideoSeekTolerance tolerance,
                              CancellationToken token) {
    if (token.isCancelled()) co_return false;
    const std::shared_ptr<SleepWaiter> waiter = SleepWaiter::create();
    waiter->completeOnCancel(token);
    player.seek(timeSeconds, tolerance, [waiter](bool finished) { waiter->complete(finished); });
    co_return co_await waiter->completion();
}

}  // namespace kestrum

#include "base/async/SystemClock.h"

#include "base/async/SleepWaiter.h"

#include <QTimer>

#include <algorithm>
#include <memory>

namespace kestrum {

namespace {

// QTimer counts whole milliseconds: round up so that a timer never fires before the deadline it was
// armed for.
std::chrono::milliseconds timerIntervalUntil(Clock::TimePoint deadline, Clock::TimePoint now) {
    const auto remaining = deadline - now;
    return std::max(std::chrono::ceil<std::chrono::milliseconds>(remaining), std::chrono::milliseconds(0));
}

// Stops the timer on its own thread and leaves its deletion to that thread's event loop: the timer may
// be the sender of the signal whose handler is ending the sleep.
struct StopAndDeleteLater {
    void operator()(QTimer* timer) const {
        timer->stop();
        timer->deleteLater();
    }
};
using SleepTimer = std::unique_ptr<QTimer, StopAndDeleteLater>;

SleepTimer startSleepTimer(Clock::TimePoint deadline, const std::shared_ptr<SleepWaiter>& waiter) {
    SleepTimer timer(new QTimer);
    timer->setTimerType(Qt::PreciseTimer);
    timer->setSingleShot(true);
    QTimer* const raw = timer.get();
    // Strong capture of the waiter: a late timeout after a cancellation finds it finished and does
    // nothing. The timer is owned by the sleeping frame, so the connection ends with that frame.
    QObject::connect(raw, &QTimer::timeout, raw, [deadline, waiter, raw] {
        const Clock::TimePoint now = std::chrono::steady_clock::now();
        if (now < deadline) {
            raw->start(timerIntervalUntil(deadline, now));
            return;
        }
        waiter->complete(true);
    });
    timer->start(timerIntervalUntil(deadline, std::chrono::steady_clock::now()));
    return timer;
}

}  // namespace

Clock& Clock::system() {
    static SystemClock clock;
    return clock;
}

Clock::TimePoint SystemClock::now() const {
    return std::chrono::steady_clock::now();
}

QCoro::Task<bool> SystemClock::sleep(Duration duration, CancellationToken token) {
    if (token.isCancelled()) co_return false;
    if (duration <= Duration::zero()) co_return true;
    const TimePoint deadline = now() + duration;
    const std::shared_ptr<SleepWaiter> waiter = SleepWaiter::create();
    const SleepTimer timer = startSleepTimer(deadline, waiter);
    waiter->completeOnCancel(token);
    co_return co_await waiter->completion();
}

}  // namespace kestrum

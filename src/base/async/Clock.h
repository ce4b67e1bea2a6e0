#pragma once

#include "base/async/CancellationToken.h"

#include <QCoroTask>

#include <chrono>

namespace kestrum {

// The one source of time and of waiting for the core. Production code takes a Clock& (default
// `Clock::system()`); tests pass a ManualClock and move time by hand, so no logic test sleeps in real
// time.
class Clock {
  public:
    using TimePoint = std::chrono::steady_clock::time_point;
    using Duration = std::chrono::nanoseconds;

    virtual ~Clock() = default;

    // The present instant on this clock. Monotonic; callable from any thread.
    virtual TimePoint now() const = 0;

    // Waits `duration`, then yields true; yields false when `token` is cancelled first. A token already
    // cancelled yields false and a duration of zero or less yields true, both without suspending.
    // The awaiting coroutine resumes on the thread that called `sleep`, which must run a Qt event loop;
    // a cancellation wakes it through that loop (queued), never inline inside `cancel()`.
    virtual QCoro::Task<bool> sleep(Duration duration, CancellationToken token) = 0;

    // The shared real clock (a SystemClock), created on first use and never destroyed.
    static Clock& system();
};

}  // namespace kestrum

#pragma once

#include "base/async/Clock.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace kestrum {

class SleepWaiter;

// A clock for tests whose time moves only when `advance` is called, so that logic with periods of
// seconds runs in no real time.
//
// Threads: `sleep` and `advance` belong to one thread, the test's (it runs the Qt event loop that
// sleepers resume on); `now` and `pendingSleepCount` may be read from any thread, and tokens may be
// cancelled from any thread. A cancelled sleeper is woken with false at its thread's next event-loop
// turn and stops counting as pending from then on. A sleep of zero or less completes at once with true,
// without suspending and without registering. Sleeps still pending when the clock is destroyed are
// never resumed, unless their token is cancelled.
class ManualClock final : public Clock {
  public:
    // Fixed and arbitrary: far enough from the epoch that subtracting test durations stays meaningful.
    static constexpr TimePoint kDefaultStart = TimePoint(std::chrono::hours(24));

    explicit ManualClock(TimePoint start = kDefaultStart) : now_(start) {}
    ~ManualClock() override;

    TimePoint now() const override;
    QCoro::Task<bool> sleep(Duration duration, CancellationToken token) override;

    // Moves time forward by `duration` (a negative duration does nothing). Every sleep whose deadline
    // falls within the advance is resumed inline, in deadline order and, for equal deadlines, in the
    // order the sleeps began; `now()` reads the sleeper's deadline while it runs, so a sleeper that
    // sleeps again within the window is resumed in its turn too. At the end `now()` is the full target.
    void advance(Duration duration);

    // Sleeps that are suspended and neither due nor woken by a cancellation.
    std::size_t pendingSleepCount() const;

  private:
    // Ordered by deadline, then by the order the sleeps began.
    using SleepKey = std::pair<TimePoint, std::uint64_t>;

    std::shared_ptr<SleepWaiter> takeDueSleeper(TimePoint target);

    mutable std::mutex mutex_;
    TimePoint now_;                                              // guarded by mutex_
    std::uint64_t nextSequence_ = 0;                             // guarded by mutex_
    std::map<SleepKey, std::shared_ptr<SleepWaiter>> sleepers_;  // guarded by mutex_
};

}  // namespace kestrum

#pragma once

#include "base/async/Clock.h"

namespace kestrum {

// The real clock: std::chrono::steady_clock (CLOCK_MONOTONIC on Linux), the same time base as the host
// clock of captured samples. Sleeps run on a precise QTimer of the sleeper's thread and never end
// before the full duration has passed. Stateless, so one instance serves every thread.
class SystemClock final : public Clock {
  public:
    TimePoint now() const override;
    QCoro::Task<bool> sleep(Duration duration, CancellationToken token) override;
};

}  // namespace kestrum

#pragma once

#include <functional>

namespace kestrum {

// The handle of one timer of a SerialQueue. Cancelling it, or dropping the handle, disarms the timer:
// once `cancel()` has returned no new invocation of the handler starts. An invocation the queue had
// already begun may still finish; to wait for it, `sync` an empty task on the queue afterwards (from
// another thread). Movable, not copyable; `cancel()` is thread-safe, idempotent, and may be called from
// inside the handler, on the queue.
class [[nodiscard]] SerialQueueTimer {
  public:
    SerialQueueTimer() = default;
    explicit SerialQueueTimer(std::function<void()> canceller) : canceller_(std::move(canceller)) {}
    SerialQueueTimer(SerialQueueTimer&& other) noexcept;
    SerialQueueTimer& operator=(SerialQueueTimer&& other) noexcept;
    SerialQueueTimer(const SerialQueueTimer&) = delete;
    SerialQueueTimer& operator=(const SerialQueueTimer&) = delete;
    ~SerialQueueTimer();

    void cancel();

    // False for an empty handle and after `cancel()`.
    bool isArmed() const { return static_cast<bool>(canceller_); }

  private:
    std::function<void()> canceller_;  // disarms the timer in its queue; empty once used
};

}  // namespace kestrum

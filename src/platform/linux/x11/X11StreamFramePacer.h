#pragma once

#include <chrono>
#include <cstdint>

namespace kestrum {

// The deadline grid of a window stream's reads: deadline k lies k / frameRate seconds after the anchor,
// computed from k each time so that rounding of the interval never accumulates into drift. A read that
// overruns is followed at once by a read for the last deadline it missed, so a hiccup shorter than an
// interval (an encoder starting up, a busy X server) costs no frame; only deadlines older than that are
// skipped, never caught up in a burst.
//
// Owned and used by the capture thread only.
class X11StreamFramePacer {
  public:
    using TimePoint = std::chrono::steady_clock::time_point;

    // The first deadline is `anchor` itself. `frameRate` is in frames per second and positive.
    X11StreamFramePacer(TimePoint anchor, int frameRate);

    TimePoint deadline() const;
    int frameRate() const { return frameRate_; }

    // Moves to the latest deadline at or before `now` when the read overran it (the next read is due at
    // once), otherwise to the next deadline. Gives the number of deadlines passed over on the way.
    std::int64_t advance(TimePoint now);

    // Starts a grid of another rate at the current deadline (a configuration changed by the client).
    void retime(int frameRate);

  private:
    std::chrono::nanoseconds offsetOf(std::int64_t index) const;

    TimePoint anchor_;
    int frameRate_;
    std::int64_t index_ = 0;  // of the current deadline
};

}  // namespace kestrum

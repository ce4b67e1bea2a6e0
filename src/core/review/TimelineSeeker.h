#pragma once

#include "base/async/Clock.h"
#include "base/async/Job.h"
#include "platform/ports/VideoPlayer.h"

#include <chrono>
#include <functional>
#include <optional>

namespace kestrum {

// Turns clicks and drags on the timeline into seeks of the player. A click seeks exactly. A drag scrubs:
// the current time follows the pointer at once, but the player is asked at most once every 0.05 seconds,
// with a loose tolerance of 0.1 seconds either way, and a move that comes too soon is held back and made
// when the interval is over, so the drag's last position is always reached; its end seeks exactly.
//
// Every path first reports an interaction, and keeps the time within 0 and the duration. A held-back seek
// is cancelled by every later seek, and one that wakes cancelled does nothing.
//
// Threads: the main thread; the held-back seek is a task on the main thread too, timed on the Clock.
// The player, when set, and the clock must outlive the seeker.
class TimelineSeeker {
  public:
    static constexpr std::chrono::milliseconds kScrubInterval{50};
    static constexpr double kScrubToleranceSeconds = 0.1;

    struct Callbacks {
        std::function<void()> onInteraction;
        // Sets the review's current time (seconds).
        std::function<void(double)> setCurrentTime;
        // Reports a seek that was sent to the player, with its time.
        std::function<void(double)> onSeek;
    };

    TimelineSeeker(Clock& clock, Callbacks callbacks);
    ~TimelineSeeker();
    TimelineSeeker(const TimelineSeeker&) = delete;
    TimelineSeeker& operator=(const TimelineSeeker&) = delete;

    // The player that seeks go to; none: the times are still set and reported.
    void setPlayer(VideoPlayer* player);
    // The movie's length in seconds; 0 or less makes every seek go to 0.
    void setDurationSeconds(double durationSeconds) { durationSeconds_ = durationSeconds; }

    // An exact seek, at once.
    void seek(double timeSeconds);
    // A throttled seek while dragging.
    void scrub(double timeSeconds);
    // The exact seek at the end of a drag.
    void finishScrub(double timeSeconds);

    bool hasPendingSeek() const { return pendingTimelineSeek_ && !pendingTimelineSeek_->isFinished(); }

  private:
    double clamped(double timeSeconds) const;
    void cancelPendingSeek();
    // The exact seek of a click (which stamps the time of the last timed seek) or of a drag's end.
    void exactSeek(double timeSeconds, bool stampsTime);
    void seekPlayer(double timeSeconds, VideoSeekTolerance tolerance);
    // The scrub's seek: loose, stamped with the time it was made, reported.
    void scrubSeek(double timeSeconds);

    Clock& clock_;
    Callbacks callbacks_;
    VideoPlayer* player_ = nullptr;  // main thread, not owned
    double durationSeconds_ = 0;
    // Both main thread: the held-back seek of a scrub, and when the last timed seek was sent (never yet
    // when absent).
    std::optional<Job<void>> pendingTimelineSeek_;
    std::optional<Clock::TimePoint> lastTimelineSeekTime_;
};

}  // namespace kestrum

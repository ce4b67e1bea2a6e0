#include "core/review/TimelineSeeker.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kestrum {

TimelineSeeker::TimelineSeeker(Clock& clock, Callbacks callbacks)
    : clock_(clock), callbacks_(std::move(callbacks)) {}

TimelineSeeker::~TimelineSeeker() {
    cancelPendingSeek();
}

void TimelineSeeker::setPlayer(VideoPlayer* player) {
    cancelPendingSeek();
    player_ = player;
}

void TimelineSeeker::seek(double timeSeconds) {
    exactSeek(timeSeconds, true);
}

void TimelineSeeker::scrub(double timeSeconds) {
    if (callbacks_.onInteraction) callbacks_.onInteraction();
    const double time = clamped(timeSeconds);
    if (callbacks_.setCurrentTime) callbacks_.setCurrentTime(time);
    const Clock::TimePoint now = clock_.now();
    const Clock::Duration passed =
        lastTimelineSeekTime_ ? now - *lastTimelineSeekTime_ : Clock::Duration::max();
    cancelPendingSeek();
    if (passed >= kScrubInterval) {
        scrubSeek(time);
        return;
    }
    const Clock::Duration wait = kScrubInterval - passed;
    pendingTimelineSeek_ = Job<void>::start([this, time, wait](CancellationToken token) -> QCoro::Task<void> {
        QCoro::Task<bool> sleep = clock_.sleep(wait, token);
        const bool waited = co_await sleep;
        // A cancelled wait wakes from the event loop, perhaps after the seeker has gone: touch nothing.
        if (!waited || token.isCancelled()) co_return;
        scrubSeek(time);
    });
}

void TimelineSeeker::finishScrub(double timeSeconds) {
    // The end of a drag leaves the time of the last timed seek as it was.
    exactSeek(timeSeconds, false);
}

void TimelineSeeker::exactSeek(double timeSeconds, bool stampsTime) {
    if (callbacks_.onInteraction) callbacks_.onInteraction();
    const double time = clamped(timeSeconds);
    cancelPendingSeek();
    if (callbacks_.setCurrentTime) callbacks_.setCurrentTime(time);
    seekPlayer(time, VideoSeekTolerance::exact());
    if (stampsTime) lastTimelineSeekTime_ = clock_.now();
    if (callbacks_.onSeek) callbacks_.onSeek(time);
}

double TimelineSeeker::clamped(double timeSeconds) const {
    if (!(durationSeconds_ > 0) || std::isnan(timeSeconds)) return 0;
    return std::clamp(timeSeconds, 0.0, durationSeconds_);
}

void TimelineSeeker::cancelPendingSeek() {
    if (pendingTimelineSeek_) pendingTimelineSeek_->cancel();
    pendingTimelineSeek_.reset();
}

void TimelineSeeker::seekPlayer(double timeSeconds, VideoSeekTolerance tolerance) {
    if (player_) player_->seek(timeSeconds, tolerance);
}

void TimelineSeeker::scrubSeek(double timeSeconds) {
    seekPlayer(timeSeconds, VideoSeekTolerance::symmetric(kScrubToleranceSeconds));
    lastTimelineSeekTime_ = clock_.now();
    if (callbacks_.onSeek) callbacks_.onSeek(timeSeconds);
}

}  // namespace kestrum

#include "platform/linux/x11/X11StreamFramePacer.h"

namespace kestrum {

namespace {

constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;

}  // namespace

X11StreamFramePacer::X11StreamFramePacer(TimePoint anchor, int frameRate)
    : anchor_(anchor), frameRate_(frameRate) {}

std::chrono::nanoseconds X11StreamFramePacer::offsetOf(std::int64_t index) const {
    return std::chrono::nanoseconds(index * kNanosecondsPerSecond / frameRate_);
}

X11StreamFramePacer::TimePoint X11StreamFramePacer::deadline() const {
    return anchor_ + offsetOf(index_);
}

std::int64_t X11StreamFramePacer::advance(TimePoint now) {
    const std::int64_t elapsedNs = std::chrono::nanoseconds(now - anchor_).count();
    if (elapsedNs < offsetOf(index_ + 1).count()) {
        ++index_;
        return 0;
    }
    // An estimate from the rate, then corrected for the truncation of the offsets: the last index whose
    // deadline is not after `now`.
    std::int64_t latest = elapsedNs * frameRate_ / kNanosecondsPerSecond;
    while (offsetOf(latest).count() > elapsedNs) --latest;
    while (offsetOf(latest + 1).count() <= elapsedNs) ++latest;
    const std::int64_t skipped = latest - index_ - 1;
    index_ = latest;
    return skipped;
}

void X11StreamFramePacer::retime(int frameRate) {
    anchor_ = deadline();
    index_ = 0;
    frameRate_ = frameRate;
}

}  // namespace kestrum

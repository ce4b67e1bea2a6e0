#include "platform/linux/X11StreamFramePacer.h"

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
    // An estimate from the rate, then corrected for the truncation of the offsets: the first index
    // whose deadline is strictly after `now`.
    std::int64_t next = elapsedNs < 0 ? 0 : elapsedNs * frameRate_ / kNanosecondsPerSecond + 1;
    while (next > 0 && offsetOf(next - 1).count() > elapsedNs) --next;
    while (offsetOf(next).count() <= elapsedNs) ++next;
    if (next <= index_) next = index_ + 1;
    const std::int64_t skipped = next - index_ - 1;
    index_ = next;
    return skipped;
}

void X11StreamFramePacer::retime(int frameRate) {
    anchor_ = deadline();
    index_ = 0;
    frameRate_ = frameRate;
}

}  // namespace kestrum

#include "platform/linux/pulse/PulseAudioStreamClock.h"

#include <algorithm>

namespace kestrum {

HostTimeNs PulseAudioStreamClock::stamp(HostTimeNs measuredHostTimeNs, std::int64_t frameCount) {
    if (!anchored_) {
        anchored_ = true;
        anchorHostTimeNs_ = measuredHostTimeNs;
        framesSinceAnchor_ = 0;
    }
    // Moving the anchor by the whole error is re-anchoring at the measurement.
    anchorHostTimeNs_ += correctionNs(measuredHostTimeNs - expectedHostTimeNs());
    const HostTimeNs stampNs = expectedHostTimeNs();
    framesSinceAnchor_ += frameCount;
    return stampNs;
}

HostTimeNs PulseAudioStreamClock::correctionNs(HostTimeNs errorNs) {
    if (errorNs > kReanchorThresholdNs || errorNs < -kSnapThresholdNs) return errorNs;
    if (errorNs > kSnapThresholdNs) return std::min(errorNs, kMaxSlewPerBufferNs);
    if (errorNs < -kEarlyToleranceNs) return std::max(errorNs, -kMaxSlewPerBufferNs);
    return 0;
}

void PulseAudioStreamClock::skip(std::int64_t frameCount) {
    if (anchored_) framesSinceAnchor_ += frameCount;
}

std::vector<HostTimeNs> PulseAudioStreamClock::anchorAndStamp(const std::vector<Measurement>& measurements) {
    if (measurements.empty()) return {};
    std::int64_t framesBefore = 0;
    HostTimeNs anchorNs = measurements.front().measuredHostTimeNs;
    for (const Measurement& measurement : measurements) {
        anchorNs = std::min(anchorNs, measurement.measuredHostTimeNs - durationNs(framesBefore));
        framesBefore += measurement.frameCount;
    }
    anchored_ = true;
    anchorHostTimeNs_ = anchorNs;
    framesSinceAnchor_ = 0;
    std::vector<HostTimeNs> stampsNs;
    for (const Measurement& measurement : measurements) {
        stampsNs.push_back(expectedHostTimeNs());
        framesSinceAnchor_ += measurement.frameCount;
    }
    return stampsNs;
}

HostTimeNs PulseAudioStreamClock::durationNs(std::int64_t frameCount) const {
    const std::int64_t seconds = frameCount / sampleRateHz_;
    const std::int64_t remainder = frameCount % sampleRateHz_;
    return seconds * 1'000'000'000 + remainder * 1'000'000'000 / sampleRateHz_;
}

}  // namespace kestrum

#pragma once

#include "base/common/HostTime.h"

#include <cstdint>
#include <vector>

namespace kestrum {

// Stamps the buffers of one capture source on the host clock so that they follow each other without
// gaps or overlaps, while staying tied to the host clock over hours.
//
// The measured capture time of a buffer (its arrival less its latency) wanders by milliseconds with
// scheduling and the server's timing; the sample count does not. So the first buffer anchors the source,
// and every later one is expected where the previous ended (anchor + frames since it / rate). The
// measurement only ever errs late: a frame cannot have been captured after it arrived less what was
// queued behind it, but the server may hold it back a little. Against the expectation, the error
// (measured - expected) is:
// - within [-kEarlyToleranceNs, kSnapThresholdNs]: jitter; the buffer takes the expected time exactly;
// - above kSnapThresholdNs: slow drift of the device's clock against the host's; the expectation moves
//   later by at most kMaxSlewPerBufferNs, so that neighbouring buffers stay that close;
// - below -kEarlyToleranceNs: the expectation is later than the capture can have been; moved earlier by
//   at most kMaxSlewPerBufferNs while within kSnapThresholdNs, else at once to the measurement (a
//   device that handed over a backlog in a burst after the anchor);
// - beyond kReanchorThresholdNs either way: a real jump (a stall, a suspended source); the buffer
//   anchors the source afresh.
//
// Plain arithmetic, owned by the one thread that reads the source (the sound server's loop thread).
class PulseAudioStreamClock {
  public:
    static constexpr HostTimeNs kSnapThresholdNs = 30'000'000;
    static constexpr HostTimeNs kEarlyToleranceNs = 2'000'000;
    static constexpr HostTimeNs kReanchorThresholdNs = 1'500'000'000;
    static constexpr HostTimeNs kMaxSlewPerBufferNs = 1'000'000;

    // A buffer's measured capture time and its length.
    struct Measurement {
        HostTimeNs measuredHostTimeNs = 0;
        std::int64_t frameCount = 0;
    };

    explicit PulseAudioStreamClock(int sampleRateHz) : sampleRateHz_(sampleRateHz) {}

    // The stamps of the first buffers of a source, back to back from the latest anchor that stamps none
    // of them later than its measurement: a backlog handed over in one burst is then stamped where it
    // was captured, before its arrival, instead of running ahead of the host clock. Anchors the source
    // and counts the frames; later buffers go to `stamp`. Nothing happens for an empty list.
    std::vector<HostTimeNs> anchorAndStamp(const std::vector<Measurement>& measurements);

    // The host time of the first frame of the next buffer, `frameCount` frames long, whose capture was
    // measured at `measuredHostTimeNs`; counts the buffer's frames.
    HostTimeNs stamp(HostTimeNs measuredHostTimeNs, std::int64_t frameCount);

    // Counts `frameCount` frames that the server reported lost (a hole): the next buffer is expected
    // that much later. Nothing happens before the first buffer has anchored the source.
    void skip(std::int64_t frameCount);

    // Forgets the anchor: the next buffer anchors afresh. For a new start, and after the server
    // dropped captured data without saying how much.
    void reset() { anchored_ = false; }

  private:
    // The expected host time of the frame `framesSinceAnchor_` frames after the anchor.
    HostTimeNs expectedHostTimeNs() const { return anchorHostTimeNs_ + durationNs(framesSinceAnchor_); }
    // The length of `frameCount` frames, in whole seconds and a remainder apart so that hours of frames
    // times 1e9 never overflow, and without rounding that accumulates.
    HostTimeNs durationNs(std::int64_t frameCount) const;
    // How far the expectation moves toward a measurement off by `errorNs` (measured - expected); the
    // whole error to re-anchor.
    static HostTimeNs correctionNs(HostTimeNs errorNs);

    int sampleRateHz_;
    bool anchored_ = false;
    HostTimeNs anchorHostTimeNs_ = 0;
    std::int64_t framesSinceAnchor_ = 0;
};

}  // namespace kestrum

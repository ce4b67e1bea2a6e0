#include "platform/linux/pulse/PulseAudioStreamClock.h"

#include <gtest/gtest.h>

#include <vector>

namespace kestrum {
namespace {

constexpr HostTimeNs ms(double value) {
    return HostTimeNs(value * 1'000'000);
}

TEST(PulseAudioStreamClock, StampsFollowTheSampleCountAndTheHostClock) {
    // One buffer of a source: optionally a hole or a reset before it, then its measurement, its length
    // and the stamp it must get. 960 frames at 48 kHz are 20 ms.
    struct Step {
        std::int64_t holeFrames;
        bool reset;
        HostTimeNs measuredNs;
        std::int64_t frames;
        HostTimeNs expectedNs;
    };
    struct Case {
        const char* name;
        int rateHz;
        std::vector<Step> steps;
    };
    constexpr HostTimeNs kTenHoursNs = 36000LL * 1'000'000'000;
    // clang-format off
    const std::vector<Case> cases = {
        {"late jitter within 30 ms and early within 2 ms snap to the expected time", 48000,
         {{0, false, ms(1000), 960, ms(1000)}, {0, false, ms(1045), 960, ms(1020)}, {0, false, ms(1038.5), 960, ms(1040)}}},
        {"too early pulls back by 1 ms a buffer, beyond 30 ms at once", 48000,
         {{0, false, ms(1000), 960, ms(1000)}, {0, false, ms(1010), 960, ms(1019)}, {0, false, ms(1000), 960, ms(1000)},
          {0, false, ms(1021), 960, ms(1020)}}},
        {"late beyond the snap slews by at most 1 ms a buffer", 48000,
         {{0, false, ms(1000), 960, ms(1000)}, {0, false, ms(1120), 960, ms(1021)}, {0, false, ms(1140), 960, ms(1042)}}},
        {"a jump beyond 1.5 s re-anchors, forward or back", 48000,
         {{0, false, ms(5000), 960, ms(5000)}, {0, false, ms(6621), 960, ms(6621)}, {0, false, ms(6645), 960, ms(6641)},
          {0, false, ms(3000), 960, ms(3000)}}},
        {"a hole moves the next buffer on by its length; before the anchor it counts for nothing", 48000,
         {{960, false, ms(1000), 960, ms(1000)}, {4800, false, ms(1123), 960, ms(1120)}}},
        {"a reset anchors the next buffer at its measurement", 48000,
         {{0, false, ms(1000), 960, ms(1000)}, {0, true, ms(1500), 960, ms(1500)}, {0, false, ms(1530), 960, ms(1520)}}},
        {"fractional nanoseconds per buffer do not accumulate", 48000,
         {{0, false, 0, 1000, 0}, {0, false, 20'833'333, 1000, 20'833'333}, {0, false, 41'666'666, 1000, 41'666'666},
          {0, false, 62'500'000, 1000, 62'500'000}}},
        {"ten hours of frames keep nanosecond arithmetic", 44100,
         {{0, false, ms(7), 441, ms(7)}, {44100LL * 36000 - 441, false, ms(7) + kTenHoursNs, 441, ms(7) + kTenHoursNs}}},
    };
    // clang-format on
    for (const Case& row : cases) {
        PulseAudioStreamClock clock(row.rateHz);
        for (std::size_t i = 0; i < row.steps.size(); ++i) {
            const Step& step = row.steps[i];
            if (step.reset) clock.reset();
            if (step.holeFrames != 0) clock.skip(step.holeFrames);
            EXPECT_EQ(clock.stamp(step.measuredNs, step.frames), step.expectedNs)
                << row.name << ", step " << i;
        }
    }
}

TEST(PulseAudioStreamClock, TheFirstBuffersAnchorWhereNoneIsStampedAfterItsMeasurement) {
    struct Case {
        const char* name;
        std::vector<double> measuredMs;  // 20 ms buffers
        std::vector<double> expectedMs;
    };
    const std::vector<Case> cases = {
        {"a backlog in one burst ends at its arrival", {1000, 1001, 1002, 1003}, {943, 963, 983, 1003}},
        {"buffers in real time keep the first", {1000, 1020.5, 1040.2}, {1000, 1020, 1040}},
        {"a late first buffer yields to the next", {1010, 1020, 1040}, {1000, 1020, 1040}},
    };
    for (const Case& row : cases) {
        PulseAudioStreamClock clock(48000);
        std::vector<PulseAudioStreamClock::Measurement> measurements;
        std::vector<HostTimeNs> expectedNs;
        for (double measured : row.measuredMs) measurements.push_back({ms(measured), 960});
        for (double expected : row.expectedMs) expectedNs.push_back(ms(expected));
        EXPECT_EQ(clock.anchorAndStamp(measurements), expectedNs) << row.name;
        // The next buffer continues the run.
        EXPECT_EQ(clock.stamp(expectedNs.back() + ms(20), 960), expectedNs.back() + ms(20)) << row.name;
    }
}

}  // namespace
}  // namespace kestrum

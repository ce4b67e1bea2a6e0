// AudioTimeline: where stamped buffers land on a track's sample axis.
#include "media/ffmpeg/AudioTimeline.h"

#include <gtest/gtest.h>

#include <vector>

namespace kestrum::ffmpeg {
namespace {

constexpr HostTimeNs kStartNs = 10'000'000'000;

struct Step {
    double stampSeconds;  // buffer stamp relative to the session start
    int frames;
    double inputRate;
    std::int64_t nextOutputFrame;
    AudioTimeline::Placement expected;
};

struct Case {
    const char* name;
    std::vector<Step> steps;
};

TEST(AudioTimeline, PlacesBuffersOnTheSampleAxis) {
    using P = AudioTimeline::Placement;
    const std::vector<Case> cases{
        {"first buffer at the start", {{0.0, 480, 48000, 0, P{false, 0, 0}}}},
        {"first buffer late: silence before it", {{0.25, 480, 48000, 0, P{false, 0, 12000}}}},
        {"wholly before the start",
         {{-1.0, 480, 48000, 0, P{true, 480, 0}}, {0.0, 480, 48000, 0, P{false, 0, 0}}}},
        {"straddling the start is trimmed", {{-0.005, 480, 48000, 0, P{false, 240, 0}}}},
        {"straddling at another input rate", {{-0.01, 882, 44100, 0, P{false, 441, 0}}}},
        {"jitter within 40 ms follows on",
         {{0.0, 480, 48000, 0, P{false, 0, 0}},
          {0.0135, 480, 48000, 480, P{false, 0, 0}},
          {0.0165, 480, 48000, 960, P{false, 0, 0}}}},
        {"a gap beyond 40 ms is filled with silence",
         {{0.0, 480, 48000, 0, P{false, 0, 0}}, {0.51, 480, 48000, 480, P{false, 0, 24000}}}},
        {"an overlap beyond 40 ms is cut from the new buffer",
         {{0.0, 4800, 48000, 0, P{false, 0, 0}}, {0.05, 4800, 48000, 4800, P{false, 2400, 0}}}},
        {"an overlap covering the whole buffer drops it",
         {{0.0, 9600, 48000, 0, P{false, 0, 0}}, {0.05, 480, 48000, 9600, P{true, 480, 0}}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        AudioTimeline timeline(48000);
        for (std::size_t index = 0; index < c.steps.size(); ++index) {
            SCOPED_TRACE(index);
            const Step& step = c.steps[index];
            const auto placed = timeline.place(kStartNs, kStartNs + secondsToHostTime(step.stampSeconds),
                                               step.frames, step.inputRate, step.nextOutputFrame);
            EXPECT_EQ(placed.dropped, step.expected.dropped);
            EXPECT_EQ(placed.skipInputFrames, step.expected.skipInputFrames);
            EXPECT_EQ(placed.silenceOutputFrames, step.expected.silenceOutputFrames);
        }
    }
}

}  // namespace
}  // namespace kestrum::ffmpeg

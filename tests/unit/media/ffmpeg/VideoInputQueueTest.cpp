// How many frames the video track lets wait for its encoder.
#include "media/ffmpeg/FfmpegVideoInput.h"

#include <gtest/gtest.h>

namespace kestrum::ffmpeg {
namespace {

TEST(VideoInputQueue, HoldsAFifthOfASecondForARealTimeProducer) {
    struct Case {
        const char* name;
        bool realTime;
        int frameRate;
        std::int64_t frames;
    };
    const Case cases[] = {
        {"60 fps: the 150 ms an encoder's start has taken, with room", true, 60, 12},
        {"30 fps", true, 30, 6},
        {"a rate that does not divide evenly rounds up", true, 24, 5},
        {"a low rate keeps the floor of four", true, 10, 4},
        {"no rate known keeps the floor", true, 0, 4},
        {"offline: a fixed depth, whatever the rate", false, 60, 16},
        {"offline at a low rate", false, 10, 16},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(videoInputQueueFrames(c.realTime, c.frameRate), c.frames);
    }
}

}  // namespace
}  // namespace kestrum::ffmpeg

// The order in which the muxer writes the packets of its streams, and how long a stalled stream may hold
// the others back.
#include "media/ffmpeg/PacketInterleaver.h"

#include <gtest/gtest.h>

#include <string>
#include <variant>

namespace kestrum::ffmpeg {
namespace {

constexpr std::int64_t kWindowUs = 2'000'000;

struct Push {
    int stream;
    std::int64_t dtsUs;
};
struct End {
    int stream;
};
// After a step, the packets (named "stream:dtsMs") that may go now, in order.
using Step = std::variant<Push, End>;

struct Case {
    const char* name;
    std::vector<Step> steps;
    std::vector<std::string> expected;  // every packet popped after each step, joined
};

std::string label(int stream, std::int64_t dtsUs) {
    return std::to_string(stream) + ":" + std::to_string(dtsUs / 1000);
}

TEST(PacketInterleaver, WritesInDecodingOrderAndLetsNoStreamHoldTheOthersBackBeyondTheWindow) {
    const std::vector<Case> cases{
        {"one stream waits for the other",
         {Push{0, 0}, Push{0, 33'000}, Push{1, 10'000}, Push{1, 50'000}},
         {"0:0", "1:10", "0:33"}},
        {"ties go to the lower stream",
         {Push{1, 20'000}, Push{0, 20'000}, Push{0, 40'000}, Push{1, 40'000}},
         {"0:20", "1:20", "0:40"}},
        {"a stalled stream holds the other back by the window at most",
         {Push{1, 0}, Push{0, 0}, Push{0, 1'000'000}, Push{0, 3'000'000}, Push{0, 3'000'001},
          Push{0, 3'500'000}},
         {"0:0", "1:0", "0:1000"}},
        {"an ended stream holds nothing back",
         {Push{0, 0}, Push{1, 5'000}, End{1}, Push{0, 10'000}, Push{0, 20'000}},
         {"0:0", "1:5", "0:10", "0:20"}},
        {"everything goes once every stream ended",
         {Push{0, 0}, Push{0, 10'000}, Push{0, 20'000}, End{0}, End{1}},
         {"0:0", "0:10", "0:20"}},
        {"a stream with a negative start (audio priming) goes first",
         {Push{0, 0}, Push{1, -21'333}, Push{1, 0}},
         {"1:-21", "0:0"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        PacketInterleaver<std::string> interleaver(2, kWindowUs);
        std::vector<std::string> popped;
        for (const Step& step : c.steps) {
            if (const auto* push = std::get_if<Push>(&step)) {
                interleaver.push(push->stream, push->dtsUs, label(push->stream, push->dtsUs));
            } else {
                interleaver.endStream(std::get<End>(step).stream);
            }
            while (std::optional<std::string> next = interleaver.pop()) popped.push_back(*next);
        }
        EXPECT_EQ(popped, c.expected);
    }
}

TEST(PacketInterleaver, KnowsWhenEveryStreamHasEnded) {
    PacketInterleaver<int> interleaver(3, kWindowUs);
    interleaver.endStream(0);
    interleaver.endStream(2);
    EXPECT_FALSE(interleaver.allStreamsEnded());
    interleaver.endStream(1);
    EXPECT_TRUE(interleaver.allStreamsEnded());
    EXPECT_TRUE(interleaver.empty());
}

}  // namespace
}  // namespace kestrum::ffmpeg

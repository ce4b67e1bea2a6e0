// Where seeks land, read from the picture on screen: every tolerance under a key-frame interval is an
// exact seek (the scrub's 0.1 s too), whose picture is the frame at or just before the target, even in
// the middle of a key-frame interval (key frames at 0, 2, 4 and 6 s); only a whole interval either way
// lets the player take a key frame.
#include "PlayerFixture.h"

#include <cmath>
#include <ostream>

namespace kestrum::test {
namespace {

struct SeekCase {
    const char* name;
    double targetSeconds;
    VideoSeekTolerance tolerance;
    qint64 shownStripeMs;  // the frame that must be on screen
};

void PrintTo(const SeekCase& seekCase, std::ostream* out) {
    *out << seekCase.name;
}

class MpvVideoPlayerSeekTest : public PlayerFixture, public testing::WithParamInterface<SeekCase> {};

TEST_P(MpvVideoPlayerSeekTest, LandsOnTheFrameThePictureShows) {
    const SeekCase& c = GetParam();
    MpvVideoPlayer& player = show(movies.clock());
    std::optional<bool> finished;
    const std::uint64_t pictures = stage->item().picturesShown();
    player.seek(c.targetSeconds, c.tolerance, [&](bool done) { finished = done; });
    EXPECT_DOUBLE_EQ(player.currentTime(), c.targetSeconds) << "a poll during the seek reads the target";
    ASSERT_TRUE(waitFor([&] { return finished.has_value(); }, 15000));
    EXPECT_TRUE(*finished);
    ASSERT_TRUE(stage->waitForPictureAfter(pictures));
    runEventLoopFor(150);
    EXPECT_EQ(stage->shownStripeMs(), c.shownStripeMs);
    ASSERT_TRUE(waitFor([&] { return std::abs(player.currentTime() - c.shownStripeMs / 1000.0) < 0.002; }))
        << "the position after the seek is the frame landed on, not " << player.currentTime();
}

INSTANTIATE_TEST_SUITE_P(
    Tolerances, MpvVideoPlayerSeekTest,
    testing::Values(SeekCase{"ExactOnAFrameMidInterval", 5.0, VideoSeekTolerance::exact(), 5000},
                    SeekCase{"ExactBetweenFrames", 5.51, VideoSeekTolerance::exact(), 5500},
                    SeekCase{"ExactJustBeforeAFrame", 5.525, VideoSeekTolerance::exact(), 5500},
                    SeekCase{"ExactJustAfterAKeyFrame", 2.01, VideoSeekTolerance::exact(), 2000},
                    SeekCase{"ScrubTolerance", 3.2, VideoSeekTolerance::symmetric(0.1), 3200},
                    SeekCase{"OneSecondEitherWayIsStillExact", 4.9, VideoSeekTolerance::symmetric(1.0), 4900},
                    SeekCase{"AWholeIntervalOnOneSideOnlyIsStillExact", 5.0, VideoSeekTolerance{2.0, 0.5},
                             5000},
                    SeekCase{"AWholeIntervalTakesAKeyFrame", 5.0, VideoSeekTolerance::symmetric(2.0), 4000},
                    SeekCase{"AnyKeyFrame", 7.0, VideoSeekTolerance::anyKeyFrame(), 6000}),
    [](const testing::TestParamInfo<SeekCase>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace kestrum::test

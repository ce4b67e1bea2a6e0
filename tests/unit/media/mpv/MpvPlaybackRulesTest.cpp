#include "media/mpv/MpvPlaybackRules.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>
#include <string>

namespace kestrum {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

struct SeekFlagsCase {
    const char* name;
    VideoSeekTolerance tolerance;
    std::string flags;
};

void PrintTo(const SeekFlagsCase& c, std::ostream* out) {
    *out << c.name;
}

class SeekFlagsTest : public testing::TestWithParam<SeekFlagsCase> {};

TEST_P(SeekFlagsTest, KeyFramesOnlyForAWholeIntervalBothWays) {
    EXPECT_EQ(mpvSeekFlags(GetParam().tolerance), GetParam().flags);
}

INSTANTIATE_TEST_SUITE_P(
    Tolerances, SeekFlagsTest,
    testing::Values(SeekFlagsCase{"Zero", VideoSeekTolerance::exact(), "absolute+exact"},
                    SeekFlagsCase{"Scrub", VideoSeekTolerance::symmetric(0.1), "absolute+exact"},
                    SeekFlagsCase{"JustUnderAnInterval", VideoSeekTolerance::symmetric(1.999),
                                  "absolute+exact"},
                    SeekFlagsCase{"OneSideOnly", VideoSeekTolerance{kInfinity, 0.5}, "absolute+exact"},
                    SeekFlagsCase{"OtherSideOnly", VideoSeekTolerance{0, kInfinity}, "absolute+exact"},
                    SeekFlagsCase{"AWholeInterval", VideoSeekTolerance::symmetric(2.0), "absolute+keyframes"},
                    SeekFlagsCase{"AnyKeyFrame", VideoSeekTolerance::anyKeyFrame(), "absolute+keyframes"},
                    SeekFlagsCase{"NaN", VideoSeekTolerance{kNaN, kNaN}, "absolute+exact"}),
    [](const testing::TestParamInfo<SeekFlagsCase>& info) { return std::string(info.param.name); });

struct ExactSeekCase {
    double targetSeconds;
    std::optional<double> framesPerSecond;
    double mpvSeconds;
};

TEST(MpvExactSeekSecondsTest, AsksForOneFrameEarlierSoThatTheFrameHoldingTheTargetShows) {
    const ExactSeekCase cases[] = {
        {5.5, 30, 5.5 - 1.0 / 30 + 0.006},
        {5.0, 60, 5.0 - 1.0 / 60 + 0.006},
        {0.01, 30, 0},  // never before the start
        {5.5, std::nullopt, 5.5},
        {5.5, 0, 5.5},
        {5.5, kInfinity, 5.5},
        {5.5, kNaN, 5.5},
    };
    for (const ExactSeekCase& c : cases) {
        EXPECT_NEAR(mpvExactSeekSeconds(c.targetSeconds, c.framesPerSecond), c.mpvSeconds, 1e-12)
            << c.targetSeconds << " at " << c.framesPerSecond.value_or(-1) << " fps";
    }
}

TEST(MpvVolumeTest, TheLinearGainBecomesMpvsCubicPercent) {
    const struct {
        double volume;
        double clamped;
        double percent;
    } cases[] = {
        {0, 0, 0},     {1, 1, 100},  {0.125, 0.125, 50}, {0.5, 0.5, 79.370052598},
        {1.5, 1, 100}, {-0.2, 0, 0}, {kNaN, 0, 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(clampedVolume(c.volume), c.clamped) << c.volume;
        EXPECT_NEAR(mpvVolumePercent(c.volume), c.percent, 1e-6) << c.volume;
        // What the listener hears is mpv's cube: the gain asked for.
        EXPECT_NEAR(std::pow(mpvVolumePercent(c.volume) / 100, 3), c.clamped, 1e-9) << c.volume;
    }
}

TEST(PlaybackEndTest, TheForwardEndWithinTheMovieOrTheMoviesEnd) {
    const struct {
        std::optional<double> forwardEnd;
        std::optional<double> duration;
        double end;
    } cases[] = {
        {std::nullopt, 60, 60},
        {30, 60, 30},
        {90, 60, 60},
        {-5, 60, 0},
        {std::nullopt, std::nullopt, kInfinity},
        {30, std::nullopt, 30},
        {30, -1, 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(playbackEndSeconds(c.forwardEnd, c.duration), c.end)
            << c.forwardEnd.value_or(-99) << " in " << c.duration.value_or(-99);
    }
}

TEST(PlaybackEndTest, TheEnginesEndCountsOnlyNearTheEndTime) {
    const struct {
        bool engineAtEnd;
        double position;
        double end;
        bool atEnd;
    } cases[] = {
        {true, 30, 30, true},   {true, 29.9667, 30, true},  // the last frame before the end
        {true, 0, 30, false},  // no track chosen yet: the engine ends at once, at the start
        {false, 30, 30, false}, {true, 29.7, 30, false},   {true, 12, kInfinity, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(isAtPlaybackEnd(c.engineAtEnd, c.position, c.end), c.atEnd)
            << c.engineAtEnd << " at " << c.position << " of " << c.end;
    }
}

using Status = VideoPlayerTimeControlStatus;

struct StatusCase {
    const char* name;
    MpvPlaybackFlags flags;
    Status status;
};

void PrintTo(const StatusCase& c, std::ostream* out) {
    *out << c.name;
}

class TimeControlStatusTest : public testing::TestWithParam<StatusCase> {};

TEST_P(TimeControlStatusTest, FollowsTheRateAndWhatTheEngineWaitsFor) {
    EXPECT_EQ(timeControlStatusOf(GetParam().flags), GetParam().status);
}

// hasItem, loaded, rate, seekPending, engineSeeking, pausedForCache, coreIdle
INSTANTIATE_TEST_SUITE_P(
    States, TimeControlStatusTest,
    testing::Values(
        StatusCase{"NoItem", {false, false, 1, false, false, false, false}, Status::paused},
        StatusCase{"RateZero", {true, true, 0, false, false, false, false}, Status::paused},
        StatusCase{"RateZeroWhileSeeking", {true, true, 0, true, true, false, true}, Status::paused},
        StatusCase{"Moving", {true, true, 1, false, false, false, false}, Status::playing},
        StatusCase{
            "Loading", {true, false, 1, false, false, false, false}, Status::waitingToPlayAtSpecifiedRate},
        StatusCase{
            "SeekAsked", {true, true, 2, true, false, false, false}, Status::waitingToPlayAtSpecifiedRate},
        StatusCase{"EngineSeeking",
                   {true, true, 2, false, true, false, false},
                   Status::waitingToPlayAtSpecifiedRate},
        StatusCase{
            "Buffering", {true, true, 1, false, false, true, false}, Status::waitingToPlayAtSpecifiedRate},
        StatusCase{
            "CoreIdle", {true, true, 1, false, false, false, true}, Status::waitingToPlayAtSpecifiedRate}),
    [](const testing::TestParamInfo<StatusCase>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace kestrum

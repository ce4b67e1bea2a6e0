#include "base/async/ManualClock.h"
#include "core/review/TimelineSeeker.h"
#include "platform/fake/FakeVideoPlayer.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

#include <string>
#include <vector>

namespace kestrum {
namespace {

using namespace std::chrono_literals;
using Kind = FakeVideoPlayer::Call::Kind;

class TimelineSeekerTest : public testing::Test {
  protected:
    TimelineSeekerTest() {
        seeker.setPlayer(&player);
        seeker.setDurationSeconds(2000);
    }
    ~TimelineSeekerTest() override {
        // Cancelled waits wake through the event loop; let them end before the clock goes.
        QCoreApplication::processEvents();
    }

    ManualClock clock;
    FakeVideoPlayer player{QStringLiteral("/movies/game.mov"), 2000};
    std::vector<std::string> log;
    std::vector<double> reported;
    double currentTime = -1;
    TimelineSeeker seeker{clock,
                          {[this] { log.push_back("interaction"); },
                           [this](double time) {
                               log.push_back("time");
                               currentTime = time;
                           },
                           [this](double time) {
                               log.push_back("seek");
                               reported.push_back(time);
                           }}};
};

TEST_F(TimelineSeekerTest, ASeekIsExactWithinTheMovieAndReportsAfterTheInteraction) {
    for (const double asked : {-12.0, 700.0, 2600.0}) seeker.seek(asked);
    const std::vector<FakeVideoPlayer::Call> seeks = player.seeks();
    ASSERT_EQ(seeks.size(), 3U);
    EXPECT_EQ(seeks[0].value, 0);
    EXPECT_EQ(seeks[1].value, 700);
    EXPECT_EQ(seeks[2].value, 2000);
    for (const auto& seek : seeks) EXPECT_TRUE(seek.tolerance.isExact());
    EXPECT_EQ(reported, (std::vector<double>{0, 700, 2000}));
    EXPECT_EQ(currentTime, 2000);
    EXPECT_EQ(std::vector<std::string>(log.begin(), log.begin() + 3),
              (std::vector<std::string>{"interaction", "time", "seek"}));
}

TEST_F(TimelineSeekerTest, AMovieOfNoLengthSeeksToZero) {
    seeker.setDurationSeconds(0);
    seeker.scrub(300);
    seeker.finishScrub(300);
    for (const auto& seek : player.seeks()) EXPECT_EQ(seek.value, 0);
    EXPECT_EQ(currentTime, 0);
}

TEST_F(TimelineSeekerTest, ADragOfAHundredMovesInASecondMakesTwentyOrSoSeeksEndingAtItsLastPosition) {
    for (int move = 0; move < 100; ++move) {
        seeker.scrub(100 + move * 3.0);
        EXPECT_EQ(currentTime, 100 + move * 3.0) << "the time follows every move at once";
        clock.advance(10ms);
    }
    clock.advance(50ms);
    const std::vector<FakeVideoPlayer::Call> seeks = player.seeks();
    EXPECT_GE(seeks.size(), 20U);
    EXPECT_LE(seeks.size(), 21U);
    ASSERT_FALSE(seeks.empty());
    EXPECT_EQ(seeks.back().value, 100 + 99 * 3.0);
    for (const auto& seek : seeks) EXPECT_EQ(seek.tolerance, VideoSeekTolerance::symmetric(0.1));
    EXPECT_EQ(reported.size(), seeks.size());
    EXPECT_FALSE(seeker.hasPendingSeek());
}

TEST_F(TimelineSeekerTest, AHeldBackSeekWaitsOutTheRestOfTheInterval) {
    seeker.scrub(10);  // sent at once: nothing was sent before
    clock.advance(30ms);
    seeker.scrub(20);  // 30 ms after the last: held back for 20 ms
    ASSERT_EQ(player.seeks().size(), 1U);
    clock.advance(19ms);
    EXPECT_EQ(player.seeks().size(), 1U);
    clock.advance(1ms);
    ASSERT_EQ(player.seeks().size(), 2U);
    EXPECT_EQ(player.seeks().back().value, 20);
    clock.advance(50ms);
    seeker.scrub(30);  // the held-back seek counts as the last: 50 ms ago, so this one goes at once
    EXPECT_EQ(player.seeks().size(), 3U);
}

TEST_F(TimelineSeekerTest, TheEndOfADragCancelsTheHeldBackSeekAndSeeksExactly) {
    seeker.scrub(10);
    clock.advance(10ms);
    seeker.scrub(20);
    seeker.finishScrub(25);
    clock.advance(200ms);
    const std::vector<FakeVideoPlayer::Call> seeks = player.seeks();
    ASSERT_EQ(seeks.size(), 2U);
    EXPECT_EQ(seeks.back().value, 25);
    EXPECT_TRUE(seeks.back().tolerance.isExact());
}

TEST_F(TimelineSeekerTest, AClickCancelsTheHeldBackSeek) {
    seeker.scrub(10);
    clock.advance(10ms);
    seeker.scrub(20);
    seeker.seek(500);
    clock.advance(200ms);
    ASSERT_EQ(player.seeks().size(), 2U);
    EXPECT_EQ(player.seeks().back().value, 500);
    EXPECT_EQ(currentTime, 500);
}

TEST_F(TimelineSeekerTest, WithoutAPlayerTheTimesAreStillSetAndReported) {
    seeker.setPlayer(nullptr);
    seeker.seek(42);
    EXPECT_EQ(currentTime, 42);
    EXPECT_EQ(reported, (std::vector<double>{42}));
    EXPECT_TRUE(player.seeks().empty());
}

}  // namespace
}  // namespace kestrum

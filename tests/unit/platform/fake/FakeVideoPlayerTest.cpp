#include "base/async/ManualClock.h"
#include "platform/fake/FakeVideoPlayer.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

#include <cmath>
#include <string>
#include <vector>

namespace kestrum {
namespace {

using namespace std::chrono_literals;
using Status = VideoPlayerTimeControlStatus;

// Writes every notice as a word, in order.
class RecordingListener final : public VideoPlayerListener {
  public:
    void timeControlStatusChanged(Status status) override {
        notices.push_back("status " + std::to_string(static_cast<int>(status)));
    }
    void didPlayToEndTime() override { notices.push_back("end"); }
    void readyForDisplayChanged(bool ready) override { notices.push_back(ready ? "ready" : "not ready"); }
    void playbackFailed(const QString& reason) override {
        notices.push_back("failed " + reason.toStdString());
    }

    std::vector<std::string> notices;
};

class FakeVideoPlayerTest : public testing::Test {
  protected:
    FakeVideoPlayerTest() {
        player.addListener(listener);
        QCoreApplication::processEvents();
        listener.notices.clear();
    }
    ~FakeVideoPlayerTest() override { player.removeListener(listener); }

    FakeVideoPlayer player{QStringLiteral("/movies/game.mov"), 60};
    RecordingListener listener;
};

TEST_F(FakeVideoPlayerTest, NoticesComeFromTheEventLoopNeverFromInsideACall) {
    player.play();
    EXPECT_EQ(player.timeControlStatus(), Status::playing);
    EXPECT_TRUE(listener.notices.empty());
    QCoreApplication::processEvents();
    EXPECT_EQ(listener.notices, (std::vector<std::string>{"status 2"}));
}

TEST_F(FakeVideoPlayerTest, RatesFollowThePlatformsPlayer) {
    EXPECT_EQ(player.rate(), 0);
    player.setDefaultRate(1.5);
    player.play();
    EXPECT_EQ(player.rate(), 1.5);
    player.setRate(4);
    EXPECT_EQ(player.rate(), 4);
    EXPECT_EQ(player.defaultRate(), 1.5) << "setRate leaves the default alone";
    player.pause();
    EXPECT_EQ(player.rate(), 0);
    EXPECT_EQ(player.timeControlStatus(), Status::paused);
    player.playImmediatelyAtRate(0.25);
    EXPECT_EQ(player.timeControlStatus(), Status::playing);
}

TEST_F(FakeVideoPlayerTest, ALaterSeekAbandonsTheEarlierOne) {
    std::vector<std::string> completions;
    player.seek(10, VideoSeekTolerance::exact(),
                [&](bool done) { completions.push_back(done ? "10 done" : "10 abandoned"); });
    player.seek(20, VideoSeekTolerance::symmetric(0.1),
                [&](bool done) { completions.push_back(done ? "20 done" : "20 abandoned"); });
    EXPECT_EQ(player.currentTime(), 20) << "the playhead reads the target at once";
    EXPECT_TRUE(completions.empty());
    QCoreApplication::processEvents();
    EXPECT_EQ(completions, (std::vector<std::string>{"10 abandoned", "20 done"}));
    ASSERT_EQ(player.seeks().size(), 2U);
    EXPECT_EQ(player.seeks()[1].tolerance, VideoSeekTolerance::symmetric(0.1));
}

TEST_F(FakeVideoPlayerTest, PlayingStopsAtTheEndTimeAndSaysSoOnce) {
    player.setForwardPlaybackEndTime(30);
    player.seek(25, VideoSeekTolerance::exact());
    player.setDefaultRate(2);
    player.play();
    player.advancePlayhead(2);
    EXPECT_EQ(player.currentTime(), 29);
    player.advancePlayhead(2);
    EXPECT_EQ(player.currentTime(), 30);
    EXPECT_EQ(player.rate(), 0);
    player.advancePlayhead(2);
    QCoreApplication::processEvents();
    EXPECT_EQ(listener.notices, (std::vector<std::string>{"status 2", "status 0", "end"}));
    listener.notices.clear();
    player.play();  // at the end: the end again, and no playing
    QCoreApplication::processEvents();
    EXPECT_EQ(listener.notices, (std::vector<std::string>{"end"}));
    EXPECT_EQ(player.timeControlStatus(), Status::paused);
}

TEST_F(FakeVideoPlayerTest, WithoutAnItemThereIsNoTimeAndSeeksFail) {
    player.play();
    player.replaceCurrentItem(std::nullopt);
    EXPECT_TRUE(std::isnan(player.currentTime()));
    EXPECT_FALSE(player.isReadyForDisplay());
    EXPECT_EQ(player.timeControlStatus(), Status::paused);
    std::optional<bool> finished;
    player.seek(5, VideoSeekTolerance::exact(), [&](bool done) { finished = done; });
    QCoreApplication::processEvents();
    EXPECT_EQ(finished, false);
    EXPECT_EQ(listener.notices, (std::vector<std::string>{"status 2", "status 0", "not ready"}));

    player.replaceCurrentItem(QStringLiteral("/movies/next.mov"));
    EXPECT_FALSE(player.isReadyForDisplay());
    QCoreApplication::processEvents();
    EXPECT_TRUE(player.isReadyForDisplay());
    EXPECT_EQ(player.currentTime(), 0);
    EXPECT_FALSE(player.forwardPlaybackEndTime().has_value());
}

TEST_F(FakeVideoPlayerTest, TheDemoMovesThePlayheadOnAClock) {
    ManualClock clock;
    player.play();
    player.startTicking(clock, 50ms);
    clock.advance(1000ms);
    EXPECT_NEAR(player.currentTime(), 1.0, 1e-9);
    player.setRate(2);
    clock.advance(500ms);
    EXPECT_NEAR(player.currentTime(), 2.0, 1e-9);
    player.stopTicking();
    clock.advance(500ms);
    EXPECT_NEAR(player.currentTime(), 2.0, 1e-9);
    QCoreApplication::processEvents();
}

TEST_F(FakeVideoPlayerTest, RecordsEveryCallInOrder) {
    player.clearCalls();
    player.setVolume(1.5);
    player.setMuted(true);
    player.setForwardPlaybackEndTime(std::nullopt);
    using Kind = FakeVideoPlayer::Call::Kind;
    ASSERT_EQ(player.calls().size(), 3U);
    EXPECT_EQ(player.calls()[0].kind, Kind::setVolume);
    EXPECT_EQ(player.volume(), 1) << "clamped to the movie's own level";
    EXPECT_EQ(player.calls()[1].value, 1);
    EXPECT_TRUE(std::isnan(player.calls()[2].value));
}

TEST_F(FakeVideoPlayerTest, AFailedItemPausesNeverBecomesReadyAndSaysSoOncePerItem) {
    player.play();
    player.failCurrentItem(QStringLiteral("moov atom not found"));
    player.failCurrentItem(QStringLiteral("again"));
    EXPECT_EQ(player.timeControlStatus(), Status::paused);
    player.play();
    EXPECT_EQ(player.timeControlStatus(), Status::paused) << "a failed item does not play";
    QCoreApplication::processEvents();
    EXPECT_EQ(listener.notices,
              (std::vector<std::string>{"status 2", "status 0", "not ready", "failed moov atom not found"}));
    EXPECT_FALSE(player.isReadyForDisplay());

    listener.notices.clear();
    player.replaceCurrentItem(QStringLiteral("/movies/other.mov"));  // a new item starts afresh
    QCoreApplication::processEvents();
    EXPECT_TRUE(player.isReadyForDisplay());
    player.replaceCurrentItem(std::nullopt);
    player.failCurrentItem(QStringLiteral("no item"));
    QCoreApplication::processEvents();
    EXPECT_EQ(listener.notices, (std::vector<std::string>{"ready", "not ready"}));
}

}  // namespace
}  // namespace kestrum

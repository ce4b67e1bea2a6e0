#include "base/async/ManualClock.h"
#include "core/dashboard/DashboardPlayback.h"
#include "core/settings/SettingsKeys.h"
#include "platform/fake/FakeVideoPlayer.h"
#include "support/QtPrinters.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <memory>

namespace kestrum {
namespace {

using namespace std::chrono_literals;
using Status = VideoPlayerTimeControlStatus;

class DashboardPlaybackTest : public testing::Test {
  protected:
    DashboardPlaybackTest() {
        playback.setPlayer(player);
        playback.setRecordingShape(600, 16.0 / 9.0);
    }
    ~DashboardPlaybackTest() override {
        playback.stop();
        QCoreApplication::processEvents();
    }

    QTemporaryDir home;
    UserDefaults defaults{home.filePath(QStringLiteral("defaults.json"))};
    ManualClock clock;
    std::shared_ptr<FakeVideoPlayer> player =
        std::make_shared<FakeVideoPlayer>(QStringLiteral("/m.mov"), 600);
    DashboardPlayback playback{defaults, clock};
};

TEST_F(DashboardPlaybackTest, SpeedStepsMoveAlongTheListFromTheNearestEntry) {
    struct Row {
        double rate;
        int step;  // 0: the reset key
        double expected;
        const char* toast;  // empty: none
    };
    const std::vector<Row> rows = {
        {1, 1, 1.25, "Speed 1.25×"},   {1, -1, 0.75, "Speed 0.75×"},
        {0.25, -1, 0.25, ""},          {8, 1, 8, ""},  // the ends show nothing
        {1.1, 1, 1.25, "Speed 1.25×"},                 // between entries: from the nearest, 1
        {3, 1, 4, "Speed 4×"},                         // as near to 2 as to 4: the earlier, 2
        {3, -1, 1.5, "Speed 1.5×"},    {0.3, -1, 0.25, "Speed 0.25×"},
        {2, 0, 1, "Speed 1×"},         {1, 0, 1, ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::to_string(row.rate) + " by " + std::to_string(row.step));
        playback.setPlaybackRate(row.rate);
        DashboardPlaybackTest::clock.advance(2s);  // the earlier toast has gone
        QSignalSpy animations(&playback, &DashboardPlayback::playbackRateAnimationRequested);
        if (row.step == 0) {
            playback.resetSpeed();
        } else {
            playback.stepSpeed(row.step);
        }
        EXPECT_EQ(playback.playbackRate(), row.expected);
        EXPECT_EQ(playback.toastTitle(), QString::fromUtf8(row.toast));
        const bool changed = *row.toast != '\0';
        EXPECT_EQ(animations.count(), changed ? 1 : 0);
        if (changed) {
            EXPECT_EQ(playback.toastSymbol(), QStringLiteral("speedometer"));
            EXPECT_EQ(player->defaultRate(), row.expected);
        }
    }
}

TEST_F(DashboardPlaybackTest, ASpeedChangeReachesThePlayersRateOnlyWhilePlaying) {
    playback.stepSpeed(1);
    EXPECT_EQ(player->timeControlStatus(), Status::paused) << "a paused player stays paused";
    player->play();
    playback.stepSpeed(1);
    EXPECT_EQ(player->rate(), 1.5);
    EXPECT_EQ(player->defaultRate(), 1.5);
}

TEST_F(DashboardPlaybackTest, VolumeStepsStopAtTheLimitsButAlwaysShowTheirToast) {
    struct Row {
        double volume;
        double step;
        double expected;
        const char* toast;
        const char* symbol;
        bool stored;
    };
    const std::vector<Row> rows = {
        {1, 0.05, 1, "Volume 100%", "speaker.wave.2.fill", false},
        {0.5, 0.05, 0.55, "Volume 55%", "speaker.wave.2.fill", true},
        {0.05, -0.05, 0, "Volume 0%", "speaker.slash.fill", true},
        {0, -0.05, 0, "Volume 0%", "speaker.slash.fill", false},
        {0.98, 0.05, 1, "Volume 100%", "speaker.wave.2.fill", true},
        {0.004, 0.05, 0.054, "Volume 5%", "speaker.wave.2.fill", true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::to_string(row.volume) + " by " + std::to_string(row.step));
        player->setVolume(row.volume);
        defaults.removeObjectForKey(SettingsKeys::playbackVolume);
        QSignalSpy animations(&playback, &DashboardPlayback::volumeAnimationRequested);
        playback.stepVolume(row.step);
        EXPECT_NEAR(player->volume(), row.expected, 1e-12);
        EXPECT_EQ(playback.toastTitle(), QString::fromUtf8(row.toast));
        EXPECT_EQ(playback.toastSymbol(), QString::fromUtf8(row.symbol));
        EXPECT_EQ(defaults.objectForKey(SettingsKeys::playbackVolume).has_value(), row.stored);
        EXPECT_EQ(animations.count(), row.stored ? 1 : 0);
    }
}

TEST_F(DashboardPlaybackTest, SkipsStayWithinTheMovieAndNameTheirStep) {
    struct Row {
        double from;
        double seconds;
        double expected;
        const char* toast;
        const char* symbol;
    };
    const std::vector<Row> rows = {
        {100, -5, 95, "Back 5 seconds", "gobackward.5"},
        {100, 5, 105, "Forward 5 seconds", "goforward.5"},
        {3, -10, 0, "Back 10 seconds", "gobackward.10"},
        {598, 5, 600, "Forward 5 seconds", "goforward.5"},
        {100, 2.6, 102.6, "Forward 3 seconds", "goforward.3"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.toast);
        playback.setCurrentTime(row.from);
        playback.skip(row.seconds);
        EXPECT_EQ(playback.currentTime(), row.expected);
        ASSERT_FALSE(player->seeks().empty());
        EXPECT_EQ(player->seeks().back().value, row.expected);
        EXPECT_EQ(playback.toastTitle(), QString::fromUtf8(row.toast));
        EXPECT_EQ(playback.toastSymbol(), QString::fromUtf8(row.symbol));
    }
}

TEST_F(DashboardPlaybackTest, SpaceAtTheEndRestartsFromZeroNotFromTheGameStart) {
    playback.setCurrentTime(600);
    playback.togglePlayback();
    EXPECT_EQ(playback.currentTime(), 0);
    ASSERT_EQ(player->seeks().size(), 1u);
    EXPECT_EQ(player->seeks().front().value, 0);
    EXPECT_EQ(player->timeControlStatus(), Status::playing);
    EXPECT_EQ(playback.toastTitle(), QStringLiteral("Playing"));
    EXPECT_EQ(playback.toastSymbol(), QStringLiteral("play.fill"));
    playback.togglePlayback();
    EXPECT_EQ(player->timeControlStatus(), Status::paused);
    EXPECT_EQ(playback.toastTitle(), QStringLiteral("Paused"));
    EXPECT_EQ(playback.toastSymbol(), QStringLiteral("pause.fill"));
    EXPECT_EQ(player->seeks().size(), 1u) << "a pause in the middle seeks nowhere";
}

TEST_F(DashboardPlaybackTest, MuteTogglesThePlayerAndTheStore) {
    playback.toggleMute();
    EXPECT_TRUE(player->isMuted());
    EXPECT_TRUE(defaults.boolForKey(SettingsKeys::playbackMuted));
    EXPECT_EQ(playback.toastTitle(), QStringLiteral("Muted"));
    EXPECT_EQ(playback.toastSymbol(), QStringLiteral("speaker.slash.fill"));
    playback.toggleMute();
    EXPECT_FALSE(player->isMuted());
    EXPECT_EQ(playback.toastTitle(), QStringLiteral("Unmuted"));
    EXPECT_EQ(playback.toastSymbol(), QStringLiteral("speaker.wave.2.fill"));
}

TEST_F(DashboardPlaybackTest, WithoutAPlayerNoCommandDoesAnythingOrShowsAnything) {
    playback.setPlayer(nullptr);
    playback.togglePlayback();
    playback.skip(5);
    playback.stepSpeed(1);
    playback.resetSpeed();
    playback.stepVolume(0.05);
    playback.toggleMute();
    EXPECT_FALSE(playback.hasToast());
    EXPECT_FALSE(playback.requestedIsPlaying());
    EXPECT_FALSE(defaults.objectForKey(SettingsKeys::playbackMuted).has_value());
}

TEST_F(DashboardPlaybackTest, WhileLoadingPlayOnlyRecordsTheWish) {
    playback.setLoadingRecording(true);
    playback.togglePlayback();
    EXPECT_TRUE(playback.requestedIsPlaying());
    EXPECT_EQ(player->timeControlStatus(), Status::paused);
    EXPECT_EQ(playback.toastTitle(), QStringLiteral("Playing"));
}

TEST_F(DashboardPlaybackTest, AToastLastsOneSecondAndANewerOneGetsItsOwnSecond) {
    playback.showPlaybackFeedback(QStringLiteral("Riot ID copied"), QStringLiteral("checkmark.circle.fill"));
    clock.advance(700ms);
    playback.toggleMute();
    clock.advance(700ms);
    EXPECT_EQ(playback.toastTitle(), QStringLiteral("Muted")) << "the older dismissal clears nothing";
    clock.advance(299ms);
    EXPECT_TRUE(playback.hasToast());
    clock.advance(1ms);
    EXPECT_FALSE(playback.hasToast());
    EXPECT_EQ(playback.toastTitle(), QString());
}

}  // namespace
}  // namespace kestrum

#include "base/async/ManualClock.h"
#include "core/dashboard/VideoPlayerSurfaceModel.h"
#include "platform/fake/FakeVideoPlayer.h"
#include "support/QtPrinters.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTemporaryDir>

namespace kestrum {
namespace {

using namespace std::chrono_literals;
using Status = VideoPlayerTimeControlStatus;

class VideoPlayerSurfaceModelTest : public testing::Test {
  protected:
    VideoPlayerSurfaceModelTest() {
        playback.setPlayer(player);
        playback.setRecordingShape(120, 16.0 / 9.0);
        QCoreApplication::processEvents();
    }
    ~VideoPlayerSurfaceModelTest() override { QCoreApplication::processEvents(); }

    QTemporaryDir home;
    UserDefaults defaults{home.filePath(QStringLiteral("defaults.json"))};
    ManualClock clock;
    std::shared_ptr<FakeVideoPlayer> player =
        std::make_shared<FakeVideoPlayer>(QStringLiteral("/m.mov"), 120);
    DashboardPlayback playback{defaults, clock};
    VideoPlayerSurfaceModel surface{playback, clock};
};

TEST_F(VideoPlayerSurfaceModelTest, ADoubleClickFiresOnceAndTheSingleClickNotAtAll) {
    QSignalSpy doubles(&surface, &VideoPlayerSurfaceModel::doubleClicked);
    QSignalSpy playing(&surface, &VideoPlayerSurfaceModel::playingChanged);
    surface.setDoubleClickIntervalMs(250);
    surface.mouseDown(1);
    clock.advance(100ms);
    surface.mouseDown(2);
    surface.mouseDown(3);  // a third click counts for nothing
    clock.advance(1s);
    EXPECT_EQ(doubles.count(), 1);
    EXPECT_EQ(playing.count(), 0);
    EXPECT_EQ(player->timeControlStatus(), Status::paused);

    surface.mouseDown(1);
    clock.advance(249ms);
    EXPECT_EQ(playing.count(), 0) << "a single click waits out the double-click interval";
    clock.advance(1ms);
    ASSERT_EQ(playing.count(), 1);
    EXPECT_TRUE(playing.front().front().toBool());
    EXPECT_EQ(player->timeControlStatus(), Status::playing);
}

TEST_F(VideoPlayerSurfaceModelTest, PlayAtTheEndOfAPositiveDurationSeeksToZeroFirst) {
    struct Row {
        double duration;
        double currentTime;
        bool seeksToZero;
    };
    const std::vector<Row> rows = {{120, 120, true}, {120, 121, true}, {120, 60, false}, {0, 0, false}};
    for (const Row& row : rows) {
        player->pause();
        player->clearCalls();
        playback.setRecordingShape(row.duration, 16.0 / 9.0);
        playback.setCurrentTime(row.currentTime);
        surface.togglePlayPause();
        const bool sought = !player->seeks().empty() && player->seeks().front().value == 0;
        EXPECT_EQ(sought, row.seeksToZero) << row.currentTime;
        EXPECT_EQ(player->calls().back().kind, FakeVideoPlayer::Call::Kind::play);
    }
}

TEST_F(VideoPlayerSurfaceModelTest, TheScrubberHasARangeAndItsSeeksAreClamped) {
    struct Row {
        double duration;
        double seekTo;
        double maximum;
        std::optional<double> landed;  // absent: no seek
    };
    const std::vector<Row> rows = {
        {120, 60, 120, 60},           {120, -4, 120, 0}, {120, 500, 120, 120}, {0, 30, 0.01, std::nullopt},
        {-5, 30, 0.01, std::nullopt},
    };
    for (const Row& row : rows) {
        player->clearCalls();
        playback.setRecordingShape(row.duration, 16.0 / 9.0);
        EXPECT_EQ(surface.scrubberMaximum(), row.maximum);
        surface.seek(row.seekTo);
        if (row.landed) {
            ASSERT_EQ(player->seeks().size(), 1u);
            EXPECT_EQ(player->seeks().front().value, *row.landed);
            EXPECT_EQ(surface.scrubberValue(), *row.landed);
        } else {
            EXPECT_TRUE(player->seeks().empty());
        }
    }
    playback.setRecordingShape(-5, 16.0 / 9.0);
    playback.setCurrentTime(30);
    EXPECT_EQ(surface.scrubberValue(), 0) << "a negative duration counts as 0";
}

TEST_F(VideoPlayerSurfaceModelTest, TheEndOfPlayStopsAtTheDurationAndANoticeFromAnotherPlayerChangesNothing) {
    player->seek(115, VideoSeekTolerance::exact());
    surface.togglePlayPause();
    QCoreApplication::processEvents();
    EXPECT_TRUE(surface.isPlaying());
    player->advancePlayhead(10);
    QCoreApplication::processEvents();
    EXPECT_FALSE(surface.isPlaying());
    EXPECT_EQ(playback.currentTime(), 120);

    auto other = std::make_shared<FakeVideoPlayer>(QStringLiteral("/other.mov"), 10);
    playback.setPlayer(other);
    playback.setCurrentTime(40);
    player->play();  // the old player reports its end again: nobody listens to it any more
    QCoreApplication::processEvents();
    EXPECT_EQ(playback.currentTime(), 40);
}

TEST_F(VideoPlayerSurfaceModelTest, TheSpeedMenuSetsTheDefaultRateAndTheRateOnlyWhilePlaying) {
    QSignalSpy rates(&surface, &VideoPlayerSurfaceModel::rateChanged);
    surface.selectRate(2);
    EXPECT_EQ(player->defaultRate(), 2);
    EXPECT_EQ(player->timeControlStatus(), Status::paused);
    EXPECT_TRUE(surface.speedRates()->value(6, "isSelected").toBool());
    EXPECT_EQ(surface.speedRates()->value(6, "label").toString(), QString::fromUtf8("2×"));
    surface.togglePlayPause();
    QCoreApplication::processEvents();
    surface.selectRate(0.5);
    EXPECT_EQ(player->rate(), 0.5);
    EXPECT_EQ(rates.count(), 2);
    EXPECT_EQ(surface.playPauseSymbol(), QStringLiteral("pause.fill"));
    EXPECT_EQ(surface.playPauseHelp(), QStringLiteral("Pause"));
    playback.setCurrentTime(75.9);
    EXPECT_EQ(surface.positionAccessibilityValue(), QStringLiteral("1:15 of 2:00"));
}

}  // namespace
}  // namespace kestrum

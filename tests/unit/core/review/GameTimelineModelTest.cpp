#include "ReviewTestEvents.h"
#include "base/async/ManualClock.h"
#include "core/review/GameTimelineModel.h"
#include "core/settings/SettingsKeys.h"
#include "platform/fake/FakeVideoPlayer.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTemporaryDir>

namespace kestrum {
namespace {

using namespace std::chrono_literals;
using test::kBlue;
using test::kRed;
using test::makeEvent;
using test::withLocalKill;
using Kind = FakeVideoPlayer::Call::Kind;

constexpr double kTrackWidth = 1800;  // one point per second of the 1800 s movie

class GameTimelineModelTest : public testing::Test {
  protected:
    GameTimelineModelTest() {
        model.setRecording(test::detailOf(
            {makeEvent(1, "GameStart", 3), withLocalKill(makeEvent(2, "ChampionKill", 300, kBlue)),
             makeEvent(3, "ChampionKill", 600, kBlue, "Lux"), makeEvent(4, "TurretKilled", 900, kRed)},
            1800));
        model.setPlayer(&player);
    }
    ~GameTimelineModelTest() override {
        model.setPlayer(nullptr);
        QCoreApplication::processEvents();
    }

    std::vector<bool> checkedFilters() const {
        std::vector<bool> checked;
        for (int row = 0; row < model.filters()->count(); ++row) {
            checked.push_back(model.filters()->value(row, "isChecked").toBool());
        }
        return checked;
    }

    std::vector<std::int64_t> markerIDs() {
        std::vector<std::int64_t> ids;
        for (const TimelineMarker& marker : model.markers(kTrackWidth)) ids.push_back(marker.eventID);
        return ids;
    }

    QTemporaryDir folder;
    UserDefaults defaults{folder.filePath(QStringLiteral("defaults.json"))};
    ManualClock clock;
    FakeVideoPlayer player{QStringLiteral("/movies/game.mov"), 1800};
    GameTimelineModel model{defaults, clock};
};

TEST_F(GameTimelineModelTest, FilterRowsToggleAndResetToTheDefaults) {
    QSignalSpy filtersChanged(&model, &GameTimelineModel::filtersChanged);
    ASSERT_EQ(model.filters()->count(), 6);
    EXPECT_EQ(model.filters()->value(0, "label").toString(), QStringLiteral("Champion Kills"));
    EXPECT_EQ(model.filters()->value(3, "group").toString(), QStringLiteral("Players"));
    EXPECT_EQ(checkedFilters(), (std::vector<bool>{true, true, true, true, false, false}));
    EXPECT_EQ(markerIDs(), (std::vector<std::int64_t>{1, 2, 4}));
    EXPECT_FALSE(model.canResetFilters());

    model.resetFilters();  // at the defaults a reset has nothing to change
    EXPECT_EQ(filtersChanged.count(), 0);

    model.toggleFilter(4);  // "Blue Team"
    EXPECT_EQ(markerIDs(), (std::vector<std::int64_t>{1, 2, 3, 4}));
    EXPECT_TRUE(model.canResetFilters());
    model.toggleFilter(2);  // "Objectives" off
    EXPECT_EQ(markerIDs(), (std::vector<std::int64_t>{2, 3}));

    model.resetFilters();
    EXPECT_EQ(checkedFilters(), (std::vector<bool>{true, true, true, true, false, false}));
    EXPECT_FALSE(model.canResetFilters());
    EXPECT_EQ(filtersChanged.count(), 3);
}

TEST_F(GameTimelineModelTest, HoveringAMarkerShowsItsCardUntilThePointerLeaves) {
    model.hover(303, 44, kTrackWidth);
    EXPECT_TRUE(model.hasHoveredEvent());
    EXPECT_EQ(model.hoveredEventID(), 2);
    EXPECT_TRUE(model.hoverCard()->isVisible());
    EXPECT_EQ(model.hoverCard()->title(), QStringLiteral("Your kill"));
    EXPECT_EQ(model.hoverCard()->timeText(), QStringLiteral("5:00"));
    EXPECT_EQ(model.hoverCard()->x(), 300);
    EXPECT_EQ(model.hoverCard()->y(), -20);

    model.hover(3, 32, kTrackWidth);  // the game's start is drawn but never hovered
    EXPECT_FALSE(model.hasHoveredEvent());
    EXPECT_FALSE(model.hoverCard()->isVisible());

    model.hover(900, 20, kTrackWidth);
    EXPECT_EQ(model.hoveredEventID(), 4);
    model.toggleFilter(2);  // the hovered objective stops showing: the hover goes with it
    EXPECT_FALSE(model.hasHoveredEvent());
    model.hover(300, 44, kTrackWidth);
    model.leave();
    EXPECT_FALSE(model.hoverCard()->isVisible());
}

TEST_F(GameTimelineModelTest, ClicksSeekExactlyAndTellTheReviewWindow) {
    QSignalSpy seeked(&model, &GameTimelineModel::seeked);
    QSignalSpy interacted(&model, &GameTimelineModel::interacted);
    model.clickMarker(1);                     // 3 s into the movie: the pre-roll starts at 0
    model.clickTrack(301, 40, kTrackWidth);   // on the local kill at 300: 5 s before it
    model.clickTrack(1200, 40, kTrackWidth);  // no marker: the time there
    model.clickMarker(99);                    // no such event: nothing
    const std::vector<FakeVideoPlayer::Call> seeks = player.seeks();
    ASSERT_EQ(seeks.size(), 3U);
    EXPECT_EQ(seeks[0].value, 0);
    EXPECT_EQ(seeks[1].value, 295);
    EXPECT_EQ(seeks[2].value, 1200);
    for (const auto& seek : seeks) EXPECT_TRUE(seek.tolerance.isExact());
    EXPECT_EQ(seeked.count(), 3);
    EXPECT_EQ(interacted.count(), 3);
    EXPECT_EQ(model.currentTime(), 1200);
    EXPECT_EQ(model.currentTimeText(), QStringLiteral("20:00"));
    EXPECT_DOUBLE_EQ(model.progress(), 1200.0 / 1800.0);
}

TEST_F(GameTimelineModelTest, ADragAlongTheTrackScrubsAndEndsExactly) {
    for (int x = 100; x < 200; ++x) {
        model.scrubAtTrackPosition(x, kTrackWidth);
        clock.advance(10ms);
    }
    model.finishScrubAtTrackPosition(200, kTrackWidth);
    const std::vector<FakeVideoPlayer::Call> seeks = player.seeks();
    ASSERT_GE(seeks.size(), 2U);
    EXPECT_EQ(seeks.front().tolerance, VideoSeekTolerance::symmetric(0.1));
    EXPECT_EQ(seeks.back().value, 200);
    EXPECT_TRUE(seeks.back().tolerance.isExact());
}

TEST_F(GameTimelineModelTest, PointerEventsOnTheTrackClickOrDrag) {
    // A press released in place on the local kill at 300: its click, 5 s before it.
    model.pressTrack(301, 44, kTrackWidth);
    model.releaseTrack(302, 44, kTrackWidth);
    ASSERT_EQ(player.seeks().size(), 1U);
    EXPECT_EQ(player.seeks().back().value, 295);
    // A press that moves: a drag, whatever lies under its start.
    model.pressTrack(301, 44, kTrackWidth);
    for (int x = 310; x <= 400; x += 10) {
        model.moveTrack(x, 44, kTrackWidth);
        clock.advance(60ms);
    }
    model.releaseTrack(420, 44, kTrackWidth);
    const std::vector<FakeVideoPlayer::Call> seeks = player.seeks();
    ASSERT_EQ(seeks.size(), 12U) << "ten scrubs 60 ms apart, then the end";
    EXPECT_EQ(seeks[1].value, 310);
    EXPECT_EQ(seeks[1].tolerance, VideoSeekTolerance::symmetric(0.1));
    EXPECT_EQ(seeks.back().value, 420);
    EXPECT_TRUE(seeks.back().tolerance.isExact());
    // The pointer taken away mid-drag: the drag ends where it was.
    model.pressTrack(500, 44, kTrackWidth);
    model.moveTrack(600, 44, kTrackWidth);
    model.cancelTrackGesture(kTrackWidth);
    EXPECT_EQ(player.seeks().back().value, 600);
    EXPECT_TRUE(player.seeks().back().tolerance.isExact());
}

TEST_F(GameTimelineModelTest, TheVolumePopUpShowsWhilePresentedOrWhileAKeyboardChangeIsOnShow) {
    QSignalSpy changed(&model, &GameTimelineModel::volumePopUpChanged);
    EXPECT_FALSE(model.showsVolumePopUp());
    model.showVolumeAnimation({1, 1, 0.95, false});
    EXPECT_TRUE(model.showsVolumePopUp());
    model.setVolumePresented(true);
    clock.advance(1200ms);
    EXPECT_TRUE(model.showsVolumePopUp()) << "still presented after the change's time";
    model.setVolumePresented(false);
    EXPECT_FALSE(model.showsVolumePopUp());
    model.showVolumeAnimation({2, 0.95, 0.9, false});
    clock.advance(1200ms);
    EXPECT_FALSE(model.showsVolumePopUp());
    // Told at each change of either property; the end of a change's time while presented tells nothing.
    EXPECT_EQ(changed.count(), 5);
}

TEST_F(GameTimelineModelTest, ThePlayButtonFollowsThePlayerUnlessTheReviewWindowKnowsBetter) {
    QSignalSpy toggles(&model, &GameTimelineModel::playbackToggleRequested);
    EXPECT_EQ(model.playButtonToolTip(), QStringLiteral("Play (Space or P)"));
    player.play();
    EXPECT_FALSE(model.isPlaying()) << "the player's notice comes from the event loop";
    QCoreApplication::processEvents();
    EXPECT_TRUE(model.isPlaying());
    EXPECT_EQ(model.playButtonSymbolName(), QStringLiteral("pause.fill"));
    EXPECT_EQ(model.playButtonToolTip(), QStringLiteral("Pause (Space or P)"));
    model.setOptimisticIsPlaying(false);
    EXPECT_FALSE(model.isPlaying());
    model.setOptimisticIsPlaying(std::nullopt);
    EXPECT_TRUE(model.isPlaying());
    model.togglePlayback();
    EXPECT_EQ(toggles.count(), 1);
}

TEST_F(GameTimelineModelTest, TheEndOfPlayMovesThePlayheadToTheEndAndIsReported) {
    QSignalSpy ended(&model, &GameTimelineModel::playbackEnded);
    player.setForwardPlaybackEndTime(1800);
    player.seek(1790, VideoSeekTolerance::exact());
    player.play();
    player.advancePlayhead(20);
    QCoreApplication::processEvents();
    EXPECT_EQ(ended.count(), 1);
    EXPECT_EQ(model.currentTime(), 1800);
    EXPECT_FALSE(model.isPlaying());
}

TEST_F(GameTimelineModelTest, ASpeedFromThePopUpSetsTheDefaultRateAndTheRateOnlyWhilePlaying) {
    model.setPlaybackRatePresented(true);
    model.selectPlaybackRate(2);
    EXPECT_FALSE(model.isPlaybackRatePresented());
    EXPECT_EQ(model.playbackRateText(), QString::fromUtf8("2×"));
    EXPECT_EQ(player.defaultRate(), 2);
    EXPECT_EQ(player.timeControlStatus(), VideoPlayerTimeControlStatus::paused)
        << "a paused player stays paused";
    EXPECT_EQ(model.playbackRates()->value(6, "isSelected").toBool(), true);
    EXPECT_EQ(model.playbackRates()->value(3, "isSelected").toBool(), false);

    player.play();
    model.selectPlaybackRate(0.5);
    EXPECT_EQ(player.rate(), 0.5);
    ASSERT_FALSE(player.calls().empty());
    EXPECT_EQ(player.calls().back().kind, Kind::setRate);
}

TEST_F(GameTimelineModelTest, TheVolumeControlWritesTheStoreAndThePlayerAndFollowsTheKeyboard) {
    PlaybackVolumeModel& volume = *model.volume();
    EXPECT_EQ(volume.volume(), 1);
    EXPECT_EQ(volume.symbolName(), QStringLiteral("speaker.wave.2.fill"));
    volume.setVolume(0.2);
    EXPECT_EQ(defaults.doubleForKey(SettingsKeys::playbackVolume), 0.2);
    EXPECT_EQ(player.volume(), 0.2);
    EXPECT_EQ(volume.symbolName(), QStringLiteral("speaker.fill"));
    volume.toggleMute();
    EXPECT_TRUE(defaults.boolForKey(SettingsKeys::playbackMuted));
    EXPECT_TRUE(player.isMuted());
    EXPECT_EQ(volume.muteToolTip(), QStringLiteral("Unmute"));
    EXPECT_EQ(volume.symbolName(), QStringLiteral("speaker.slash.fill"));

    defaults.setBool(false, SettingsKeys::playbackMuted);  // the keyboard's path
    defaults.setDouble(0.5, SettingsKeys::playbackVolume);
    EXPECT_FALSE(volume.isMuted());
    EXPECT_EQ(volume.symbolName(), QStringLiteral("speaker.wave.1.fill"));
    volume.setVolume(7);
    EXPECT_EQ(volume.volume(), 1) << "the level stays within 0...1";
}

TEST_F(GameTimelineModelTest, KeyboardChangesShowTheirControlBrieflyAndANewerOneGetsItsFullTime) {
    model.showPlaybackRateAnimation({1, 1, 1.25, true});
    EXPECT_TRUE(model.isPlaybackRateAnimating());
    EXPECT_EQ(model.animatedPlaybackRateText(), QString::fromUtf8("1.25×"));
    clock.advance(500ms);
    model.showPlaybackRateAnimation({2, 1.25, 1.5, true});
    clock.advance(500ms);  // the first request's time is over, the second's is not
    EXPECT_TRUE(model.isPlaybackRateAnimating());
    EXPECT_EQ(model.animatedPlaybackRateText(), QString::fromUtf8("1.5×"));
    clock.advance(400ms);
    EXPECT_FALSE(model.isPlaybackRateAnimating());

    model.showVolumeAnimation({3, 1, 0.95, false});
    clock.advance(1199ms);
    EXPECT_TRUE(model.isVolumeAnimating());
    clock.advance(1ms);
    EXPECT_FALSE(model.isVolumeAnimating());
}

TEST_F(GameTimelineModelTest, ANewRecordingKeepsTheFiltersAndClearsTheHover) {
    model.toggleFilter(5);  // "Red Team"
    model.hover(900, 20, kTrackWidth);
    model.setRecording(test::detailOf({makeEvent(9, "ChampionKill", 60, kRed, "Zed")}, 120));
    EXPECT_FALSE(model.hasHoveredEvent());
    EXPECT_TRUE(model.canResetFilters());
    EXPECT_EQ(markerIDs(), (std::vector<std::int64_t>{9}));
    EXPECT_EQ(model.durationText(), QStringLiteral("2:00"));
    model.setRecording(nullptr);
    EXPECT_EQ(model.markerCount(), 0);
    EXPECT_EQ(model.duration(), 0);
}

}  // namespace
}  // namespace kestrum

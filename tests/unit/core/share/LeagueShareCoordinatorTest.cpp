#include "ShareRig.h"

#include "core/settings/SettingsKeys.h"
#include "support/CapturedLog.h"

#include <gtest/gtest.h>

namespace kestrum::test {
namespace {

using Kind = LeagueShareStatus::Kind;

CaptureSample sampleWithStatus(CaptureFrameStatus status) {
    CaptureSample sample;
    sample.frameStatus = status;
    return sample;
}

class LeagueShareCoordinatorTest : public testing::Test {
  protected:
    LeagueShareCoordinator& coordinator() { return *rig.coordinator; }
    FakeWindowStream& stream() {
        FakeWindowStream* stream = rig.streams.lastStream();
        EXPECT_NE(stream, nullptr);
        return *stream;
    }

    // Shares the game to `surface` and shows it one frame; false when the frame could not be delivered.
    bool shareTheGameWithOneFrame(RecordingSurface& surface) {
        coordinator().addDisplaySurface(surface);
        rig.showWindows({gameWindow()});
        coordinator().start();
        if (!stream().deliverFrame(1000)) return false;
        rig.drain();
        return surface.frames().size() == 1;
    }

    ShareRig rig;
};

TEST_F(LeagueShareCoordinatorTest, withoutLeagueItWaitsAndMakesNoStream) {
    coordinator().start();
    EXPECT_TRUE(coordinator().isRunning());
    EXPECT_EQ(coordinator().status().kind(), Kind::waiting);
    EXPECT_EQ(coordinator().statusTitle(), QStringLiteral("Waiting for League"));
    rig.tick();
    EXPECT_EQ(rig.content.callCount(), 2);
    EXPECT_EQ(rig.streams.madeCount(), 0);
}

TEST_F(LeagueShareCoordinatorTest, withoutAccessItAsksForPermissionAndDoesNotRun) {
    rig.access.setGranted(false);
    coordinator().start();
    EXPECT_FALSE(coordinator().isRunning());
    EXPECT_EQ(coordinator().status().kind(), Kind::permissionRequired);
    rig.tick();
    EXPECT_EQ(rig.content.callCount(), 0);
}

TEST_F(LeagueShareCoordinatorTest, followsTheClientToTheGameAndBackWithANewStreamEachTime) {
    RecordingSurface surface;
    coordinator().addDisplaySurface(surface);
    rig.showWindows({clientWindow()});
    coordinator().start();
    EXPECT_EQ(coordinator().status().kind(), Kind::sharingClient);
    EXPECT_EQ(stream().window().windowID, kClientWindow);
    EXPECT_TRUE(stream().core.isStarted());
    EXPECT_FALSE(stream().configuration().showsCursor);

    // The game and the client together: the game wins, even when it is the smaller window.
    rig.showWindows({clientWindow({1600, 900}), gameWindow({1280, 720})});
    rig.tick();
    EXPECT_EQ(coordinator().status().kind(), Kind::sharingGame);
    EXPECT_EQ(coordinator().statusSymbol(), QStringLiteral("dot.radiowaves.left.and.right"));
    EXPECT_EQ(rig.streams.madeCount(), 2);
    EXPECT_EQ(stream().window().windowID, kGameWindow);

    rig.showWindows({clientWindow()});
    rig.tick();
    EXPECT_EQ(coordinator().status().kind(), Kind::sharingClient);
    EXPECT_EQ(rig.streams.madeCount(), 3);
    EXPECT_EQ(stream().window().windowID, kClientWindow);
    // Both changes of source were restarts: the picture stayed until the new frames.
    EXPECT_EQ(surface.flushes, (std::vector<bool>{false, false}));
    coordinator().removeDisplaySurface(surface);
}

TEST_F(LeagueShareCoordinatorTest, aResizedSourceIsReconfiguredNotRestarted) {
    rig.showWindows({clientWindow({1280, 720})});
    coordinator().start();
    EXPECT_EQ(stream().configuration(), (WindowStreamConfiguration{1280, 720, 30, false, false}));

    rig.showWindows({clientWindow({1024, 768})});
    rig.tick();
    EXPECT_EQ(rig.streams.madeCount(), 1);
    EXPECT_EQ(stream().configuration(), (WindowStreamConfiguration{960, 720, 30, false, false}));
    EXPECT_NEAR(coordinator().sourceAspectRatio(), 4.0 / 3.0, 1e-9);
    EXPECT_EQ(coordinator().status().kind(), Kind::sharingClient);
}

struct SettingChangeRow {
    const char* name;
    void (*change)(LeagueShareSettings&);
    int streamsMade;
    WindowStreamConfiguration configuration;
};

void PrintTo(const SettingChangeRow& row, std::ostream* out) {
    *out << row.name;
}

class LeagueShareSettingChangeTest : public LeagueShareCoordinatorTest,
                                     public testing::WithParamInterface<SettingChangeRow> {};

TEST_P(LeagueShareSettingChangeTest, isAppliedAtTheNextRefresh) {
    rig.showWindows({gameWindow({1920, 1080})});
    coordinator().start();
    GetParam().change(*rig.settings);
    EXPECT_EQ(rig.streams.madeCount(), 1) << "the change waits for the refresh";
    rig.tick();
    EXPECT_EQ(rig.streams.madeCount(), GetParam().streamsMade);
    EXPECT_EQ(stream().configuration(), GetParam().configuration);
    EXPECT_TRUE(stream().core.isStarted());
    EXPECT_EQ(coordinator().status().kind(), Kind::sharingGame);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, LeagueShareSettingChangeTest,
    testing::Values(SettingChangeRow{"resolution",
                                     [](LeagueShareSettings& s) {
                                         s.setResolution(LeagueShareResolution::p1440);
                                     },
                                     1,
                                     {2560, 1440, 30, false, false}},
                    SettingChangeRow{"frameRate",
                                     [](LeagueShareSettings& s) { s.setFrameRate(VideoFrameRate::fps60); },
                                     1,
                                     {1280, 720, 60, false, false}},
                    SettingChangeRow{"audio",
                                     [](LeagueShareSettings& s) { s.setIncludesAudio(false); },
                                     2,
                                     {1280, 720, 30, false, false}}),
    [](const testing::TestParamInfo<SettingChangeRow>& info) { return std::string(info.param.name); });

TEST_F(LeagueShareCoordinatorTest, theSoundFollowsTheStreamAndItsSetting) {
    rig.showWindows({gameWindow()});
    coordinator().start();
    EXPECT_EQ(rig.audioRoute.routedProcessId, kGameProcess);

    rig.settings->setIncludesAudio(false);
    rig.tick();
    EXPECT_EQ(rig.audioRoute.stopCount, 1);
    EXPECT_FALSE(rig.audioRoute.routedProcessId.has_value());
    EXPECT_EQ(rig.audioRoute.startedProcessIds, (std::vector<std::int32_t>{kGameProcess}));

    rig.settings->setIncludesAudio(true);
    rig.tick();
    EXPECT_EQ(rig.audioRoute.routedProcessId, kGameProcess);
    rig.stopAndWait();
    EXPECT_EQ(rig.audioRoute.stopCount, 2);
    EXPECT_FALSE(rig.audioRoute.routedProcessId.has_value());
}

TEST_F(LeagueShareCoordinatorTest, aSoundRouteThatFailsLeavesThePictureSharing) {
    CapturedLog log;
    rig.audioRoute.startError = Error::withDescription(QStringLiteral("no sound server"));
    rig.showWindows({gameWindow()});
    coordinator().start();
    EXPECT_EQ(coordinator().status().kind(), Kind::sharingGame);
    EXPECT_TRUE(stream().core.isStarted());
    rig.stopAndWait();
    EXPECT_EQ(rig.audioRoute.stopCount, 0) << "a route that never started is not stopped";
    waitForCaptureLogWrites();
    EXPECT_TRUE(log.lines().join('\n').contains(QStringLiteral("no sound server")));
}

TEST_F(LeagueShareCoordinatorTest, onlyCompleteFramesAreShownAndIdleStillCountsAsUpdating) {
    RecordingSurface first;
    RecordingSurface second;
    coordinator().addDisplaySurface(first);
    coordinator().addDisplaySurface(second);
    rig.showWindows({gameWindow()});
    coordinator().start();

    ASSERT_TRUE(stream().core.deliver(sampleWithStatus(CaptureFrameStatus::idle), CaptureOutputType::screen));
    rig.drain();
    EXPECT_TRUE(coordinator().isSourceUpdating());
    EXPECT_TRUE(first.frames().empty());

    ASSERT_TRUE(stream().deliverFrame(1000));
    rig.drain();
    ASSERT_EQ(first.frames().size(), 1u);
    ASSERT_EQ(second.frames().size(), 1u);
    EXPECT_EQ(first.frames()[0], second.frames()[0]) << "one frame reaches every surface";

    ASSERT_TRUE(
        stream().core.deliver(sampleWithStatus(CaptureFrameStatus::blank), CaptureOutputType::screen));
    rig.drain();
    EXPECT_FALSE(coordinator().isSourceUpdating());
    EXPECT_EQ(first.frames().size(), 1u);

    CaptureSample notReady = sampleWithStatus(CaptureFrameStatus::complete);
    notReady.dataIsReady = false;
    ASSERT_TRUE(stream().core.deliver(std::move(notReady), CaptureOutputType::screen));
    rig.drain();
    EXPECT_FALSE(coordinator().isSourceUpdating());
    coordinator().removeDisplaySurface(first);
    coordinator().removeDisplaySurface(second);
}

TEST_F(LeagueShareCoordinatorTest, aSurfaceThatJoinsGetsTheNewestFrameAndTheLastOneLeavingKeepsTheStream) {
    rig.showWindows({gameWindow()});
    coordinator().start();
    ASSERT_TRUE(stream().deliverFrame(1000, 0xFF000001u));
    ASSERT_TRUE(stream().deliverFrame(2000, 0xFF000002u));
    rig.drain();

    RecordingSurface late;
    coordinator().addDisplaySurface(late);
    rig.drain();
    ASSERT_EQ(late.frames().size(), 1u);
    EXPECT_EQ(late.frames()[0]->data()[0], 0x02);

    coordinator().removeDisplaySurface(late);
    ASSERT_TRUE(stream().deliverFrame(3000));
    rig.drain();
    EXPECT_EQ(late.frames().size(), 1u) << "a removed surface is never called again";
    rig.tick();
    EXPECT_TRUE(stream().core.isStarted());
    EXPECT_EQ(rig.streams.madeCount(), 1);
}

TEST_F(LeagueShareCoordinatorTest, lostAccessStopsTheShareAndItsLoop) {
    rig.showWindows({gameWindow()});
    coordinator().start();
    rig.access.setGranted(false);
    rig.tick();
    rig.drain();
    EXPECT_EQ(coordinator().status().kind(), Kind::permissionRequired);
    EXPECT_FALSE(coordinator().isRunning());
    EXPECT_EQ(rig.streams.lastStream(), nullptr);
    const int calls = rig.content.callCount();
    rig.access.setGranted(true);
    rig.tick();
    rig.tick();
    EXPECT_EQ(rig.content.callCount(), calls);
    EXPECT_EQ(rig.clock.pendingSleepCount(), 0u);
}

TEST_F(LeagueShareCoordinatorTest, aFailedStartTellsWhyAndIsRetriedOnlyWhenSomethingChanged) {
    rig.streams.startError = Error::withDescription(QStringLiteral("The window could not be read."));
    rig.showWindows({clientWindow()});
    coordinator().start();
    EXPECT_EQ(coordinator().status(),
              LeagueShareStatus::failed(QStringLiteral("The window could not be read.")));
    EXPECT_EQ(coordinator().statusTitle(), QStringLiteral("Share unavailable"));
    EXPECT_EQ(coordinator().statusSymbol(), QStringLiteral("exclamationmark.triangle"));
    rig.tick();
    EXPECT_EQ(rig.streams.madeCount(), 1);

    rig.streams.startError.reset();
    rig.showWindows({gameWindow()});
    rig.tick();
    EXPECT_EQ(rig.streams.madeCount(), 2);
    EXPECT_EQ(coordinator().status().kind(), Kind::sharingGame);
}

TEST_F(LeagueShareCoordinatorTest, aStreamWhoseWindowWentWaitsAndClearsThePicture) {
    RecordingSurface surface;
    ASSERT_TRUE(shareTheGameWithOneFrame(surface));

    rig.showWindows({});
    rig.tick();
    EXPECT_EQ(coordinator().status().kind(), Kind::waiting);
    EXPECT_EQ(surface.flushes, (std::vector<bool>{true}));
    EXPECT_EQ(rig.streams.lastStream(), nullptr);
    EXPECT_TRUE(coordinator().isRunning());
    EXPECT_FALSE(coordinator().isSourceUpdating());

    rig.showWindows({gameWindow()});
    rig.tick();
    EXPECT_EQ(coordinator().status().kind(), Kind::sharingGame);
    coordinator().removeDisplaySurface(surface);
}

struct PictureSizeRow {
    const char* name;
    QSizeF window;
    LeagueShareResolution resolution;
    WindowStreamConfiguration configuration;
    QSize frame;  // what reaches the surface
};

void PrintTo(const PictureSizeRow& row, std::ostream* out) {
    *out << row.name;
}

class LeagueSharePictureSizeTest : public LeagueShareCoordinatorTest,
                                   public testing::WithParamInterface<PictureSizeRow> {};

TEST_P(LeagueSharePictureSizeTest, aSmallerWindowIsNotEnlargedAndItsFramesPassAsTheyCome) {
    const PictureSizeRow& row = GetParam();
    rig.settings->setResolution(row.resolution);
    RecordingSurface surface;
    coordinator().addDisplaySurface(surface);
    rig.showWindows({gameWindow(row.window)});
    coordinator().start();
    EXPECT_EQ(stream().configuration(), row.configuration);
    ASSERT_TRUE(stream().deliverFrame(1000));
    rig.drain();
    ASSERT_EQ(surface.frames().size(), 1u);
    EXPECT_EQ(QSize(surface.frames()[0]->width(), surface.frames()[0]->height()), row.frame);
    coordinator().removeDisplaySurface(surface);
}

INSTANTIATE_TEST_SUITE_P(Rows, LeagueSharePictureSizeTest,
                         testing::Values(PictureSizeRow{"smallerThanTheBox",
                                                        {1280, 720},
                                                        LeagueShareResolution::p1080,
                                                        {1920, 1080, 30, false, false},
                                                        {1280, 720}},
                                         PictureSizeRow{"fourThreeSmaller",
                                                        {1024, 768},
                                                        LeagueShareResolution::p1080,
                                                        {1440, 1080, 30, false, false},
                                                        {1024, 768}},
                                         PictureSizeRow{"largerThanTheBox",
                                                        {2560, 1440},
                                                        LeagueShareResolution::p1080,
                                                        {1920, 1080, 30, false, false},
                                                        {1920, 1080}},
                                         PictureSizeRow{"theBoxItself",
                                                        {1280, 720},
                                                        LeagueShareResolution::p720,
                                                        {1280, 720, 30, false, false},
                                                        {1280, 720}}),
                         [](const testing::TestParamInfo<PictureSizeRow>& info) {
                             return std::string(info.param.name);
                         });

struct StreamEndRow {
    const char* name;
    bool windowStillListed;  // at the refresh after the end
    bool includesAudio;
    Kind statusAfterRefresh;
    int streamsMade;
};

void PrintTo(const StreamEndRow& row, std::ostream* out) {
    *out << row.name;
}

class LeagueShareStreamEndTest : public LeagueShareCoordinatorTest,
                                 public testing::WithParamInterface<StreamEndRow> {};

TEST_P(LeagueShareStreamEndTest, aStreamThatEndsByItselfWaitsClearsThePictureAndIsFoundAgain) {
    const StreamEndRow& row = GetParam();
    CapturedLog log;
    rig.settings->setIncludesAudio(row.includesAudio);
    RecordingSurface surface;
    ASSERT_TRUE(shareTheGameWithOneFrame(surface));
    EXPECT_TRUE(coordinator().isSourceUpdating());

    ASSERT_TRUE(stream().endByItself(Error::withDescription(QStringLiteral("The window is gone"))));
    rig.drain();
    EXPECT_EQ(coordinator().status().kind(), Kind::waiting) << "noticed before the next listing";
    EXPECT_TRUE(coordinator().isRunning());
    EXPECT_FALSE(coordinator().isSourceUpdating());
    EXPECT_EQ(surface.flushes, (std::vector<bool>{true}));
    EXPECT_EQ(rig.streams.lastStream(), nullptr);
    EXPECT_FALSE(rig.audioRoute.routedProcessId.has_value());
    EXPECT_EQ(rig.audioRoute.stopCount, row.includesAudio ? 1 : 0);
    RecordingSurface late;
    coordinator().addDisplaySurface(late);
    rig.drain();
    EXPECT_TRUE(late.frames().empty()) << "the ended stream's picture is forgotten";

    if (!row.windowStillListed) rig.showWindows({});
    rig.tick();
    EXPECT_EQ(coordinator().status().kind(), row.statusAfterRefresh);
    EXPECT_EQ(rig.streams.madeCount(), row.streamsMade);
    waitForCaptureLogWrites();
    EXPECT_TRUE(
        log.lines().join('\n').contains(QStringLiteral("League Share's stream ended: The window is gone")));
    coordinator().removeDisplaySurface(surface);
    coordinator().removeDisplaySurface(late);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, LeagueShareStreamEndTest,
    testing::Values(StreamEndRow{"windowStillListed", true, false, Kind::sharingGame, 2},
                    StreamEndRow{"windowGoneBetweenListings", false, false, Kind::waiting, 1},
                    StreamEndRow{"withSound", true, true, Kind::sharingGame, 2}),
    [](const testing::TestParamInfo<StreamEndRow>& info) { return std::string(info.param.name); });

TEST_F(LeagueShareCoordinatorTest, aStopRightAfterAnEndHasTheLastWord) {
    RecordingSurface surface;
    ASSERT_TRUE(shareTheGameWithOneFrame(surface));
    // The end's take-down is queued; the user's stop comes before it runs.
    ASSERT_TRUE(stream().endByItself(Error::withDescription(QStringLiteral("The window is gone"))));
    coordinator().stop();
    rig.drain();
    rig.stopAndWait();
    rig.tick();
    EXPECT_EQ(coordinator().status().kind(), Kind::stopped);
    EXPECT_FALSE(coordinator().isRunning());
    EXPECT_EQ(rig.streams.lastStream(), nullptr);
    EXPECT_EQ(rig.streams.madeCount(), 1);
    ASSERT_FALSE(surface.flushes.empty());
    EXPECT_TRUE(surface.flushes.back());
    coordinator().removeDisplaySurface(surface);
}

TEST_F(LeagueShareCoordinatorTest, aRealStopClearsThePictureForLaterSurfaces) {
    RecordingSurface surface;
    ASSERT_TRUE(shareTheGameWithOneFrame(surface));

    rig.stopAndWait();
    EXPECT_EQ(coordinator().status().kind(), Kind::stopped);
    EXPECT_FALSE(coordinator().isRunning());
    EXPECT_EQ(surface.flushes, (std::vector<bool>{true}));
    RecordingSurface late;
    coordinator().addDisplaySurface(late);
    rig.drain();
    EXPECT_TRUE(late.frames().empty());

    // Started again, it shares again.
    coordinator().start();
    EXPECT_EQ(coordinator().status().kind(), Kind::sharingGame);
    coordinator().removeDisplaySurface(surface);
    coordinator().removeDisplaySurface(late);
}

TEST_F(LeagueShareCoordinatorTest, focusFollowsTheFrontApplicationOfTheSource) {
    const RunningApplication game{
        QStringLiteral("com.riotgames.LeagueofLegends.GameClient"), kGameProcess, {}};
    const RunningApplication browser{QStringLiteral("org.example.Browser"), 900, {}};
    rig.workspace.activate(browser);
    rig.showWindows({gameWindow()});
    coordinator().start();
    EXPECT_FALSE(coordinator().isSourceFocused()) << "taken at the start";
    rig.workspace.activate(game);
    EXPECT_TRUE(coordinator().isSourceFocused());
    rig.workspace.activate(browser);
    EXPECT_FALSE(coordinator().isSourceFocused());
    EXPECT_EQ(coordinator().overlay(), (LeagueShareOverlay{true, QStringLiteral("Gameplay paused"), {}}));

    rig.stopAndWait();
    EXPECT_TRUE(coordinator().isSourceFocused()) << "no source, nothing to be behind";
    EXPECT_EQ(rig.workspace.observerCount(Workspace::Notice::didActivate), 0u);
}

}  // namespace
}  // namespace kestrum::test

#include "CoordinatorRig.h"
#include "core/recording/RecordingCoordinator.h"
#include "support/TestEnvironment.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoroTask>
#include <QSignalSpy>

#include <chrono>

namespace kestrum::test {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

const QString kVerified = QStringLiteral("[INFO] [Capture] Live Game Client verified. Recording is allowed.");
const QString kStart = QStringLiteral("[INFO] [Capture] Live Game Client detected. Start recording...");
const QString kReplay = QStringLiteral("[INFO] [Capture] Replay Game Client detected. Recording suppressed.");
const QString kClosed = QStringLiteral("[INFO] [Capture] Game Client closed. Stopping recording...");
const QString kQuitting =
    QStringLiteral("[INFO] [Capture] Kestrum is quitting. Finalizing the active recording...");
const QString kLimit =
    QStringLiteral("[ERROR] [Capture] Recording storage limit reached. A new recording was not started.");
const QString kPermissionRemoved =
    QStringLiteral("[ERROR] [Capture] Screen Recording permission was removed. Stopping recording...");

TEST(RecordingCoordinator, DerivesTheStatusFromTheWorld) {
    struct Case {
        const char* name;
        std::vector<RunningApplication> applications;
        bool accessGranted;
        bool limitReached;
        bool isReplay;
        RecordingStatus expected;
        int expectedStarts;
        QStringList expectedLog;
        // With the budget off, a used-up measure is a full drive: the interface warns, the coordinator
        // does not act on it.
        bool budgetOff = false;
    };
    const RunningApplication unnamed{std::nullopt, 7, QStringLiteral("bash")};
    const RunningApplication ux{QStringLiteral("com.riotgames.LeagueofLegends.LeagueClientUx"), 101, {}};
    const RunningApplication wrongCase{QStringLiteral("com.riotgames.leagueoflegends.gameclient"), 9, {}};
    const auto game = CoordinatorRig::game();
    const auto client = CoordinatorRig::leagueClient();
    using enum RecordingStatus;
    const std::vector<Case> cases = {
        {"nothing runs", {}, true, false, false, idle, 0, {}},
        {"only the launcher", {CoordinatorRig::launcher()}, true, false, false, idle, 0, {}},
        {"no bundle identifier", {unnamed}, true, false, false, idle, 0, {}},
        {"identifier in another case", {wrongCase}, true, false, false, idle, 0, {}},
        {"League client", {client}, true, false, false, ready, 0, {}},
        {"League client interface", {ux}, true, false, false, ready, 0, {}},
        {"live game", {client, game}, true, false, false, recording, 1, {kVerified, kStart}},
        {"replay", {client, game}, true, false, true, ready, 0, {kReplay}},
        {"no access hides everything", {client, game}, false, true, false, permissionRequired, 0, {}},
        {"budget used up, live game", {client, game}, true, true, false, storageLimitReached, 0, {}},
        {"budget used up, idle", {}, true, true, false, storageLimitReached, 0, {}},
        {"budget off, drive full, live game",
         {client, game},
         true,
         true,
         false,
         recording,
         1,
         {kVerified, kStart},
         true},
        {"budget off, drive full, idle", {}, true, true, false, idle, 0, {}, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        CoordinatorRig rig;
        rig.workspace.setRunningApplications(c.applications);
        rig.access.setGranted(c.accessGranted);
        rig.measure.setLimitReached(c.limitReached);
        rig.liveClient.setIsReplay(c.isReplay);
        rig.defaults.setBool(!c.budgetOff, QStringLiteral("recordingStorageLimitEnabled"));
        rig.refresh();
        EXPECT_EQ(rig.coordinator->currentStatus(), c.expected);
        EXPECT_EQ(rig.capturer.startCount(), c.expectedStarts);
        EXPECT_EQ(rig.coordinator->isRecording(), c.expectedStarts == 1);
        EXPECT_THAT(captureLogLines(), testing::UnorderedElementsAreArray(c.expectedLog));
    }
}

TEST(RecordingCoordinator, PublishesTheStatusAsAPropertyThatSignalsChangesOnly) {
    CoordinatorRig rig;
    QSignalSpy spy(rig.coordinator.get(), &RecordingCoordinator::currentStatusChanged);
    rig.workspace.setRunningApplications({CoordinatorRig::leagueClient()});
    rig.refresh();
    rig.refresh();  // the same status again is no change
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(spy.at(0).at(0).value<RecordingStatus>(), RecordingStatus::ready);
    const QVariant property = rig.coordinator->property("currentStatus");
    EXPECT_EQ(property.value<RecordingStatus>(), RecordingStatus::ready);
}

TEST(RecordingCoordinator, StorageCheckReadsTheBudgetSettingsAndTheFolder) {
    CoordinatorRig rig;
    rig.defaults.setDouble(2.5, QStringLiteral("recordingStorageMaximumGigabytes"));
    rig.defaults.setDouble(50, QStringLiteral("recordingStorageWarningPercentage"));
    rig.refresh();
    ASSERT_EQ(rig.measure.callCount(), 1);
    const RecordingStorageQuery query = rig.measure.queries().front();
    EXPECT_EQ(query.folderPath, rig.folderStore.folderPath());
    EXPECT_EQ(query.maximumBytes, 2'500'000'000);
    EXPECT_FALSE(query.isUnlimited);
    EXPECT_DOUBLE_EQ(query.warningFraction, 0.5);
}

TEST(RecordingCoordinator, RefreshEnteredDuringClassificationStartsOnce) {
    for (const bool provesReplay : {false, true}) {
        SCOPED_TRACE(provesReplay ? "the game proves a replay" : "the game proves live");
        CoordinatorRig rig;
        rig.workspace.setRunningApplications({CoordinatorRig::game()});
        rig.liveClient.holdClassifications(true);
        const Job<void> first = rig.startRefresh();
        ASSERT_TRUE(waitUntil([&] { return rig.liveClient.suspendedClassifications() == 1; }));
        EXPECT_EQ(rig.coordinator->classifiedGameProcessID(), CoordinatorRig::kGamePid);

        // The second refresh takes the game as classified and live, and starts the recording.
        rig.refresh();
        EXPECT_EQ(rig.capturer.startCount(), 1);
        EXPECT_TRUE(rig.coordinator->isRecording());

        rig.liveClient.releaseClassifications(provesReplay);
        ASSERT_TRUE(CoordinatorRig::finish(first));
        EXPECT_EQ(rig.capturer.startCount(), 1);
        EXPECT_EQ(rig.liveClient.classificationCount(), 1);
        EXPECT_EQ(rig.coordinator->isRecording(), !provesReplay);
        EXPECT_EQ(rig.capturer.finishCalls().size(), provesReplay ? 1u : 0u);
        EXPECT_EQ(rig.coordinator->currentStatus(),
                  provesReplay ? RecordingStatus::ready : RecordingStatus::recording);
        // A replay stops the recording without a line of its own.
        EXPECT_THAT(captureLogLines(), Not(Contains(kClosed)));
    }
}

TEST(RecordingCoordinator, StartStorageCheckSuspendedKeepsOtherRefreshesOutAndRechecksTheWorld) {
    enum class During { nothing, gameEnds, quit, limitReached };
    struct Case {
        const char* name;
        During during;
        int expectedStarts;
        RecordingStatus expectedStatus;
    };
    const std::vector<Case> cases = {
        {"nothing changes", During::nothing, 1, RecordingStatus::recording},
        {"the game ends", During::gameEnds, 0, RecordingStatus::recording},
        {"the user quits", During::quit, 0, RecordingStatus::recording},
        {"the budget is used up", During::limitReached, 0, RecordingStatus::storageLimitReached},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        CoordinatorRig rig;
        rig.workspace.setRunningApplications({CoordinatorRig::game()});
        rig.measure.holdCall(2);  // the first is the plain check, the second the start's
        const Job<void> first = rig.startRefresh();
        ASSERT_TRUE(waitUntil([&] { return rig.measure.heldCount() == 1; }));
        EXPECT_TRUE(rig.coordinator->isStartingRecording());

        rig.refresh();  // returns before any start, while the first is still suspended
        EXPECT_EQ(rig.capturer.startCount(), 0);
        EXPECT_TRUE(rig.coordinator->isStartingRecording());

        if (c.during == During::gameEnds) rig.workspace.setRunningApplications({});
        if (c.during == During::limitReached) rig.measure.setLimitReached(true);
        std::optional<Job<void>> quit;
        if (c.during == During::quit) quit = rig.startQuit();
        rig.measure.releaseAll();
        ASSERT_TRUE(CoordinatorRig::finish(first));
        if (quit) {
            ASSERT_TRUE(CoordinatorRig::finish(*quit));
        }
        EXPECT_EQ(rig.capturer.startCount(), c.expectedStarts);
        EXPECT_FALSE(rig.coordinator->isStartingRecording());
        EXPECT_EQ(rig.coordinator->isRecording(), c.expectedStarts == 1);
        EXPECT_EQ(rig.coordinator->currentStatus(), c.expectedStatus);
        const QStringList log = captureLogLines();
        EXPECT_EQ(log.contains(kLimit), c.during == During::limitReached);
        EXPECT_EQ(log.contains(kStart), c.expectedStarts == 1);
    }
}

TEST(RecordingCoordinator, StopDuringStartWaitsForTheStartAndStartsNoTelemetry) {
    CoordinatorRig rig;
    rig.capturer.holdStarts(true);
    rig.workspace.setRunningApplications({CoordinatorRig::game()});
    const Job<void> starting = rig.startRefresh();
    ASSERT_TRUE(waitUntil([&] { return rig.capturer.suspendedStarts() == 1; }));

    rig.workspace.setRunningApplications({});  // silently: the test runs the refreshes itself
    const Job<void> stopping = rig.startRefresh();
    ASSERT_TRUE(waitUntil([&] { return rig.coordinator->isStopping(); }));
    processEventsFor(50);
    EXPECT_TRUE(rig.capturer.finishCalls().empty()) << "the stop must wait for the start";
    EXPECT_FALSE(rig.coordinator->isRecording());

    rig.capturer.releaseStarts(ReferenceDate{1000.0});
    ASSERT_TRUE(CoordinatorRig::finish(starting));
    ASSERT_TRUE(CoordinatorRig::finish(stopping));
    ASSERT_EQ(rig.capturer.finishCalls().size(), 1u);
    EXPECT_FALSE(rig.capturer.finishCalls().front().metadata.has_value());
    EXPECT_TRUE(rig.liveClient.metadataCalls().empty());
    EXPECT_TRUE(rig.liveClient.telemetryCalls().empty());
    EXPECT_FALSE(rig.coordinator->isStopping());
    EXPECT_EQ(rig.coordinator->currentStatus(), RecordingStatus::idle);
    EXPECT_THAT(captureLogLines(), Contains(kClosed));
}

TEST(RecordingCoordinator, EmptyApplicationListStopsTheRecordingAndHandsOnMetadataAndTelemetry) {
    CoordinatorRig rig;
    const RecordingMetadata metadata{std::nullopt, "CLASSIC", "Ahri", "MIDDLE"};
    RecordingTelemetry telemetry;
    telemetry.events.resize(2);
    telemetry.scoreboard.resize(1);
    telemetry.apmSamples.resize(3);
    rig.liveClient.setMetadata(metadata);
    rig.liveClient.setTelemetry(telemetry);
    rig.capturer.setStartResult(ReferenceDate{1234.5});
    rig.startLiveRecording();

    ASSERT_EQ(rig.liveClient.metadataCalls().size(), 1u);
    EXPECT_EQ(rig.liveClient.metadataCalls()[0].attempts, 15);
    EXPECT_EQ(rig.liveClient.metadataCalls()[0].delay, Clock::Duration(1s));
    ASSERT_EQ(rig.liveClient.telemetryCalls().size(), 1u);
    EXPECT_EQ(rig.liveClient.telemetryCalls()[0].startDate, ReferenceDate{1234.5});

    rig.workspace.setRunningApplications({});  // silently: the test runs the refreshes itself
    rig.refresh();
    EXPECT_EQ(rig.coordinator->currentStatus(), RecordingStatus::idle);
    EXPECT_FALSE(rig.coordinator->isRecording());
    EXPECT_TRUE(rig.liveClient.metadataCalls()[0].token.isCancelled());
    EXPECT_TRUE(rig.liveClient.telemetryCalls()[0].token.isCancelled());
    EXPECT_EQ(rig.capturer.completedFinishes(), 1);
    ASSERT_EQ(rig.capturer.finishCalls().size(), 1u);
    EXPECT_EQ(rig.capturer.finishCalls()[0].metadata, metadata);
    EXPECT_EQ(rig.capturer.finishCalls()[0].events.size(), 2u);
    EXPECT_EQ(rig.capturer.finishCalls()[0].scoreboard.size(), 1u);
    EXPECT_THAT(captureLogLines(), UnorderedElementsAre(kVerified, kStart, kClosed));
    // The system log receives the same entries synchronously, so it also shows their order.
    EXPECT_EQ(rig.log.lines(),
              (QStringList{QStringLiteral("Live Game Client verified. Recording is allowed."),
                           QStringLiteral("Live Game Client detected. Start recording..."),
                           QStringLiteral("Game Client closed. Stopping recording...")}));
}

// A game restarted with a new process goes on being recorded; a replay found after a live start stops the
// recording without the closing line.
TEST(RecordingCoordinator, NewGameProcessWhileRecordingIsClassifiedAgain) {
    for (const bool isReplay : {false, true}) {
        SCOPED_TRACE(isReplay ? "a replay" : "a live game");
        CoordinatorRig rig;
        rig.startLiveRecording(1);
        rig.workspace.setRunningApplications({CoordinatorRig::leagueClient(), CoordinatorRig::game(2)});
        rig.liveClient.setIsReplay(isReplay);
        rig.refresh();
        EXPECT_EQ(rig.liveClient.classificationCount(), 2);
        EXPECT_EQ(rig.coordinator->classifiedGameProcessID(), 2);
        EXPECT_EQ(rig.capturer.startCount(), 1);
        EXPECT_EQ(rig.coordinator->isRecording(), !isReplay);
        EXPECT_EQ(rig.capturer.finishCalls().size(), isReplay ? 1u : 0u);
        EXPECT_EQ(rig.coordinator->currentStatus(),
                  isReplay ? RecordingStatus::ready : RecordingStatus::recording);
        EXPECT_THAT(captureLogLines(),
                    UnorderedElementsAre(kVerified, kStart, isReplay ? kReplay : kVerified));
    }
}

TEST(RecordingCoordinator, GameGoneDuringClassificationLeavesTheStatusAsItStood) {
    CoordinatorRig rig;
    rig.workspace.setRunningApplications({CoordinatorRig::leagueClient()});
    rig.refresh();
    rig.workspace.setRunningApplications({CoordinatorRig::leagueClient(), CoordinatorRig::game()});
    rig.liveClient.holdClassifications(true);
    const Job<void> refresh = rig.startRefresh();
    ASSERT_TRUE(waitUntil([&] { return rig.liveClient.suspendedClassifications() == 1; }));
    rig.workspace.setRunningApplications({CoordinatorRig::leagueClient()});
    rig.liveClient.releaseClassifications(false);
    ASSERT_TRUE(CoordinatorRig::finish(refresh));
    EXPECT_EQ(rig.coordinator->currentStatus(), RecordingStatus::ready);
    EXPECT_FALSE(rig.coordinator->classifiedGameProcessID().has_value());
    EXPECT_EQ(rig.capturer.startCount(), 0);
    EXPECT_THAT(captureLogLines(), IsEmpty());
}

TEST(RecordingCoordinator, RecordingIsNeverStoppedByTheBudget) {
    CoordinatorRig rig;
    rig.startLiveRecording();
    const int measuresBefore = rig.measure.callCount();
    rig.measure.setLimitReached(true);
    rig.refresh();
    EXPECT_EQ(rig.measure.callCount(), measuresBefore) << "no storage check while recording";
    EXPECT_TRUE(rig.coordinator->isRecording());
    EXPECT_EQ(rig.coordinator->currentStatus(), RecordingStatus::recording);
}

TEST(RecordingCoordinator, FailedStartRetriesOnceAfterTwoSecondsWhileAccessHolds) {
    for (const bool accessAfterFailure : {true, false}) {
        SCOPED_TRACE(accessAfterFailure ? "access kept" : "access removed before the failure");
        CoordinatorRig rig;
        rig.capturer.setStartResult(std::nullopt);
        rig.capturer.holdStarts(true);
        rig.workspace.setRunningApplications({CoordinatorRig::game()});
        const Job<void> refresh = rig.startRefresh();
        ASSERT_TRUE(waitUntil([&] { return rig.capturer.suspendedStarts() == 1; }));
        rig.access.setGranted(accessAfterFailure);
        rig.capturer.releaseStarts(std::nullopt);
        ASSERT_TRUE(CoordinatorRig::finish(refresh));
        EXPECT_FALSE(rig.coordinator->isStartingRecording());
        EXPECT_FALSE(rig.coordinator->isRecording());
        EXPECT_EQ(rig.coordinator->currentStatus(), RecordingStatus::recording);

        rig.clock.advance(1999ms);
        EXPECT_EQ(rig.capturer.startCount(), 1);
        rig.clock.advance(1ms);
        // The retry's refresh has ended once its start has failed in turn (or, without access, at once).
        ASSERT_TRUE(waitUntil([&] {
            return rig.capturer.startCount() == (accessAfterFailure ? 2 : 1) &&
                   !rig.coordinator->isRecording();
        }));
        processEventsFor(20);
        EXPECT_EQ(rig.capturer.startCount(), accessAfterFailure ? 2 : 1);
        EXPECT_FALSE(rig.coordinator->isStartingRecording());
        EXPECT_TRUE(rig.capturer.finishCalls().empty());
    }
}

TEST(RecordingCoordinator, PeriodicRefreshStopsARecordingWhenAccessIsRemoved) {
    CoordinatorRig rig;
    rig.startLiveRecording();
    rig.access.setGranted(false);
    rig.clock.advance(5s);
    ASSERT_TRUE(waitUntil([&] { return rig.capturer.completedFinishes() == 1; }));
    EXPECT_EQ(rig.coordinator->currentStatus(), RecordingStatus::permissionRequired);
    EXPECT_FALSE(rig.coordinator->isRecording());
    EXPECT_FALSE(rig.coordinator->lastKnownScreenRecordingAccess());
    EXPECT_THAT(captureLogLines(), UnorderedElementsAre(kVerified, kStart, kPermissionRemoved));
    ASSERT_FALSE(rig.log.sink->lines().isEmpty());
    EXPECT_EQ(rig.log.sink->lines().last(),
              (FakeSystemLog::Line{
                  SystemLog::Level::Error,
                  QStringLiteral("❌ Screen Recording permission was removed. Stopping recording...")}));
}

TEST(RecordingCoordinator, QuitTwiceFinalizesOnce) {
    CoordinatorRig rig;
    rig.startLiveRecording();
    rig.capturer.holdFinishes(true);
    const Job<void> firstQuit = rig.startQuit();
    const Job<void> secondQuit = rig.startQuit();
    EXPECT_TRUE(secondQuit.isFinished()) << "the second quit returns at once";
    EXPECT_FALSE(firstQuit.isFinished()) << "the first quit waits for the movie";
    rig.capturer.releaseFinishes();
    ASSERT_TRUE(CoordinatorRig::finish(firstQuit));
    EXPECT_EQ(rig.capturer.completedFinishes(), 1);
    EXPECT_THAT(captureLogLines(), UnorderedElementsAre(kVerified, kStart, kQuitting));

    // After the quit, refreshes and the periodic loop do nothing.
    const int measures = rig.measure.callCount();
    rig.workspace.setRunningApplications({});
    rig.refresh();
    rig.clock.advance(10s);
    processEventsFor(20);
    EXPECT_EQ(rig.measure.callCount(), measures);
    EXPECT_EQ(rig.coordinator->currentStatus(), RecordingStatus::recording);
}

TEST(RecordingCoordinator, QuitWithAStopRunningLogsAndJoinsIt) {
    CoordinatorRig rig;
    rig.startLiveRecording();
    rig.capturer.holdFinishes(true);
    rig.workspace.setRunningApplications({});  // silently: the test runs the refreshes itself
    const Job<void> stopping = rig.startRefresh();
    ASSERT_TRUE(waitUntil([&] { return rig.capturer.suspendedFinishes() == 1; }));
    const Job<void> quit = rig.startQuit();
    processEventsFor(20);
    EXPECT_FALSE(quit.isFinished());
    rig.capturer.releaseFinishes();
    ASSERT_TRUE(CoordinatorRig::finish(quit));
    ASSERT_TRUE(CoordinatorRig::finish(stopping));
    EXPECT_EQ(rig.capturer.finishCalls().size(), 1u);
    EXPECT_THAT(captureLogLines(), UnorderedElementsAre(kVerified, kStart, kClosed, kQuitting));
}

TEST(RecordingCoordinator, QuitWithoutRecordingLogsNothing) {
    CoordinatorRig rig;
    QCoro::waitFor(rig.coordinator->prepareForTermination());
    EXPECT_TRUE(rig.coordinator->isShuttingDown());
    EXPECT_THAT(captureLogLines(), IsEmpty());
}

TEST(RecordingCoordinator, NoticesOfMonitoredApplicationsAndEveryActivationRefresh) {
    struct Case {
        const char* name;
        std::function<void(FakeWorkspace&)> notice;
        bool refreshes;
        std::string printed;
    };
    const RunningApplication browser{QStringLiteral("org.mozilla.firefox"), 300, QStringLiteral("Firefox")};
    const RunningApplication nameless{
        QStringLiteral("com.riotgames.LeagueofLegends.LeagueClientUx"), 301, {}};
    const std::vector<Case> cases = {
        {"launch of the game", [](FakeWorkspace& w) { w.launch(CoordinatorRig::game()); }, true,
         "LaunchObserver detected: League of Legends\n"},
        {"launch without a name", [&](FakeWorkspace& w) { w.launch(nameless); }, true,
         "LaunchObserver detected: \n"},
        {"launch of the launcher", [](FakeWorkspace& w) { w.launch(CoordinatorRig::launcher()); }, true,
         "LaunchObserver detected: Riot Client\n"},
        {"launch of another application", [&](FakeWorkspace& w) { w.launch(browser); }, false, ""},
        {"end of the League client",
         [](FakeWorkspace& w) {
             w.setRunningApplications({CoordinatorRig::leagueClient()});
             w.terminate(100);
         },
         true, "TerminateObserver detected: League Client\n"},
        {"end of another application",
         [&](FakeWorkspace& w) {
             w.setRunningApplications({browser});
             w.terminate(300);
         },
         false, ""},
        {"activation of any application", [&](FakeWorkspace& w) { w.activate(browser); }, true, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        CoordinatorRig rig;
        rig.refresh();
        ASSERT_TRUE(rig.coordinator->lastKnownScreenRecordingAccess());
        // Without access a refresh ends at its access check, at once and with no await; the flip of
        // lastKnownScreenRecordingAccess shows that it ran, and that it has ended.
        rig.access.setGranted(false);
        testing::internal::CaptureStdout();
        c.notice(rig.workspace);
        const std::string printed = testing::internal::GetCapturedStdout();
        EXPECT_EQ(printed, c.printed);
        EXPECT_TRUE(rig.coordinator->lastKnownScreenRecordingAccess())
            << "the refresh runs as a task of its own";
        if (c.refreshes) {
            EXPECT_TRUE(waitUntil([&] { return !rig.coordinator->lastKnownScreenRecordingAccess(); }));
        } else {
            processEventsFor(30);
            EXPECT_TRUE(rig.coordinator->lastKnownScreenRecordingAccess());
        }
        for (const QString& line : captureLogLines()) {
            EXPECT_FALSE(line.contains(QStringLiteral("detected: ")))
                << "console only: " << line.toStdString();
        }
    }
}

TEST(RecordingCoordinator, DestructionRemovesTheObserversAndEndsThePeriodicRefresh) {
    CoordinatorRig rig;
    EXPECT_EQ(rig.workspace.observerCount(Workspace::Notice::didActivate), 1u);
    EXPECT_EQ(rig.clock.pendingSleepCount(), 1u);
    rig.coordinator.reset();
    processEventsFor(20);
    EXPECT_EQ(rig.workspace.observerCount(Workspace::Notice::didLaunch), 0u);
    EXPECT_EQ(rig.workspace.observerCount(Workspace::Notice::didTerminate), 0u);
    EXPECT_EQ(rig.workspace.observerCount(Workspace::Notice::didActivate), 0u);
    EXPECT_EQ(rig.clock.pendingSleepCount(), 0u);
    const int measures = rig.measure.callCount();
    rig.clock.advance(10s);
    processEventsFor(20);
    EXPECT_EQ(rig.measure.callCount(), measures);
}

TEST(RecordingCoordinator, RealStorageWalkHidesALiveGameBehindTheLimit) {
    CoordinatorRig rig(CoordinatorRig::Storage::realFolderWalk);
    // 1000 bytes of budget, and a folder that holds more than that on disk.
    rig.defaults.setDouble(0.000001, QStringLiteral("recordingStorageMaximumGigabytes"));
    const QString folder = rig.home.path() + QStringLiteral("/Recordings");
    ASSERT_TRUE(writeFileBytes(folder + QStringLiteral("/old.mov"), QByteArray(64 * 1024, 'x')));
    rig.folderStore.takeFolder(folder);
    rig.startLiveRecording();
    EXPECT_EQ(rig.coordinator->currentStatus(), RecordingStatus::storageLimitReached);
    EXPECT_EQ(rig.capturer.startCount(), 0);
    EXPECT_EQ(rig.liveClient.classificationCount(), 0) << "the budget comes before any look at the processes";
    EXPECT_THAT(captureLogLines(), IsEmpty());
}

}  // namespace
}  // namespace kestrum::test

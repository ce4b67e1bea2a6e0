#include "CoordinatorRig.h"

#include "support/TestEnvironment.h"

#include <QCoreApplication>
#include <QCoroTask>

namespace kestrum::test {

CoordinatorRig::CoordinatorRig(Storage storageKind)
    : defaults(home.path() + QStringLiteral("/defaults.json")),
      folderStore(defaults, picker),
      storage(folderStore, defaults,
              storageKind == Storage::gated ? measure.measure() : RecordingStorageBudgetSource::Measure()) {
    resetCaptureLogFile();
    access.setGranted(false);
    coordinator =
        std::make_unique<RecordingCoordinator>(workspace, access, capturer, liveClient, storage, clock);
    waitUntil([&] { return coordinator->currentStatus() == RecordingStatus::permissionRequired; });
    access.setGranted(true);
}

CoordinatorRig::~CoordinatorRig() {
    measure.releaseAll();
    coordinator.reset();
    // Sleeps still pending when the clock goes are never resumed, and their coroutines would leak: wake
    // them all (the retries find no coordinator, the live client's operations end) and let the jobs'
    // queued resumptions run.
    clock.advance(std::chrono::hours(24 * 365 * 2));
    waitUntil([&] { return clock.pendingSleepCount() == 0; });
    for (int turn = 0; turn < 5; ++turn) QCoreApplication::processEvents();
}

void CoordinatorRig::refresh() {
    QCoro::waitFor(coordinator->refreshRecordingState());
}

Job<void> CoordinatorRig::startRefresh() {
    return Job<void>::start([this](CancellationToken) { return coordinator->refreshRecordingState(); });
}

Job<void> CoordinatorRig::startQuit() {
    return Job<void>::start([this](CancellationToken) { return coordinator->prepareForTermination(); });
}

bool CoordinatorRig::finish(const Job<void>& job) {
    return waitUntil([&] { return job.isFinished(); }, 10'000);
}

void CoordinatorRig::startLiveRecording(qint32 pid) {
    workspace.setRunningApplications({leagueClient(), game(pid)});
    refresh();
}

RunningApplication CoordinatorRig::game(qint32 pid) {
    return {QStringLiteral("com.riotgames.LeagueofLegends.GameClient"), pid,
            QStringLiteral("League of Legends")};
}

RunningApplication CoordinatorRig::leagueClient() {
    return {QStringLiteral("com.riotgames.LeagueofLegends.LeagueClient"), 100,
            QStringLiteral("League Client")};
}

RunningApplication CoordinatorRig::launcher() {
    return {QStringLiteral("com.riotgames.RiotGames.RiotClient"), 50, QStringLiteral("Riot Client")};
}

}  // namespace kestrum::test

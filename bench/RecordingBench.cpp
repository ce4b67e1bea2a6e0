// The coordinator's refresh, which runs at every application switch of the user, with 300 running
// applications; and the storage walk of a recordings folder of 5,000 files, which runs at every refresh
// outside a recording. Prints `figure <name> <value> <unit>` lines, medians of repeated runs.
#include "BenchTiming.h"
#include "base/async/ManualClock.h"
#include "core/recording/RecordingCoordinator.h"
#include "core/recording/RecordingFolderStore.h"
#include "core/recording/RecordingStorageBudget.h"
#include "core/recording/RecordingStorageBudgetSource.h"
#include "core/settings/UserDefaults.h"
#include "platform/fake/FakeFolderPicker.h"
#include "platform/fake/FakeScreenCaptureAccess.h"
#include "platform/fake/FakeWorkspace.h"

#include <QCoreApplication>
#include <QCoroTask>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

using kestrum::bench::medianMilliseconds;

using namespace kestrum;

// A capture that starts at once and finishes at once: the bench measures the decision, not a capture.
class InstantCapturer final : public RecordingCapturer {
  public:
    QCoro::Task<std::optional<ReferenceDate>> startCapture() override { co_return ReferenceDate::now(); }
    QCoro::Task<void> finishCapture(std::optional<RecordingMetadata>, std::vector<RecordingEvent>,
                                    std::vector<RecordingScoreboardSnapshot>) override {
        co_return;
    }
};

// A live game; metadata and telemetry end as soon as they are cancelled.
class LiveGameClient final : public RecordingLiveClient {
  public:
    explicit LiveGameClient(Clock& clock) : clock_(clock) {}
    QCoro::Task<bool> classifyGameProcess() override { co_return false; }
    QCoro::Task<std::optional<RecordingMetadata>> fetchRecordingMetadata(int, Clock::Duration,
                                                                         CancellationToken token) override {
        co_await clock_.sleep(std::chrono::hours(1), token);
        co_return std::nullopt;
    }
    QCoro::Task<RecordingTelemetry> collectTelemetry(ReferenceDate,
                                                     std::shared_ptr<RecordingTelemetryJournal>,
                                                     CancellationToken token) override {
        co_await clock_.sleep(std::chrono::hours(1), token);
        co_return RecordingTelemetry{};
    }

  private:
    Clock& clock_;
};

std::vector<RunningApplication> threeHundredApplications(bool withGame) {
    std::vector<RunningApplication> applications;
    for (qint32 pid = 1000; pid < 1299; ++pid) {
        applications.push_back(
            {QStringLiteral("org.example.app%1").arg(pid), pid, QStringLiteral("App %1").arg(pid)});
    }
    applications.push_back({QStringLiteral("com.riotgames.LeagueofLegends.LeagueClientUx"), 1299, {}});
    if (withGame) {
        applications.back() = {QStringLiteral("com.riotgames.LeagueofLegends.GameClient"), 1299, {}};
    }
    return applications;
}

void makeRecordingsFolder(const QString& root, int fileCount) {
    for (int index = 0; index < fileCount; ++index) {
        const QString folder = root + QStringLiteral("/%1").arg(index / 500);
        QDir().mkpath(folder);
        QFile file(folder + QStringLiteral("/2026-03-14_21-07-%1_CLASSIC_AHRI.mov").arg(index));
        if (file.open(QIODevice::WriteOnly)) file.write(QByteArray(2048, 'm'));
    }
}

void printFigure(const char* name, double value, const char* unit) {
    std::printf("figure %s %.4f %s\n", name, value, unit);
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QTemporaryDir home;
    ManualClock clock;
    UserDefaults defaults(home.path() + QStringLiteral("/defaults.json"));
    FakeFolderPicker picker;
    RecordingFolderStore folderStore(defaults, picker);
    const QString recordings = home.path() + QStringLiteral("/Recordings");
    makeRecordingsFolder(recordings, 5000);
    folderStore.takeFolder(recordings);

    FakeWorkspace workspace;
    FakeScreenCaptureAccess access(true);
    InstantCapturer capturer;
    LiveGameClient liveClient(clock);
    // A measure that answers at once, so the refresh figures hold the decision and one detached hop only.
    const RecordingStorageBudgetSource noWalk(folderStore, defaults, [](const RecordingStorageQuery& query) {
        return RecordingStorageUsage{0, query.maximumBytes, query.warningFraction, query.isUnlimited};
    });
    RecordingCoordinator coordinator(workspace, access, capturer, liveClient, noWalk, clock);

    workspace.setRunningApplications(threeHundredApplications(false));
    QCoro::waitFor(coordinator.refreshRecordingState());
    printFigure("refresh_ready_300_apps_without_walk",
                medianMilliseconds(200, [&] { QCoro::waitFor(coordinator.refreshRecordingState()); }), "ms");

    workspace.setRunningApplications(threeHundredApplications(true));
    QCoro::waitFor(coordinator.refreshRecordingState());  // classifies and starts the recording
    printFigure("refresh_recording_300_apps",
                medianMilliseconds(200, [&] { QCoro::waitFor(coordinator.refreshRecordingState()); }), "ms");
    QCoro::waitFor(coordinator.prepareForTermination());

    printFigure("storage_walk_5000_files",
                medianMilliseconds(20, [&] { measureStorageUsage(recordings, 100'000'000'000, false, 0.8); }),
                "ms");
    return 0;
}

#include "core/recording/RecordingCoordinator.h"

#include "base/log/CaptureLog.h"
#include "core/recording/RecordingBundleIdentifiers.h"
#include "core/recording/StandardOutput.h"

#include <QCoroFuture>
#include <QMetaObject>
#include <QPointer>

#include <algorithm>
#include <utility>

namespace kestrum {
namespace {

QSet<QString> makeMonitoredBundleIdentifiers() {
    return {RecordingBundleIdentifiers::gameClient, RecordingBundleIdentifiers::leagueClient,
            RecordingBundleIdentifiers::leagueClientUx, RecordingBundleIdentifiers::riotClient};
}

// The launch and terminate observers: a monitored application leads to a "detected" line on standard
// output (never the capture log) and a refresh.
Workspace::Handler makeMonitoredApplicationHandler(QPointer<RecordingCoordinator> coordinator,
                                                   QSet<QString> monitored, QString observerName,
                                                   std::function<void(RecordingCoordinator&)> refresh) {
    return [coordinator, monitored = std::move(monitored), observerName = std::move(observerName),
            refresh = std::move(refresh)](const RunningApplication& application) {
        if (!application.bundleIdentifier || !monitored.contains(*application.bundleIdentifier)) return;
        printStandardOutputLine(observerName + QStringLiteral(" detected: ") +
                                application.localizedName.value_or(QString()));
        if (coordinator) refresh(*coordinator);
    };
}

}  // namespace

RecordingCoordinator::RecordingCoordinator(Workspace& workspace, ScreenCaptureAccess& screenCaptureAccess,
                                           RecordingCapturer& capturer, RecordingLiveClient& liveClient,
                                           const RecordingStorageBudgetSource& storage, Clock& clock,
                                           QObject* parent)
    : QObject(parent),
      workspace_(workspace),
      screenCaptureAccess_(screenCaptureAccess),
      capturer_(capturer),
      liveClient_(liveClient),
      storage_(storage),
      clock_(clock),
      monitoredBundleIdentifiers_(makeMonitoredBundleIdentifiers()) {
    lastKnownScreenRecordingAccess_ = screenCaptureAccess_.preflight();
    startWorkspaceObservers();
    startPermissionMonitor();
}

RecordingCoordinator::~RecordingCoordinator() {
    if (permissionMonitorTask_) permissionMonitorTask_->cancel();
    observers_.clear();
}

void RecordingCoordinator::startWorkspaceObservers() {
    const QPointer<RecordingCoordinator> self(this);
    const auto refresh = [](RecordingCoordinator& coordinator) { coordinator.startRefreshTask(); };
    observers_.push_back(
        workspace_.observe(Workspace::Notice::didLaunch,
                           makeMonitoredApplicationHandler(self, monitoredBundleIdentifiers_,
                                                           QStringLiteral("LaunchObserver"), refresh)));
    observers_.push_back(
        workspace_.observe(Workspace::Notice::didTerminate,
                           makeMonitoredApplicationHandler(self, monitoredBundleIdentifiers_,
                                                           QStringLiteral("TerminateObserver"), refresh)));
    // Any application coming to the front, whatever it is, leads to a refresh.
    observers_.push_back(
        workspace_.observe(Workspace::Notice::didActivate, [self](const RunningApplication&) {
            if (self) self->startRefreshTask();
        }));
    startRefreshTask();
}

void RecordingCoordinator::startPermissionMonitor() {
    // Despite its name, the safety net of every condition, not only of the permission.
    permissionMonitorTask_ = Job<void>::start([self = QPointer<RecordingCoordinator>(this), clock = &clock_](
                                                  CancellationToken token) -> QCoro::Task<void> {
        while (!token.isCancelled()) {
            co_await clock->sleep(kRefreshPeriod, token);  // a sleep ended by cancellation is swallowed
            if (token.isCancelled() || !self) co_return;
            co_await self->refreshRecordingState();
        }
    });
}

void RecordingCoordinator::startRefreshTask() {
    // Queued, so that the refresh runs as a task of its own and never inside a notice's delivery or the
    // constructor. A coordinator destroyed before the turn comes drops it.
    QMetaObject::invokeMethod(
        this,
        [this] {
            Job<void>::start(
                [self = QPointer<RecordingCoordinator>(this)](CancellationToken) -> QCoro::Task<void> {
                    if (self) co_await self->refreshRecordingState();
                });
        },
        Qt::QueuedConnection);
}

QCoro::Task<void> RecordingCoordinator::refreshRecordingState() {
    if (isShuttingDown_) co_return;  // quitting: refreshes are no-ops

    const bool accessMissing = co_await stopWhenScreenRecordingAccessIsMissing();
    if (accessMissing) co_return;

    // The storage check comes before any look at the processes, so that a used-up budget hides idle, ready
    // and a running game alike. Skipped while recording: a recording in progress is never stopped by the
    // budget.
    if (!isRecording_) {
        const bool usedUp = co_await isStorageBudgetUsedUp();
        if (usedUp) {
            setCurrentStatus(RecordingStatus::storageLimitReached);
            co_return;
        }
    }

    const RunningGameSearch search = findRunningGame();
    if (!search.gameProcessID) {
        co_await settleWithoutGame(search.clientRunning);
        co_return;
    }
    const qint32 processID = *search.gameProcessID;

    const bool gameStillRuns = co_await classifyGameProcessIfNew(processID);
    if (!gameStillRuns) co_return;

    if (currentGameIsReplay_) {
        co_await settleReplayGame();
        co_return;
    }

    // A live game: the status says what the system is going to do, before the start.
    setCurrentStatus(RecordingStatus::recording);
    if (isRecording_ || isStartingRecording_) co_return;

    const bool mayStart = co_await passStartStorageCheck(processID);
    if (!mayStart) co_return;
    co_await startRecording();
}

QCoro::Task<bool> RecordingCoordinator::stopWhenScreenRecordingAccessIsMissing() {
    lastKnownScreenRecordingAccess_ = screenCaptureAccess_.preflight();
    if (lastKnownScreenRecordingAccess_) co_return false;
    setCurrentStatus(RecordingStatus::permissionRequired);
    if (isRecording_) {
        isRecording_ = false;
        logCaptureError(QStringLiteral("Screen Recording permission was removed. Stopping recording..."));
        co_await stopRecording();
    }
    co_return true;
}

QCoro::Task<bool> RecordingCoordinator::isStorageBudgetUsedUp() {
    const RecordingStorageQuery query = storage_.readBudget();
    QFuture<RecordingStorageUsage> measuring = storage_.measureDetached(query);
    const RecordingStorageUsage usage = co_await measuring;
    co_return usage.isLimitReached();
}

RecordingCoordinator::RunningGameSearch RecordingCoordinator::findRunningGame() const {
    const std::vector<RunningApplication> applications = workspace_.runningApplications();
    RunningGameSearch search;
    search.clientRunning = std::any_of(applications.begin(), applications.end(), [](const auto& application) {
        return application.bundleIdentifier &&
               RecordingBundleIdentifiers::isLeagueClient(*application.bundleIdentifier);
    });
    const auto game = std::find_if(applications.begin(), applications.end(), [](const auto& application) {
        return application.bundleIdentifier &&
               *application.bundleIdentifier == RecordingBundleIdentifiers::gameClient;
    });
    if (game != applications.end()) search.gameProcessID = game->processIdentifier;
    return search;
}

QCoro::Task<void> RecordingCoordinator::settleWithoutGame(bool clientRunning) {
    classifiedGameProcessID_.reset();
    currentGameIsReplay_ = false;
    setCurrentStatus(clientRunning ? RecordingStatus::ready : RecordingStatus::idle);
    if (!isRecording_) co_return;
    isRecording_ = false;
    logCaptureInfo(QStringLiteral("Game Client closed. Stopping recording..."));
    co_await stopRecording();
}

QCoro::Task<bool> RecordingCoordinator::classifyGameProcessIfNew(qint32 processID) {
    if (classifiedGameProcessID_ == processID) co_return true;
    // Set before the await: a refresh entering meanwhile takes this game as classified, and live.
    classifiedGameProcessID_ = processID;
    const bool isReplay = co_await liveClient_.classifyGameProcess();
    currentGameIsReplay_ = isReplay;
    if (!isProcessRunning(processID)) {
        // The game ended during the classification; the status stays as it stood.
        classifiedGameProcessID_.reset();
        currentGameIsReplay_ = false;
        co_return false;
    }
    logCaptureInfo(currentGameIsReplay_ ? QStringLiteral("Replay Game Client detected. Recording suppressed.")
                                        : QStringLiteral("Live Game Client verified. Recording is allowed."));
    co_return true;
}

QCoro::Task<void> RecordingCoordinator::settleReplayGame() {
    setCurrentStatus(RecordingStatus::ready);
    if (!isRecording_) co_return;
    isRecording_ = false;  // a replay ends a recording without a log line
    co_await stopRecording();
}

QCoro::Task<bool> RecordingCoordinator::passStartStorageCheck(qint32 processID) {
    isStartingRecording_ = true;  // keeps a refresh entering meanwhile from a second start
    const bool usedUp = co_await isStorageBudgetUsedUp();
    if (usedUp) {  // the only storage check that writes to the log
        isStartingRecording_ = false;
        setCurrentStatus(RecordingStatus::storageLimitReached);
        logCaptureError(QStringLiteral("Recording storage limit reached. A new recording was not started."));
        co_return false;
    }
    if (isShuttingDown_) {  // the user quit during the check
        isStartingRecording_ = false;
        co_return false;
    }
    if (!isProcessRunning(processID)) {  // the game ended during the check
        isStartingRecording_ = false;
        co_return false;
    }
    co_return true;
}

QCoro::Task<void> RecordingCoordinator::startRecording() {
    isRecording_ = true;
    isStartingRecording_ = false;
    logCaptureInfo(QStringLiteral("Live Game Client detected. Start recording..."));

    // The coordinator never cancels a start: a stop waits for it instead.
    const StartJob startTask =
        StartJob::start([capturer = &capturer_](CancellationToken) { return capturer->startCapture(); });
    recordingStartTask_ = startTask;
    const std::optional<ReferenceDate> startDate = co_await startTask;

    // A stop takes the start job out of the field; finding another job there (or none) means a
    // stop has taken over, even if a later recording has set isRecording again meanwhile.
    const bool stopTookOver = recordingStartTask_ != startTask;
    if (!stopTookOver) recordingStartTask_.reset();
    if (stopTookOver || !isRecording_ || isShuttingDown_) co_return;

    if (!startDate) {  // the status stays `recording` until the retry's refresh
        isRecording_ = false;
        if (screenCaptureAccess_.preflight()) scheduleStartRetry();
        co_return;
    }
    startMetadataAndTelemetry(*startDate);
}

void RecordingCoordinator::scheduleStartRetry() {
    // Not stored: one retry per failure, and a game whose window never appears retries as long as it runs.
    Job<void>::start([self = QPointer<RecordingCoordinator>(this),
                      clock = &clock_](CancellationToken token) -> QCoro::Task<void> {
        co_await clock->sleep(kStartRetryDelay, token);  // a failed sleep is ignored
        if (self) co_await self->refreshRecordingState();
    });
}

void RecordingCoordinator::startMetadataAndTelemetry(ReferenceDate startDate) {
    // What they find also goes to the recording's journal, so that a crash loses neither.
    const std::shared_ptr<RecordingTelemetryJournal> journal = capturer_.telemetryJournal();
    recordingMetadataTask_ =
        MetadataJob::start([liveClient = &liveClient_, journal](
                               CancellationToken token) -> QCoro::Task<std::optional<RecordingMetadata>> {
            QCoro::Task<std::optional<RecordingMetadata>> fetching =
                liveClient->fetchRecordingMetadata(kMetadataAttempts, kMetadataDelay, token);
            std::optional<RecordingMetadata> metadata = co_await std::move(fetching);
            if (metadata && journal) journal->appendMetadata(*metadata);
            co_return metadata;
        });
    recordingTelemetryTask_ =
        TelemetryJob::start([liveClient = &liveClient_, startDate, journal](CancellationToken token) {
            return liveClient->collectTelemetry(startDate, journal, token);
        });
}

QCoro::Task<void> RecordingCoordinator::stopRecording() {
    if (recordingStopTask_) {  // join the one running stop
        const Job<void> running = *recordingStopTask_;
        co_await running;
        co_return;
    }
    std::optional<StartJob> startTask = std::exchange(recordingStartTask_, std::nullopt);
    std::optional<MetadataJob> metadataTask = std::exchange(recordingMetadataTask_, std::nullopt);
    std::optional<TelemetryJob> telemetryTask = std::exchange(recordingTelemetryTask_, std::nullopt);
    // The start is not cancelled; the stop waits for it.
    if (metadataTask) metadataTask->cancel();
    if (telemetryTask) telemetryTask->cancel();

    const Job<void> stopTask =
        Job<void>::start([capturer = &capturer_, startTask, metadataTask, telemetryTask](CancellationToken) {
            return runStopTask(*capturer, startTask, metadataTask, telemetryTask);
        });
    recordingStopTask_ = stopTask;
    co_await stopTask;
    if (recordingStopTask_ == stopTask) recordingStopTask_.reset();
}

QCoro::Task<void> RecordingCoordinator::runStopTask(RecordingCapturer& capturer,
                                                    std::optional<StartJob> startTask,
                                                    std::optional<MetadataJob> metadataTask,
                                                    std::optional<TelemetryJob> telemetryTask) {
    // A stop during a start waits until the start has ended, in success or failure.
    if (startTask) co_await *startTask;
    std::optional<RecordingMetadata> metadata;
    if (metadataTask) metadata = co_await *metadataTask;
    RecordingTelemetry telemetry;
    if (telemetryTask) telemetry = co_await *telemetryTask;
    // The APM samples end here on purpose: a finished session document never carries them.
    // A named task: GCC 12 may destroy non-trivial temporaries of a co_await expression twice.
    QCoro::Task<void> finishing = capturer.finishCapture(std::move(metadata), std::move(telemetry.events),
                                                         std::move(telemetry.scoreboard));
    co_await finishing;
}

QCoro::Task<void> RecordingCoordinator::prepareForTermination() {
    if (isShuttingDown_) co_return;
    isShuttingDown_ = true;
    if (permissionMonitorTask_) {
        permissionMonitorTask_->cancel();
        permissionMonitorTask_.reset();
    }
    if (!isRecording_ && !recordingStopTask_) co_return;
    isRecording_ = false;
    logCaptureInfo(QStringLiteral("Kestrum is quitting. Finalizing the active recording..."));
    co_await stopRecording();
}

bool RecordingCoordinator::isProcessRunning(qint32 processID) const {
    const std::vector<RunningApplication> applications = workspace_.runningApplications();
    return std::any_of(applications.begin(), applications.end(), [processID](const auto& application) {
        return application.processIdentifier == processID;
    });
}

void RecordingCoordinator::setCurrentStatus(RecordingStatus status) {
    if (currentStatus_ == status) return;
    currentStatus_ = status;
    emit currentStatusChanged(status);
}

}  // namespace kestrum

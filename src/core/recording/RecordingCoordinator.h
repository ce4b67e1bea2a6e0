#pragma once

#include "base/async/Clock.h"
#include "base/async/Job.h"
#include "base/common/ReferenceDate.h"
#include "core/recording/RecordingCapturer.h"
#include "core/recording/RecordingLiveClient.h"
#include "core/recording/RecordingStatus.h"
#include "core/recording/RecordingStorageBudgetSource.h"
#include "core/telemetry/RecordingMetadata.h"
#include "core/telemetry/RecordingTelemetry.h"
#include "platform/ports/ScreenCaptureAccess.h"
#include "platform/ports/Workspace.h"

#include <QCoroTask>
#include <QObject>
#include <QSet>
#include <QString>

#include <chrono>
#include <optional>
#include <vector>

namespace kestrum {

// Decides from what is true now (screen capture access, the storage budget, which processes run) what
// the status is and whether a recording starts or stops. There is no transition table: every event ends
// in the one decision step, refreshRecordingState, so a missed notice costs at most one period.
//
// Threads: confined to the main thread, so its fields need no lock. Every co_await is a point where
// another refresh may enter; the flags isStartingRecording and isRecording keep that to one start, and
// every stop joins the one stop job. The collaborators must outlive the coordinator, and the
// coordinator must outlive every refresh, stop and quit it has begun (the application keeps one for the
// whole process); its observers, periodic loop and retry hold it weakly.
class RecordingCoordinator : public QObject {
    Q_OBJECT
    Q_PROPERTY(kestrum::RecordingStatus currentStatus READ currentStatus NOTIFY currentStatusChanged)

  public:
    static constexpr Clock::Duration kRefreshPeriod = std::chrono::seconds(5);
    static constexpr Clock::Duration kStartRetryDelay = std::chrono::seconds(2);
    static constexpr int kMetadataAttempts = 15;
    static constexpr Clock::Duration kMetadataDelay = std::chrono::seconds(1);

    // Reads the access state, installs the three workspace observers, queues the first refresh and
    // starts the periodic refresh on `clock`.
    RecordingCoordinator(Workspace& workspace, ScreenCaptureAccess& screenCaptureAccess,
                         RecordingCapturer& capturer, RecordingLiveClient& liveClient,
                         const RecordingStorageBudgetSource& storage, Clock& clock,
                         QObject* parent = nullptr);
    // Cancels the periodic refresh and removes the observers; jobs already running go on by themselves.
    ~RecordingCoordinator() override;

    RecordingStatus currentStatus() const { return currentStatus_; }

    // The one decision step. Never fails; may be entered again while an earlier call is suspended.
    QCoro::Task<void> refreshRecordingState();
    // Stops the recording and waits until its movie is finalised and saved. Joins a stop that runs.
    QCoro::Task<void> stopRecording();
    // Called once at quit: no refresh runs any more, and an active recording is finalised first.
    QCoro::Task<void> prepareForTermination();

    // The decision state, for the interface's diagnostics and for tests. Main thread.
    bool isRecording() const { return isRecording_; }
    bool isStartingRecording() const { return isStartingRecording_; }
    bool isShuttingDown() const { return isShuttingDown_; }
    bool isStopping() const { return recordingStopTask_.has_value(); }
    std::optional<qint32> classifiedGameProcessID() const { return classifiedGameProcessID_; }
    bool currentGameIsReplay() const { return currentGameIsReplay_; }
    bool lastKnownScreenRecordingAccess() const { return lastKnownScreenRecordingAccess_; }

  signals:
    void currentStatusChanged(kestrum::RecordingStatus status);

  private:
    using StartJob = Job<std::optional<ReferenceDate>>;
    using MetadataJob = Job<std::optional<RecordingMetadata>>;
    using TelemetryJob = Job<RecordingTelemetry>;

    // What one look at the running applications found.
    struct RunningGameSearch {
        bool clientRunning = false;
        std::optional<qint32> gameProcessID;
    };

    void startWorkspaceObservers();
    void startPermissionMonitor();
    // Queues a refresh as a task of its own on the main thread's event loop.
    void startRefreshTask();

    // The steps of refreshRecordingState, in order.
    QCoro::Task<bool> stopWhenScreenRecordingAccessIsMissing();
    QCoro::Task<bool> isStorageBudgetUsedUp();
    RunningGameSearch findRunningGame() const;
    QCoro::Task<void> settleWithoutGame(bool clientRunning);
    QCoro::Task<bool> classifyGameProcessIfNew(qint32 processID);
    QCoro::Task<void> settleReplayGame();
    QCoro::Task<bool> passStartStorageCheck(qint32 processID);
    QCoro::Task<void> startRecording();
    void scheduleStartRetry();
    void startMetadataAndTelemetry(ReferenceDate startDate);

    bool isProcessRunning(qint32 processID) const;
    void setCurrentStatus(RecordingStatus status);

    // The body of the stop job: waits for the start, gathers what the side jobs hold and finishes the
    // capture. Touches no field of the coordinator.
    static QCoro::Task<void> runStopTask(RecordingCapturer& capturer, std::optional<StartJob> startTask,
                                         std::optional<MetadataJob> metadataTask,
                                         std::optional<TelemetryJob> telemetryTask);

    Workspace& workspace_;
    ScreenCaptureAccess& screenCaptureAccess_;
    RecordingCapturer& capturer_;
    RecordingLiveClient& liveClient_;
    const RecordingStorageBudgetSource& storage_;
    Clock& clock_;

    // All fields below belong to the main thread.
    RecordingStatus currentStatus_ = RecordingStatus::idle;
    const QSet<QString> monitoredBundleIdentifiers_;
    std::vector<WorkspaceSubscription> observers_;  // launch, terminate, activate
    // A recording is meant to run: set before its start job exists, cleared before its stop is awaited.
    bool isRecording_ = false;
    // The start's second storage check is under way; keeps a refresh that enters meanwhile from starting.
    bool isStartingRecording_ = false;
    std::optional<StartJob> recordingStartTask_;
    std::optional<Job<void>> recordingStopTask_;
    std::optional<MetadataJob> recordingMetadataTask_;
    std::optional<TelemetryJob> recordingTelemetryTask_;
    std::optional<Job<void>> permissionMonitorTask_;
    // The game process that has been, or is being, classified; and the outcome for it.
    std::optional<qint32> classifiedGameProcessID_;
    bool currentGameIsReplay_ = false;
    // Written at creation and at every refresh; nothing decides on it.
    bool lastKnownScreenRecordingAccess_ = false;
    bool isShuttingDown_ = false;
};

}  // namespace kestrum

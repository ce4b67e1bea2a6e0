#pragma once

#include "app/CaptureSystemLogInstallation.h"
#include "app/PlatformServices.h"
#include "base/async/Job.h"
#include "core/capture/GameCapturer.h"
#include "core/recording/RecordingCoordinator.h"
#include "core/recording/RecordingFolderStore.h"
#include "core/recording/RecordingPermissions.h"
#include "core/recording/RecordingRecovery.h"
#include "core/recording/RecordingSavePath.h"
#include "core/recording/RecordingStorageBudgetSource.h"
#include "core/shell/SessionEndInhibitingCapturer.h"
#include "core/telemetry/live/LeagueLiveClient.h"

#include <QCoroTask>

#include <memory>

namespace kestrum {

// The recording side of the application, composed once: the folder store, the permissions, the live
// client, the capturer and the coordinator, on the platform's adapters, and the recovery of what a crash
// left unfinished, which starts with it. Process-wide; main thread.
// Members are declared in the order they depend on each other, so they are destroyed in reverse; the
// system log's sink comes before everything that may log.
class RecordingSide {
  public:
    explicit RecordingSide(PlatformServices services);
    ~RecordingSide();
    RecordingSide(const RecordingSide&) = delete;
    RecordingSide& operator=(const RecordingSide&) = delete;

    RecordingCoordinator& coordinator() { return *coordinator_; }
    RecordingFolderStore& folderStore() { return folderStore_; }
    RecordingPermissions& permissions() { return permissions_; }
    RecordingStorageBudgetSource& storageBudget() { return storageBudget_; }
    PlatformServices& services() { return services_; }

    // Finalises and saves an active recording, and lets a running recovery end; the application quits
    // only after both.
    QCoro::Task<void> prepareForTermination();
    // The recovery started at construction; it yields how many orphans it found.
    const Job<int>& recovery() const { return *recoveryTask_; }

  private:
    PlatformServices services_;
    CaptureSystemLogInstallation systemLog_;
    RecordingFolderStore folderStore_;
    RecordingPermissions permissions_;
    RecordingStorageBudgetSource storageBudget_;
    RecordingSavePath savePath_;
    LeagueLiveClient liveClient_;
    GameCapturer capturer_;
    // The coordinator's capture pipeline: the capturer, with the system's shutdown held off while a
    // recording runs and until its movie is saved.
    SessionEndInhibitingCapturer sessionEndGuard_;
    RecordingRecovery recovery_;
    std::unique_ptr<RecordingCoordinator> coordinator_;
    std::optional<Job<int>> recoveryTask_;
};

}  // namespace kestrum

#pragma once

#include "GatedStorageMeasure.h"
#include "RecordingTestSupport.h"
#include "ScriptedRecordingCapturer.h"
#include "ScriptedRecordingLiveClient.h"
#include "base/async/ManualClock.h"
#include "core/recording/RecordingCoordinator.h"
#include "core/recording/RecordingFolderStore.h"
#include "core/recording/RecordingStorageBudgetSource.h"
#include "core/settings/UserDefaults.h"
#include "platform/fake/FakeFolderPicker.h"
#include "platform/fake/FakeScreenCaptureAccess.h"
#include "platform/fake/FakeWorkspace.h"
#include "support/CapturedLog.h"

#include <QTemporaryDir>

#include <memory>

namespace kestrum::test {

// One coordinator with every collaborator faked except the folder store and the defaults, which are
// real and live in a private temporary folder. The capture log file is emptied at creation, so that
// captureLogLines() holds what this rig's coordinator wrote. Time moves only through `clock`.
class CoordinatorRig {
  public:
    static constexpr qint32 kGamePid = 4242;
    // How the storage check measures the folder: through `measure`, or by walking the real folder.
    enum class Storage { gated, realFolderWalk };

    // Builds the coordinator and waits until its first refresh (queued at creation) has run. The first
    // refresh is made to end at the access check, so that it never overlaps a test's own steps.
    explicit CoordinatorRig(Storage storageKind = Storage::gated);
    ~CoordinatorRig();

    // Runs one refresh to its end.
    void refresh();
    // Starts a refresh (a quit) as a job of its own, to be left suspended while the test does something else.
    Job<void> startRefresh();
    Job<void> startQuit();
    // Runs a job to its end, processing events meanwhile; false when it does not end within 10 s.
    static bool finish(const Job<void>& job);

    // A live game with process id `pid`, started as a recording by one refresh.
    void startLiveRecording(qint32 pid = kGamePid);

    static RunningApplication game(qint32 pid = kGamePid);
    static RunningApplication leagueClient();
    static RunningApplication launcher();

    CapturedLog log;
    ManualClock clock;
    FakeWorkspace workspace;
    FakeScreenCaptureAccess access{true};
    ScriptedRecordingCapturer capturer;
    ScriptedRecordingLiveClient liveClient{clock};
    GatedStorageMeasure measure;
    QTemporaryDir home;
    UserDefaults defaults;
    FakeFolderPicker picker;
    RecordingFolderStore folderStore;
    RecordingStorageBudgetSource storage;
    std::unique_ptr<RecordingCoordinator> coordinator;
};

}  // namespace kestrum::test

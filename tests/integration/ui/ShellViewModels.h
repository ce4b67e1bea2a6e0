#pragma once

#include "base/async/ManualClock.h"
#include "core/notifications/NotificationCenter.h"
#include "core/recording/RecordingFolderStore.h"
#include "core/recording/RecordingPermissions.h"
#include "core/recording/RecordingStorageBudgetSource.h"
#include "core/settings/UserDefaults.h"
#include "core/shell/AppWindowPresenter.h"
#include "core/shell/MenuBarModel.h"
#include "core/shell/SettingsModel.h"
#include "core/shell/StorageUsageRefresh.h"
#include "platform/fake/FakeApplicationWindows.h"
#include "platform/fake/FakeAutostartEntry.h"
#include "platform/fake/FakeFileActions.h"
#include "platform/fake/FakeFolderPicker.h"
#include "platform/fake/FakeMicrophoneAccess.h"
#include "platform/fake/FakeScreenCaptureAccess.h"
#include "platform/fake/FakeSettingsOpener.h"

#include <QTemporaryDir>
#include <QVariantMap>

#include <atomic>
#include <memory>
#include <mutex>

namespace kestrum::test {

// The tray panel's and the settings window's models over fakes and a private settings file, as the
// application composes them: a recorder that is ready, screen capture allowed, no microphone, a storage
// measure that answers `usage` (settable at any time; read on the utility pool), our windows faked with
// the panel among them. The commands count their calls. Main thread.
class ShellViewModels {
    // First, so that the measure below can share it when it is made.
    struct MeasuredUsage {
        std::mutex mutex;
        RecordingStorageUsage usage;
    };
    std::shared_ptr<MeasuredUsage> measured_ = std::make_shared<MeasuredUsage>();

  public:
    ShellViewModels();
    ~ShellViewModels();

    // The required properties that the QML file named `fileName` ("MenuBarView.qml") needs; empty for a
    // file that needs none or is not the shell's.
    QVariantMap propertiesFor(const QString& fileName);

    void setUsage(const RecordingStorageUsage& usage);

    QTemporaryDir directory;
    UserDefaults defaults;
    FakeFolderPicker picker;
    RecordingFolderStore folderStore;
    FakeScreenCaptureAccess screen{true};
    FakeMicrophoneAccess microphone{MicrophoneAccess::Status::denied};
    FakeSettingsOpener opener;
    RecordingPermissions permissions;
    RecordingStorageBudgetSource storageBudget;
    NotificationCenter notifications;
    FakeApplicationWindows windows;
    FakeFileActions fileActions;
    FakeAutostartEntry autostart;
    ManualClock clock;
    AppWindowPresenter presenter{windows};
    StorageUsageRefresh panelStorage;
    int dashboardShows = 0;
    int settingsOpenings = 0;
    int quits = 0;
    MenuBarModel menuBar;
    SettingsModel settings;
};

}  // namespace kestrum::test

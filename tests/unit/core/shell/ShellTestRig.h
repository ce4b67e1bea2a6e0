#pragma once

#include "ScriptedStorageMeasure.h"
#include "core/notifications/NotificationCenter.h"
#include "core/recording/RecordingFolderStore.h"
#include "core/recording/RecordingPermissions.h"
#include "core/recording/RecordingStorageBudgetSource.h"
#include "core/settings/UserDefaults.h"
#include "core/shell/PermissionTexts.h"
#include "platform/fake/FakeApplicationWindows.h"
#include "platform/fake/FakeFolderPicker.h"
#include "platform/fake/FakeMicrophoneAccess.h"
#include "platform/fake/FakeScreenCaptureAccess.h"
#include "platform/fake/FakeSettingsOpener.h"
#include "support/QtPrinters.h"

#include <QTemporaryDir>

namespace kestrum::test {

// What the shell's models stand on, all fakes over a private settings file: the store, the folder, the
// permissions on Linux texts, the storage measure and our windows. Main thread.
struct ShellTestRig {
    QTemporaryDir directory;
    UserDefaults defaults{directory.path() + QStringLiteral("/defaults.json")};
    FakeFolderPicker picker;
    RecordingFolderStore folderStore{defaults, picker};
    FakeScreenCaptureAccess screen{true};
    FakeMicrophoneAccess microphone{MicrophoneAccess::Status::denied};
    FakeSettingsOpener opener;
    RecordingPermissions permissions{screen, microphone, opener, linuxPermissionTexts().settingsErrorText};
    ScriptedStorageMeasure measure;
    RecordingStorageBudgetSource storageBudget{folderStore, defaults, measure.measure()};
    NotificationCenter notifications;
    FakeApplicationWindows windows;

    ShellTestRig() { opener.setSucceeds(false); }
};

// A storage measure's record, in decimal gigabytes.
inline RecordingStorageUsage usageGB(double usedGB, double maximumGB, bool isUnlimited = false,
                                     double warningFraction = 0.8) {
    return {static_cast<qint64>(usedGB * 1e9), static_cast<qint64>(maximumGB * 1e9), warningFraction,
            isUnlimited};
}

}  // namespace kestrum::test

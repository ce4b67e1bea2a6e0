#include "ShellTestRig.h"
#include "core/notifications/RecordingNotifications.h"
#include "core/settings/SettingsKeys.h"
#include "core/shell/StorageUsageRefresh.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QSignalSpy>

namespace kestrum::test {
namespace {

struct RefreshRig : ShellTestRig {
    StorageUsageRefresh refresh{storageBudget, defaults, folderStore, notifications};
    QSignalSpy changes{&refresh, &StorageUsageRefresh::storageUsageChanged};
};

// Two refreshes at once: the first measures the old folder, the second (started by the change of folder)
// the new one; both measures are held until both refreshes have begun. Whichever comes back first, only
// the later refresh's result may stand.
TEST(StorageUsageRefresh, TwoRefreshesAtOnceKeepOnlyTheLaterResult) {
    for (const bool laterFinishesFirst : {true, false}) {
        SCOPED_TRACE(laterFinishesFirst ? "the later one finishes first" : "the earlier one finishes first");
        RefreshRig rig;
        const QString oldFolder = rig.folderStore.folderPath();
        const QString newFolder = rig.directory.path() + QStringLiteral("/Recordings");
        ASSERT_TRUE(QDir().mkpath(newFolder));
        rig.measure.setUsage(oldFolder, usageGB(10, 100));
        rig.measure.setUsage(newFolder, usageGB(90, 100));
        rig.measure.holdFolder(oldFolder);
        rig.measure.holdFolder(newFolder);
        rig.refresh.refresh();
        const QUuid first = rig.refresh.storageRefreshID();
        rig.folderStore.takeFolder(newFolder);
        EXPECT_NE(rig.refresh.storageRefreshID(), first);
        ASSERT_TRUE(waitUntil([&] { return rig.measure.callCount() == 2; }));

        rig.measure.releaseFolder(laterFinishesFirst ? newFolder : oldFolder);
        processEventsFor(50);
        EXPECT_EQ(rig.changes.count(), laterFinishesFirst ? 1 : 0) << "the earlier result is dropped";
        rig.measure.releaseAll();
        ASSERT_TRUE(waitUntil([&] { return rig.changes.count() == 1; }));
        processEventsFor(50);
        EXPECT_EQ(rig.changes.count(), 1);
        EXPECT_EQ(rig.refresh.storageUsage(), usageGB(90, 100));
    }
}

TEST(StorageUsageRefresh, RefreshesOnTheStorageSettingsTheFolderAndASavedRecordingOnceStarted) {
    struct Case {
        const char* name;
        std::function<void(RefreshRig& rig, int round)> change;
        bool refreshes;
    };
    const std::vector<Case> cases = {
        {"the maximum",
         [](RefreshRig& rig, int round) {
             rig.defaults.setDouble(40 + round, SettingsKeys::recordingStorageMaximumGigabytes);
         },
         true},
        {"the limit switch",
         [](RefreshRig& rig, int round) {
             rig.defaults.setBool(round % 2 == 0, SettingsKeys::recordingStorageLimitEnabled);
         },
         true},
        {"the warning",
         [](RefreshRig& rig, int round) {
             rig.defaults.setDouble(60 + round, SettingsKeys::recordingStorageWarningPercentage);
         },
         true},
        {"another key",
         [](RefreshRig& rig, int round) {
             rig.defaults.setBool(round % 2 == 0, SettingsKeys::recordMicrophone);
         },
         false},
        {"the folder",
         [](RefreshRig& rig, int round) {
             const QString folder = rig.directory.path() + QStringLiteral("/folder%1").arg(round);
             QDir().mkpath(folder);  // only an existing folder is taken
             rig.folderStore.takeFolder(folder);
         },
         true},
        {"a saved recording",
         [](RefreshRig& rig, int) { rig.notifications.post(RecordingNotifications::recordingSaved, {}); },
         true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        RefreshRig rig;
        c.change(rig, 1);
        processEventsFor(20);
        EXPECT_EQ(rig.measure.callCount(), 0) << "nothing is measured before the first refresh";
        rig.refresh.refresh();
        ASSERT_TRUE(waitUntil([&] { return rig.changes.count() == 1; }));
        c.change(rig, 2);
        if (c.refreshes) {
            EXPECT_TRUE(waitUntil([&] { return rig.changes.count() == 2; }));
        } else {
            processEventsFor(50);
            EXPECT_EQ(rig.changes.count(), 1);
        }
        EXPECT_EQ(rig.measure.callCount(), c.refreshes ? 2 : 1);
    }
}

}  // namespace
}  // namespace kestrum::test

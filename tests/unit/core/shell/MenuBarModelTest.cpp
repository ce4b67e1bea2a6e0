#include "ShellTestRig.h"
#include "core/shell/MenuBarModel.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

namespace kestrum::test {
namespace {

struct MenuBarRig : ShellTestRig {
    StorageUsageRefresh storage{storageBudget, defaults, folderStore, notifications};
    AppWindowPresenter presenter{windows};
    int dashboardShows = 0;
    int settingsOpenings = 0;
    int quits = 0;
    ApplicationWindowID panel =
        windows.addWindow(QStringLiteral("Kestrum"), QStringLiteral("menubar"), true, true);
    ApplicationWindowID settingsWindow =
        windows.addWindow(QStringLiteral("Kestrum Settings"), QStringLiteral("settings"), false);
    MenuBarModel model{RecordingStatus::idle,
                       permissions,
                       storage,
                       windows,
                       presenter,
                       {[this] { ++dashboardShows; },
                        [this] {
                            ++settingsOpenings;
                            windows.setVisible(settingsWindow, true);
                        },
                        [this] { ++quits; }}};
};

TEST(MenuBarModel, TheStatusShowsItsWordMarkAndPermissionLine) {
    struct Case {
        RecordingStatus status;
        QString word;
        QString image;
        bool symbol;
        bool permissionLine;
    };
    const std::vector<Case> cases = {
        {RecordingStatus::idle, QStringLiteral("Idle"), QStringLiteral("MenuBarIdle"), false, false},
        {RecordingStatus::recording, QStringLiteral("Recording"), QStringLiteral("MenuBarRecording"), false,
         false},
        {RecordingStatus::permissionRequired, QStringLiteral("Action Required"),
         QStringLiteral("exclamationmark.triangle.fill"), true, true},
        {RecordingStatus::storageLimitReached, QStringLiteral("Storage Limit"),
         QStringLiteral("exclamationmark.triangle.fill"), true, false},
        {RecordingStatus::ready, QStringLiteral("Ready"), QStringLiteral("MenuBarReady"), false, false},
    };
    MenuBarRig rig;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.word.toStdString());
        rig.model.setStatus(c.status);
        EXPECT_EQ(rig.model.statusWord(), c.word);
        EXPECT_EQ(rig.model.statusImageName(), c.image);
        EXPECT_EQ(rig.model.statusImageIsSystemSymbol(), c.symbol);
        EXPECT_EQ(rig.model.showsPermissionLine(), c.permissionLine);
    }
    EXPECT_EQ(rig.model.permissionLine(), QStringLiteral("Open Settings to allow Screen Recording access."));
}

TEST(MenuBarModel, TheStorageWarningAppearsWhenMeasuredAndWarnsAtTheLimit) {
    struct Case {
        const char* name;
        RecordingStorageUsage usage;
        QString warning;
    };
    const std::vector<Case> cases = {
        {"used equals maximum", usageGB(100, 100),
         QStringLiteral("Storage limit reached — clear space to record")},
        {"budget off and a full drive", usageGB(300, 300, true),
         QStringLiteral("Drive full — clear space to record")},
        {"over the warning", usageGB(81, 100), QStringLiteral("Storage 81% full")},
        {"plenty of room", usageGB(10, 100), QString()},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        MenuBarRig rig;
        rig.measure.setDefaultUsage(c.usage);
        EXPECT_FALSE(rig.model.showsStorageWarning()) << "nothing before the first measure";
        rig.model.appeared();
        rig.model.appeared();
        ASSERT_TRUE(waitUntil([&] { return rig.storage.storageUsage().has_value(); }));
        EXPECT_EQ(rig.measure.callCount(), 1) << "only the first appearance measures";
        EXPECT_EQ(rig.model.storageWarning(), c.warning);
        EXPECT_EQ(rig.model.showsStorageWarning(), !c.warning.isEmpty());
    }
}

TEST(MenuBarModel, AWindowGainingTheFocusReadsThePermissionsAndLooksForTheShareWindow) {
    MenuBarRig rig;
    const ApplicationWindowID shareWindow =
        rig.windows.addWindow(QStringLiteral("Kestrum Share"), QStringLiteral("league-share"), false);
    EXPECT_EQ(rig.model.shareNote(), QStringLiteral("Kestrum Share is not part of this version yet."));
    EXPECT_FALSE(rig.model.isLeagueShareAvailable());

    rig.screen.setGranted(false);
    rig.windows.setVisible(shareWindow, true);
    EXPECT_FALSE(rig.model.isShareWindowVisible()) << "nothing is read until a notice";
    rig.windows.setKeyWindow(rig.panel);
    EXPECT_TRUE(rig.model.isShareWindowVisible());
    EXPECT_EQ(rig.model.shareNote(),
              QStringLiteral("Screen Recording permission is required for Kestrum Share"));

    rig.windows.close(shareWindow);
    QCoreApplication::processEvents();
    EXPECT_FALSE(rig.model.isShareWindowVisible()) << "looked for again once the closing window is gone";
}

TEST(MenuBarModel, CommandsReachTheirTargetsAndSettingsComesToTheFront) {
    MenuBarRig rig;
    rig.windows.setKeyWindow(rig.panel);
    rig.model.openSettings();
    QCoreApplication::processEvents();
    EXPECT_EQ(rig.settingsOpenings, 1);
    ASSERT_EQ(rig.windows.frontRequests().size(), 2u) << "once at once, once after the panel's turn";
    EXPECT_EQ(rig.windows.frontRequests()[0].first, rig.settingsWindow);
    EXPECT_TRUE(rig.windows.policyRequests().empty()) << "opening the settings changes no policy";

    rig.model.openDashboard();
    rig.model.quit();
    EXPECT_EQ(rig.dashboardShows, 1);
    EXPECT_EQ(rig.quits, 1);
}

}  // namespace
}  // namespace kestrum::test

#include "../share/ShareRig.h"
#include "ShellTestRig.h"
#include "core/shell/MenuBarModel.h"
#include "core/shell/MenuBarShareControls.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

namespace kestrum::test {
namespace {

TEST(MenuBarShareControls, table) {
    const QString start = QStringLiteral("Start Kestrum Share");
    const QString stop = QStringLiteral("Stop Kestrum Share");
    const QString help = QStringLiteral("Open a League-only window for Discord or OBS");
    const QString permission = QStringLiteral("Screen Recording permission is required for Kestrum Share");
    const QString notHere = QStringLiteral("Kestrum Share is not part of this version yet.");
    const QString pause = QStringLiteral("Pause Kestrum Share");
    const QString resume = QStringLiteral("Resume Kestrum Share");
    struct Row {
        const char* name;
        MenuBarShareState state;
        MenuBarShareControls controls;
    };
    const Row rows[] = {
        {"no League Share",
         {false, true, false, false, {}},
         {false, start, help, false, {}, {}, false, {}, {}, notHere}},
        {"no permission",
         {true, false, false, false, {}},
         {false, start, help, false, {}, {}, false, {}, {}, permission}},
        {"ready", {true, true, false, false, {}}, {true, start, help, false, {}, {}, false, {}, {}, {}}},
        {"sharing",
         {true, true, true, true, LeagueShareStatus::sharingGame()},
         {true,
          stop,
          {},
          true,
          pause,
          QStringLiteral("pause.fill"),
          true,
          QStringLiteral("League of Legends"),
          QStringLiteral("dot.radiowaves.left.and.right"),
          {}}},
        {"paused, window shown",
         {true, true, false, true, LeagueShareStatus::stopped()},
         {true,
          stop,
          {},
          true,
          resume,
          QStringLiteral("play.fill"),
          true,
          QStringLiteral("Sharing paused"),
          {},
          {}}},
        {"access lost while shown",
         {true, false, false, true, LeagueShareStatus::permissionRequired()},
         {true,
          stop,
          {},
          true,
          resume,
          QStringLiteral("play.fill"),
          true,
          QStringLiteral("Screen Recording permission required"),
          QStringLiteral("lock.shield"),
          permission}},
    };
    for (const Row& row : rows) EXPECT_EQ(menuBarShareControls(row.state), row.controls) << row.name;
}

// The panel with a live League Share on fakes, and a share window that the commands show and hide.
struct MenuBarShareRig : ShellTestRig {
    StorageUsageRefresh storage{storageBudget, defaults, folderStore, notifications};
    AppWindowPresenter presenter{windows};
    MenuBarModel model{RecordingStatus::idle, permissions, storage, windows, presenter, {{}, {}, {}}};
    ApplicationWindowID shareWindow =
        windows.addWindow(QStringLiteral("Kestrum Share"), QStringLiteral("league-share"), false);
    ShareRig share;
    LeagueShareCoordinator& coordinator = *share.coordinator;

    MenuBarShareRig() {
        model.attachLeagueShare(coordinator, {[this] { windows.setVisible(shareWindow, true); },
                                              [this] { windows.setVisible(shareWindow, false); }});
    }
    void settle() {
        for (int turn = 0; turn < 5; ++turn) QCoreApplication::processEvents();
    }
};

TEST(MenuBarShare, startPauseResumeAndStopDriveTheShareAndItsWindow) {
    MenuBarShareRig rig;
    EXPECT_TRUE(rig.model.isLeagueShareAvailable());
    EXPECT_EQ(rig.model.shareNote(), QString());

    rig.model.toggleShare();
    EXPECT_TRUE(rig.coordinator.isRunning());
    EXPECT_TRUE(rig.model.isShareWindowVisible());
    EXPECT_EQ(rig.model.startShareTitle(), QStringLiteral("Stop Kestrum Share"));
    EXPECT_EQ(rig.model.shareStatusTitle(), QStringLiteral("Waiting for League"));

    rig.model.togglePauseShare();
    rig.settle();
    EXPECT_FALSE(rig.coordinator.isRunning());
    EXPECT_TRUE(rig.model.isShareWindowVisible()) << "a pause keeps the window";
    EXPECT_EQ(rig.model.pauseShareTitle(), QStringLiteral("Resume Kestrum Share"));
    EXPECT_EQ(rig.model.shareStatusTitle(), QStringLiteral("Sharing paused"));

    rig.model.togglePauseShare();
    rig.settle();
    EXPECT_TRUE(rig.coordinator.isRunning());

    rig.model.toggleShare();
    rig.settle();
    EXPECT_FALSE(rig.coordinator.isRunning());
    EXPECT_FALSE(rig.model.isShareWindowVisible());
    EXPECT_EQ(rig.model.startShareTitle(), QStringLiteral("Start Kestrum Share"));
    EXPECT_FALSE(rig.model.showsShareStatus());
}

}  // namespace
}  // namespace kestrum::test

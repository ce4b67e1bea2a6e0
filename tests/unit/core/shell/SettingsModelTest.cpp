#include "ShellTestRig.h"
#include "base/async/ManualClock.h"
#include "core/settings/SettingsKeys.h"
#include "core/settings/SettingsReaders.h"
#include "core/shell/BuildVersion.h"
#include "core/shell/SettingsModel.h"
#include "platform/fake/FakeAutostartEntry.h"
#include "platform/fake/FakeFileActions.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QSignalSpy>

#include <chrono>

namespace kestrum::test {
namespace {

using namespace std::chrono_literals;

struct SettingsRig : ShellTestRig {
    explicit SettingsRig(QString version = QStringLiteral("0.1.0")) : version(std::move(version)) {}

    FakeFileActions fileActions;
    FakeAutostartEntry autostart;
    ManualClock clock;
    QString version;
    SettingsModel model{{defaults, folderStore, permissions, storageBudget, notifications, fileActions,
                         autostart, clock, linuxPermissionTexts(), version}};
};

TEST(SettingsModel, CommittingTheStorageFieldsClampsIntoTheirRanges) {
    struct Case {
        const char* field;
        QString typed;
        double stored;
        QString shown;
    };
    const std::vector<Case> cases = {
        {"Maximum", QStringLiteral("5"), 10, QStringLiteral("10")},
        {"Maximum", QStringLiteral("5000"), 2000, QStringLiteral("2000")},
        {"Maximum", QStringLiteral(" 250 "), 250, QStringLiteral("250")},
        {"Maximum", QStringLiteral("12.5"), 12.5, QStringLiteral("12.5")},
        {"Maximum", QStringLiteral("-3"), 10, QStringLiteral("10")},
        {"Warn at", QStringLiteral("40"), 50, QStringLiteral("50")},
        {"Warn at", QStringLiteral("99"), 95, QStringLiteral("95")},
        {"Warn at", QStringLiteral("70"), 70, QStringLiteral("70")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.field) + " " + c.typed.toStdString());
        SettingsRig rig;
        StorageLimitField* field = QString::fromLatin1(c.field) == QStringLiteral("Maximum")
                                       ? rig.model.storage()->maximum()
                                       : rig.model.storage()->warningPercentage();
        EXPECT_EQ(field->title(), QString::fromLatin1(c.field));
        field->commit(c.typed);
        const QString key = field == rig.model.storage()->maximum()
                                ? SettingsKeys::recordingStorageMaximumGigabytes
                                : SettingsKeys::recordingStorageWarningPercentage;
        EXPECT_EQ(rig.defaults.doubleForKey(key), c.stored);
        EXPECT_EQ(field->text(), c.shown);
    }
}

TEST(SettingsModel, TextThatIsNoNumberAndTheStepperNeverLeaveTheRange) {
    SettingsRig rig;
    StorageLimitField* maximum = rig.model.storage()->maximum();
    EXPECT_EQ(maximum->text(), QStringLiteral("100")) << "the default while unset";
    QSignalSpy changes(maximum, &StorageLimitField::changed);
    maximum->commit(QStringLiteral("lots"));
    EXPECT_FALSE(rig.defaults.objectForKey(SettingsKeys::recordingStorageMaximumGigabytes).has_value());
    EXPECT_GE(changes.count(), 1) << "the field is told to show the stored value again";

    const std::vector<std::pair<double, double>> stepUps = {{1995, 2000}, {2000, 2000}, {3, 10}};
    for (const auto& [start, expected] : stepUps) {
        rig.defaults.setDouble(start, SettingsKeys::recordingStorageMaximumGigabytes);
        maximum->stepUp();
        EXPECT_EQ(maximum->value(), expected) << start;
    }
    StorageLimitField* warning = rig.model.storage()->warningPercentage();
    const std::vector<std::pair<double, double>> stepDowns = {{55, 50}, {50, 50}, {97, 92}};
    for (const auto& [start, expected] : stepDowns) {
        rig.defaults.setDouble(start, SettingsKeys::recordingStorageWarningPercentage);
        warning->stepDown();
        EXPECT_EQ(warning->value(), expected) << start;
    }
    EXPECT_EQ(maximum->unit(), QStringLiteral("GB"));
    EXPECT_EQ(maximum->stepperLabel(), QStringLiteral("Maximum storage"));
    EXPECT_EQ(warning->unit(), QStringLiteral("%"));
    EXPECT_EQ(warning->stepperLabel(), QStringLiteral("Warning percentage"));
}

TEST(SettingsModel, TheMaximumReadsUnlimitedWhileTheLimitIsOff) {
    SettingsRig rig;
    StorageLimitField* maximum = rig.model.storage()->maximum();
    EXPECT_TRUE(rig.model.storage()->limitEnabled()->isOn()) << "the limit applies while never written";
    rig.model.storage()->limitEnabled()->setOn(false);
    EXPECT_EQ(maximum->text(), QStringLiteral("Unlimited"));
    EXPECT_EQ(rig.model.storage()->warningPercentage()->text(), QStringLiteral("80"));
    rig.defaults.setInteger(1, SettingsKeys::recordingStorageLimitEnabled);  // a number that is a Boolean
    EXPECT_EQ(maximum->text(), QStringLiteral("100"));
}

TEST(SettingsModel, UnsetKeysReadTheirDefaultsAndUnknownValuesSelectNothing) {
    struct Case {
        const char* name;
        std::function<void(UserDefaults&)> store;
        std::function<QVariant(SettingsModel&)> read;
        QVariant expected;
    };
    const std::vector<Case> cases = {
        {"unset system audio reads on", [](UserDefaults&) {},
         [](SettingsModel& m) { return QVariant(m.recordSystemAudio()->isOn()); }, true},
        {"unset microphone reads off", [](UserDefaults&) {},
         [](SettingsModel& m) { return QVariant(m.recordMicrophone()->isOn()); }, false},
        {"unset share audio reads on", [](UserDefaults&) {},
         [](SettingsModel& m) { return QVariant(m.shareIncludesAudio()->isOn()); }, true},
        {"unset theme selects System", [](UserDefaults&) {},
         [](SettingsModel& m) { return QVariant(m.theme()->selectedIndex()); }, 0},
        {"an unknown theme selects nothing",
         [](UserDefaults& d) { d.setString(QStringLiteral("sepia"), SettingsKeys::kestrumAppearance); },
         [](SettingsModel& m) { return QVariant(m.theme()->selectedIndex()); }, -1},
        {"a share frame rate of 45 selects nothing",
         [](UserDefaults& d) { d.setInteger(45, SettingsKeys::leagueShareFrameRate); },
         [](SettingsModel& m) { return QVariant(m.shareFrameRate()->selectedIndex()); }, -1},
        {"60 stored as text selects 60 FPS",
         [](UserDefaults& d) { d.setString(QStringLiteral("60"), SettingsKeys::recordingVideoFrameRate); },
         [](SettingsModel& m) { return QVariant(m.videoFrameRate()->selectedIndex()); }, 1},
        {"unset resolution selects 720p", [](UserDefaults&) {},
         [](SettingsModel& m) { return QVariant(m.videoResolution()->selectedIndex()); }, 0},
        {"unset volume reads 1", [](UserDefaults&) {},
         [](SettingsModel& m) { return QVariant(m.microphoneVolume()->value()); }, 1.0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        SettingsRig rig;
        c.store(rig.defaults);
        SettingsModel model{{rig.defaults, rig.folderStore, rig.permissions, rig.storageBudget,
                             rig.notifications, rig.fileActions, rig.autostart, rig.clock,
                             linuxPermissionTexts(), rig.version}};
        EXPECT_EQ(c.read(model), c.expected);
    }
    SettingsRig rig;
    rig.defaults.setInteger(45, SettingsKeys::leagueShareFrameRate);
    EXPECT_EQ(readLeagueShareFrameRate(rig.defaults), VideoFrameRate::fps30) << "45 counts as 30 when read";
    EXPECT_EQ(rig.defaults.integerForKey(SettingsKeys::leagueShareFrameRate), 45)
        << "and is not written back";
}

TEST(SettingsModel, PickersAndSlidersStoreTheirKeysTyped) {
    SettingsRig rig;
    EXPECT_EQ(rig.model.shareResolution()->labels(),
              (QStringList{QStringLiteral("720p"), QStringLiteral("1080p"), QStringLiteral("1440p")}));
    EXPECT_EQ(rig.model.videoResolution()->labels(),
              (QStringList{QStringLiteral("720p"), QStringLiteral("1080p"), QStringLiteral("Native")}));
    EXPECT_EQ(rig.model.theme()->labels(),
              (QStringList{QStringLiteral("System"), QStringLiteral("Light"), QStringLiteral("Dark")}));
    rig.model.videoFrameRate()->select(1);
    EXPECT_EQ(rig.defaults.objectForKey(SettingsKeys::recordingVideoFrameRate),
              UserDefaultsValue(qint64{60}));
    rig.model.theme()->select(2);
    EXPECT_EQ(rig.defaults.objectForKey(SettingsKeys::kestrumAppearance),
              UserDefaultsValue(QStringLiteral("dark")));
    EXPECT_EQ(rig.model.theme()->selectedIndex(), 2);
    rig.model.videoResolution()->select(7);
    EXPECT_FALSE(rig.defaults.objectForKey(SettingsKeys::recordingVideoResolution).has_value());

    const std::vector<std::pair<double, double>> slides = {{0.33, 0.35}, {2.7, 2.0}, {-1, 0}, {1.024, 1.0}};
    for (const auto& [set, stored] : slides) {
        rig.model.systemAudioVolume()->setValue(set);
        EXPECT_EQ(rig.defaults.doubleForKey(SettingsKeys::systemAudioVolume), stored) << set;
        EXPECT_EQ(rig.model.systemAudioVolume()->value(), stored);
    }
}

TEST(SettingsModel, EveryOpeningScrollsToTheTopAndPollsThePermissionsUntilClosed) {
    SettingsRig rig;
    QSignalSpy scrolls(&rig.model, &SettingsModel::scrollToTopRequested);
    PermissionSettingsModel* permissions = rig.model.permissions();
    for (int opening = 1; opening <= 2; ++opening) {
        SCOPED_TRACE(opening);
        rig.screen.setGranted(true);
        rig.model.opened();
        EXPECT_EQ(scrolls.count(), opening);
        EXPECT_TRUE(permissions->isPolling());
        EXPECT_EQ(permissions->screenState(), QStringLiteral("Allowed"));
        rig.screen.setGranted(false);
        rig.clock.advance(1900ms);
        EXPECT_EQ(permissions->screenState(), QStringLiteral("Allowed")) << "not before 2 seconds";
        rig.clock.advance(100ms);
        EXPECT_EQ(permissions->screenState(), QStringLiteral("Required"));
        rig.model.closed();
        EXPECT_FALSE(permissions->isPolling());
        processEventsFor(10);
        EXPECT_EQ(rig.clock.pendingSleepCount(), 0u);
    }
}

TEST(SettingsModel, PermissionRowsSpeakLinux) {
    SettingsRig rig;
    PermissionSettingsModel* permissions = rig.model.permissions();
    struct Case {
        bool screen;
        MicrophoneAccess::Status microphone;
        QString screenState, screenNote, microphoneState, microphoneNote;
        bool request;
    };
    const QString x11 =
        QStringLiteral("Kestrum records through X11. Start it in an X11 or XWayland session.");
    const QString needed = QStringLiteral(
        "Microphone access is needed to include your voice. Recordings will continue without it.");
    const std::vector<Case> cases = {
        {true,
         MicrophoneAccess::Status::authorized,
         QStringLiteral("Allowed"),
         {},
         QStringLiteral("Allowed"),
         {},
         false},
        {false, MicrophoneAccess::Status::denied, QStringLiteral("Required"), x11, QStringLiteral("Optional"),
         needed, true},
        {true,
         MicrophoneAccess::Status::notDetermined,
         QStringLiteral("Allowed"),
         {},
         QStringLiteral("Optional"),
         needed,
         true},
    };
    for (const Case& c : cases) {
        rig.screen.setGranted(c.screen);
        rig.microphone.setStatus(c.microphone);
        rig.permissions.refresh();
        EXPECT_EQ(permissions->screenState(), c.screenState);
        EXPECT_EQ(permissions->screenNote(), c.screenNote);
        EXPECT_EQ(permissions->microphoneState(), c.microphoneState);
        EXPECT_EQ(permissions->microphoneNote(), c.microphoneNote);
        EXPECT_EQ(permissions->showsMicrophoneRequest(), c.request);
        EXPECT_FALSE(permissions->showsOpenSystemSettings());
    }
    // With no input source there is nothing to grant: the request sends the user to the desktop's sound
    // settings, which the application cannot open itself.
    rig.microphone.setStatus(MicrophoneAccess::Status::denied);
    permissions->requestMicrophoneAccess();
    processEventsFor(10);
    EXPECT_EQ(permissions->settingsError(),
              QStringLiteral("Open your desktop's sound settings to choose a microphone for Kestrum."));
    rig.screen.setGranted(false);
    permissions->requestScreenAccess();
    permissions->requestScreenAccess();
    EXPECT_EQ(permissions->screenState(), QStringLiteral("Required"))
        << "no waiting on a system that asks nothing";
    EXPECT_FALSE(permissions->showsOpenSystemSettings());
}

TEST(SettingsModel, FolderStartupAndAboutRows) {
    SettingsRig rig(QString{});
    EXPECT_EQ(rig.model.version(), QStringLiteral("—"));
    EXPECT_EQ(SettingsRig().model.version(), QStringLiteral("0.1.0"));
    EXPECT_EQ(buildVersion(), QStringLiteral(KESTRUM_TEST_PROJECT_VERSION));
    EXPECT_EQ(
        rig.model.sectionTitles(),
        (QStringList{QStringLiteral("Appearance"), QString(), QStringLiteral("Video"),
                     QStringLiteral("Share"), QStringLiteral("Video"), QStringLiteral("Recordings folder"),
                     QStringLiteral("Storage"), QStringLiteral("Startup"), QStringLiteral("About")}));

    FolderSettingsModel* folder = rig.model.folder();
    const QString defaultFolder = rig.folderStore.folderPath();
    QDir(defaultFolder).removeRecursively();
    EXPECT_EQ(folder->path(), QStringLiteral("~/Videos/Kestrum"));
    EXPECT_TRUE(folder->isUsable()) << "a folder not made yet is usable under a writable parent";
    folder->openFolder();
    EXPECT_TRUE(QDir(defaultFolder).exists()) << "a folder not made yet is made to be opened";
    EXPECT_TRUE(folder->openFolderError().isEmpty());

    const QString chosen = rig.directory.path() + QStringLiteral("/Recordings");
    QDir().mkpath(chosen);
    rig.picker.setAnswer(chosen);
    QSignalSpy folderChanges(folder, &FolderSettingsModel::changed);
    folder->chooseFolder();
    EXPECT_EQ(folder->path(), chosen);
    EXPECT_GE(folderChanges.count(), 1);
    rig.fileActions.openSucceeds = false;
    folder->openFolder();
    EXPECT_EQ(rig.fileActions.openedPaths(), (QStringList{defaultFolder, chosen}));
    EXPECT_EQ(folder->openFolderError(), QStringLiteral("No file manager opened %1.").arg(chosen));

    StartupSettingsModel* startup = rig.model.startup();
    EXPECT_FALSE(startup->opensAtLogin()) << "off by default";
    startup->setOpensAtLogin(true);
    EXPECT_TRUE(rig.autostart.isEnabled());
    rig.autostart.setFailure(QStringLiteral("The autostart folder is read-only."));
    startup->setOpensAtLogin(false);
    EXPECT_TRUE(startup->opensAtLogin()) << "a failed change leaves the switch as it was";
    EXPECT_EQ(startup->error(), QStringLiteral("The autostart folder is read-only."));
    rig.autostart.setFailure(std::nullopt);
    rig.autostart.setEnabledOutside(false);
    rig.model.opened();
    EXPECT_FALSE(startup->opensAtLogin()) << "the desktop's own change shows at the next opening";
    rig.model.closed();
    processEventsFor(10);  // the cancelled poll ends on the event loop, before its clock goes
}

}  // namespace
}  // namespace kestrum::test

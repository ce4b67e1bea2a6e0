// The tray's panel and the settings form in real windows on a real X server, over the shell's models on
// fakes: they load without a warning and show their models' texts, and what the user does through them
// (a typed storage limit, a switch, a segment, the panel's commands) reaches the stored settings and the
// commands. With KESTRUM_SCREENSHOT_DIR set, the panel and the form are written there in both appearances.
#include "QmlViewHarness.h"
#include "ShellViewModels.h"
#include "core/settings/SettingsKeys.h"
#include "core/share/LeagueShareCoordinator.h"
#include "platform/fake/FakeLeagueShareAudioRoute.h"
#include "platform/fake/FakeShareableContent.h"
#include "platform/fake/FakeWindowStream.h"
#include "platform/fake/FakeWorkspace.h"
#include "ui/style/KestrumStyle.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QQuickItem>
#include <QRegularExpression>
#include <QTest>

namespace kestrum::test {
namespace {

constexpr qint64 kGigabyte = 1'000'000'000;
const QUrl kMenuBarView(QStringLiteral("qrc:/qt/qml/Kestrum/Shell/MenuBarView.qml"));
const QUrl kSettingsView(QStringLiteral("qrc:/qt/qml/Kestrum/Shell/SettingsView.qml"));

// The texts drawn in the window now, visible ones only.
QStringList visibleTexts(const QmlViewHarness& harness) {
    QStringList texts;
    for (QQuickItem* item : harness.findItemsOfType("QQuickText")) {
        if (item->isVisible() && item->opacity() > 0) texts << item->property("text").toString();
    }
    return texts;
}

void writeScreenshot(QmlViewHarness& harness, const QString& name) {
    const QString directory = qEnvironmentVariable("KESTRUM_SCREENSHOT_DIR");
    if (directory.isEmpty()) return;
    QDir().mkpath(directory);
    const QImage picture = harness.screenshot();
    ASSERT_FALSE(picture.isNull());
    picture.save(directory + QLatin1Char('/') + name + QStringLiteral(".png"));
}

class ShellViews : public ::testing::Test {
  protected:
    void SetUp() override { KESTRUM_REQUIRE_DISPLAY(); }
    void TearDown() override { ui::KestrumStyle::instance().setDark(false); }

    QQuickItem* showPanel() {
        QQuickItem* view =
            harness_.show(kMenuBarView, models_.propertiesFor(QStringLiteral("MenuBarView.qml")), {300, 360});
        EXPECT_TRUE(view) << harness_.errors().toStdString();
        return view;
    }
    QQuickItem* showSettings() {
        QQuickItem* view = harness_.show(
            kSettingsView, models_.propertiesFor(QStringLiteral("SettingsView.qml")), {580, 760});
        EXPECT_TRUE(view) << harness_.errors().toStdString();
        if (view) models_.settings.opened();
        return view;
    }
    QQuickItem* item(const QString& objectName) {
        QQuickItem* found = harness_.findItem(objectName);
        EXPECT_TRUE(found) << objectName.toStdString();
        return found;
    }
    bool waitForText(const QString& text) {
        return QTest::qWaitFor([&] { return visibleTexts(harness_).contains(text); }, 5000);
    }
    // Scrolls the form so that `item` stands in its upper part, as the user would before using it.
    void scrollIntoView(QQuickItem& item) {
        QQuickItem* scroll = harness_.findItem(QStringLiteral("settingsScroll"));
        ASSERT_TRUE(scroll);
        auto* content = scroll->property("contentItem").value<QQuickItem*>();
        ASSERT_TRUE(content);
        const double top = item.mapToItem(content, QPointF(0, 0)).y();
        scroll->setProperty("contentY", std::max(0.0, top - 100));
        QTest::qWait(50);
    }
    // Types `text` into the number field of `rowName` as a person does: a click into it, the old text
    // selected, the new one typed, then Return.
    void typeInto(const QString& rowName, const QString& text) {
        QQuickItem* row = item(rowName);
        ASSERT_TRUE(row);
        QQuickItem* input = nullptr;
        for (QQuickItem* candidate : harness_.findItemsOfType("QQuickTextInput")) {
            if (candidate->parentItem() && candidate->parentItem()->parentItem() &&
                candidate->parentItem()->parentItem()->parentItem() == row) {
                input = candidate;
            }
        }
        ASSERT_TRUE(input) << "no text field in " << rowName.toStdString();
        scrollIntoView(*input);
        harness_.click(QmlViewHarness::centreOf(*input));
        ASSERT_TRUE(QTest::qWaitFor([&] { return input->hasActiveFocus(); }, 2000));
        QTest::keyClick(&harness_.window(), Qt::Key_A, Qt::ControlModifier);
        for (const QChar character : text) QTest::keyClick(&harness_.window(), character.toLatin1());
        QTest::keyClick(&harness_.window(), Qt::Key_Return);
    }

    ShellViewModels models_;
    QmlViewHarness harness_;
};

TEST_F(ShellViews, ThePanelShowsTheStatusWarningsAndCommands) {
    struct Case {
        const char* name;
        RecordingStatus status;
        RecordingStorageUsage usage;
        QString word;
        QString warning;  // empty: none shown
        bool permissionLine;
    };
    const std::vector<Case> cases = {
        {"ready with room",
         RecordingStatus::ready,
         {12 * kGigabyte, 100 * kGigabyte, 0.8, false},
         QStringLiteral("Ready"),
         QString(),
         false},
        {"recording past the warning",
         RecordingStatus::recording,
         {85 * kGigabyte, 100 * kGigabyte, 0.8, false},
         QStringLiteral("Recording"),
         QStringLiteral("Storage 85% full"),
         false},
        {"the budget used up",
         RecordingStatus::storageLimitReached,
         {100 * kGigabyte, 100 * kGigabyte, 0.8, false},
         QStringLiteral("Storage Limit"),
         QStringLiteral("Storage limit reached — clear space to record"),
         false},
        {"no screen capture",
         RecordingStatus::permissionRequired,
         {12 * kGigabyte, 100 * kGigabyte, 0.8, false},
         QStringLiteral("Action Required"),
         QString(),
         true},
    };
    ASSERT_TRUE(showPanel());
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        models_.setUsage(c.usage);
        models_.menuBar.setStatus(c.status);
        models_.panelStorage.refresh();
        EXPECT_TRUE(waitForText(c.word)) << visibleTexts(harness_).join(QLatin1Char('|')).toStdString();
        if (!c.warning.isEmpty()) {
            EXPECT_TRUE(waitForText(c.warning))
                << visibleTexts(harness_).join(QLatin1Char('|')).toStdString();
        } else {
            QTest::qWait(100);
            EXPECT_FALSE(item(QStringLiteral("storageWarning"))->isVisible());
        }
        EXPECT_EQ(item(QStringLiteral("permissionLine"))->isVisible(), c.permissionLine);
        EXPECT_EQ(visibleTexts(harness_).contains(
                      QStringLiteral("Open Settings to allow Screen Recording access.")),
                  c.permissionLine);
    }
    const QStringList texts = visibleTexts(harness_);
    for (const char* label : {"Kestrum", "Open Dashboard", "Start Kestrum Share", "Settings", "Quit"}) {
        EXPECT_TRUE(texts.contains(QString::fromUtf8(label))) << label;
    }
    // The share controls are there but honest: disabled, with the reason.
    EXPECT_FALSE(item(QStringLiteral("startShare"))->isEnabled());
    EXPECT_TRUE(texts.contains(QStringLiteral("Kestrum Share is not part of this version yet.")));
    // The panel grows with its content but never past the width of 300.
    EXPECT_EQ(harness_.findItem(QStringLiteral("openDashboard"))->width(), 300 - 2 * 16);
}

TEST_F(ShellViews, ThePanelsCommandsReachTheApplication) {
    ASSERT_TRUE(showPanel());
    struct Case {
        const char* button;
        int ShellViewModels::*counter;
    };
    const std::vector<Case> cases = {{"openDashboard", &ShellViewModels::dashboardShows},
                                     {"settings", &ShellViewModels::settingsOpenings},
                                     {"quit", &ShellViewModels::quits},
                                     {"startShare", nullptr}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.button);
        const int before = c.counter ? models_.*c.counter : 0;
        harness_.click(QmlViewHarness::centreOf(*item(QString::fromLatin1(c.button))));
        if (c.counter) {
            EXPECT_EQ(models_.*c.counter, before + 1);
        }
    }
    // The disabled share button started nothing and ran no other command.
    EXPECT_EQ(models_.dashboardShows + models_.settingsOpenings + models_.quits, 3);
}

// With League Share attached, the panel's share controls drive it: the start shows the share window and
// starts the share, whose status line appears; pause stops the share and keeps the window; stop ends both.
TEST_F(ShellViews, ThePanelsShareControlsDriveLeagueShare) {
    FakeShareableContent content;
    FakeWindowStreamFactory streams;
    FakeWorkspace workspace;
    FakeLeagueShareAudioRoute audioRoute;
    LeagueShareCoordinator coordinator(
        LeagueShareEnvironment{models_.screen, content, streams, workspace, audioRoute,
                               LeagueShareSettings(models_.defaults), models_.clock});
    const ApplicationWindowID shareWindow =
        models_.windows.addWindow(QStringLiteral("Kestrum Share"), QStringLiteral("league-share"), false);
    int shows = 0;
    int hides = 0;
    models_.menuBar.attachLeagueShare(coordinator, {[&] {
                                                        ++shows;
                                                        models_.windows.setVisible(shareWindow, true);
                                                    },
                                                    [&] {
                                                        ++hides;
                                                        models_.windows.setVisible(shareWindow, false);
                                                    }});
    ASSERT_TRUE(showPanel());
    EXPECT_TRUE(item(QStringLiteral("startShare"))->isEnabled());
    EXPECT_FALSE(item(QStringLiteral("shareNote"))->isVisible());

    harness_.click(QmlViewHarness::centreOf(*item(QStringLiteral("startShare"))));
    EXPECT_EQ(shows, 1);
    EXPECT_TRUE(coordinator.isRunning());
    // No League window is listed: the first refresh waits for one, and the panel says so.
    EXPECT_TRUE(waitForText(QStringLiteral("Waiting for League")))
        << visibleTexts(harness_).join(QLatin1Char('|')).toStdString();
    ASSERT_TRUE(QTest::qWaitFor([&] { return item(QStringLiteral("pauseShare"))->isVisible(); }, 5000));

    harness_.click(QmlViewHarness::centreOf(*item(QStringLiteral("pauseShare"))));
    EXPECT_FALSE(coordinator.isRunning());
    EXPECT_EQ(hides, 0);

    harness_.click(QmlViewHarness::centreOf(*item(QStringLiteral("startShare"))));
    EXPECT_FALSE(coordinator.isRunning());
    EXPECT_EQ(hides, 1);

    // "About Kestrum Share" shows what the share is for, and hides it again.
    EXPECT_FALSE(item(QStringLiteral("aboutShareText"))->isVisible());
    for (const bool shown : {true, false}) {
        harness_.click(QmlViewHarness::centreOf(*item(QStringLiteral("aboutShare"))));
        EXPECT_EQ(item(QStringLiteral("aboutShareText"))->isVisible(), shown);
        EXPECT_EQ(models_.menuBar.isShareInformationShown(), shown);
    }
}

TEST_F(ShellViews, TheSettingsFormShowsEverySectionAndItsTexts) {
    ASSERT_TRUE(showSettings());
    QQuickItem* scroll = item(QStringLiteral("settingsScroll"));
    ASSERT_TRUE(scroll);
    // The form is taller than the window: it scrolls, and a scroll to its end shows "About".
    EXPECT_GT(scroll->property("contentHeight").toDouble(), scroll->height());
    QStringList texts = visibleTexts(harness_);
    for (const char* title : {"Appearance",
                              "Theme",
                              "Screen Recording",
                              "Microphone",
                              "Video",
                              "Share",
                              "Resolution",
                              "Frame rate",
                              "System audio",
                              "System volume",
                              "Microphone volume",
                              "Recordings folder",
                              "Open Folder",
                              "Choose…",
                              "Storage",
                              "Storage limit",
                              "Maximum",
                              "Warn at",
                              "Kestrum never deletes recordings.",
                              "Startup",
                              "Open Kestrum at login",
                              "About",
                              "Version",
                              "0.1.0",
                              "Riot Games Developer Policies",
                              "720p",
                              "1080p",
                              "Native",
                              "1440p",
                              "30 FPS",
                              "60 FPS",
                              "System",
                              "Light",
                              "Dark",
                              "Allowed",
                              "Optional"}) {
        EXPECT_TRUE(texts.contains(QString::fromUtf8(title))) << title;
    }
    EXPECT_EQ(texts.count(QStringLiteral("Video")), 2) << "the audio controls keep the repeated heading";
    EXPECT_TRUE(texts.contains(models_.folderStore.folderDisplayPath()));
    EXPECT_TRUE(waitForText(QStringLiteral("12 GB of 100 GB used")))
        << texts.join(QLatin1Char('|')).toStdString();
}

TEST_F(ShellViews, TypedStorageLimitsAreStoredClamped) {
    struct Case {
        const char* row;
        QString typed;
        QString key;
        double stored;
    };
    const std::vector<Case> cases = {
        {"maximumStorage", QStringLiteral("5"), SettingsKeys::recordingStorageMaximumGigabytes, 10},
        {"maximumStorage", QStringLiteral("5000"), SettingsKeys::recordingStorageMaximumGigabytes, 2000},
        {"maximumStorage", QStringLiteral("250"), SettingsKeys::recordingStorageMaximumGigabytes, 250},
        {"warningPercentage", QStringLiteral("40"), SettingsKeys::recordingStorageWarningPercentage, 50},
        {"warningPercentage", QStringLiteral("99"), SettingsKeys::recordingStorageWarningPercentage, 95},
    };
    ASSERT_TRUE(showSettings());
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.row) + " " + c.typed.toStdString());
        typeInto(QString::fromLatin1(c.row), c.typed);
        EXPECT_TRUE(QTest::qWaitFor([&] { return models_.defaults.doubleForKey(c.key) == c.stored; }, 2000))
            << models_.defaults.doubleForKey(c.key);
        // The field shows the stored value, not what was typed.
        bool shown = false;
        for (QQuickItem* input : harness_.findItemsOfType("QQuickTextInput")) {
            shown = shown || input->property("text").toString() == QString::number(c.stored);
        }
        EXPECT_TRUE(shown);
    }
}

TEST_F(ShellViews, SwitchesAndSegmentsStoreTheirSettings) {
    ASSERT_TRUE(showSettings());
    harness_.click(QmlViewHarness::centreOf(*item(QStringLiteral("segment-Dark"))));
    EXPECT_EQ(models_.defaults.stringForKey(SettingsKeys::kestrumAppearance), QStringLiteral("dark"));
    EXPECT_EQ(models_.settings.theme()->selectedIndex(), 2);

    ASSERT_FALSE(models_.settings.recordMicrophone()->isOn());
    QQuickItem* microphone = item(QStringLiteral("recordMicrophone"));
    QQuickItem* track = nullptr;
    for (QQuickItem* child : microphone->childItems()) {
        if (child->objectName() == QLatin1String("switchTrack")) track = child;
    }
    ASSERT_TRUE(track);
    harness_.click(QmlViewHarness::centreOf(*track));
    EXPECT_TRUE(models_.settings.recordMicrophone()->isOn());
    EXPECT_TRUE(models_.defaults.boolForKey(SettingsKeys::recordMicrophone));
}

TEST_F(ShellViews, EachOpeningShowsTheTopOfTheForm) {
    ASSERT_TRUE(showSettings());
    QQuickItem* scroll = item(QStringLiteral("settingsScroll"));
    ASSERT_TRUE(scroll);
    scroll->setProperty("contentY", 400);
    ASSERT_EQ(scroll->property("contentY").toDouble(), 400);
    models_.settings.closed();
    models_.settings.opened();
    EXPECT_EQ(scroll->property("contentY").toDouble(), 0);
}

TEST_F(ShellViews, ScreenshotsInBothAppearances) {
    for (const bool dark : {false, true}) {
        ui::KestrumStyle::instance().setDark(dark);
        const QString appearance = dark ? QStringLiteral("dark") : QStringLiteral("light");
        {
            QmlViewHarness panel;
            models_.setUsage({85 * kGigabyte, 100 * kGigabyte, 0.8, false});
            models_.menuBar.setStatus(RecordingStatus::recording);
            ASSERT_TRUE(panel.show(kMenuBarView, models_.propertiesFor(QStringLiteral("MenuBarView.qml")),
                                   {300, 330}));
            models_.panelStorage.refresh();
            const QImage picture = panel.screenshot([&] { return models_.menuBar.showsStorageWarning(); });
            ASSERT_FALSE(picture.isNull());
            // The panel is drawn in the appearance in force: its ground is dark in dark, light in light.
            EXPECT_EQ(qGray(picture.pixel(picture.width() / 2, 4)) < 128, dark);
            writeScreenshot(panel, QStringLiteral("panel-") + appearance);
        }
        {
            QmlViewHarness settings;
            ASSERT_TRUE(settings.show(kSettingsView,
                                      models_.propertiesFor(QStringLiteral("SettingsView.qml")), {580, 760}));
            models_.settings.opened();
            const QImage picture =
                settings.screenshot([&] { return models_.settings.storage()->hasUsage(); });
            ASSERT_FALSE(picture.isNull());
            EXPECT_EQ(qGray(picture.pixel(4, 4)) < 128, dark);
            writeScreenshot(settings, QStringLiteral("settings-") + appearance);
            // And the end of the form, where the folder, storage, startup and about sections are.
            QQuickItem* scroll = settings.findItem(QStringLiteral("settingsScroll"));
            ASSERT_TRUE(scroll);
            scroll->setProperty("contentY", scroll->property("contentHeight").toDouble() - scroll->height());
            writeScreenshot(settings, QStringLiteral("settings-end-") + appearance);
            models_.settings.closed();
        }
    }
}

}  // namespace
}  // namespace kestrum::test

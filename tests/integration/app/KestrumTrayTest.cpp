// The kestrum program on a desktop as a user has it: a private X server with a window manager and a real
// X11 tray (trayer). The icon goes to the tray, a click on it opens the panel by the pointer, "Settings"
// opens the settings window, and "Quit" ends the program with status 0. On the same desktop without a
// tray, the panel opens at launch as an ordinary window. The recorder runs on the fake adapters.
#include "support/DisplayServers.h"
#include "support/TestEnvironment.h"
#include "support/X11Desktop.h"

#include <gtest/gtest.h>

#include <QProcess>
#include <QRect>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <csignal>
#include <memory>

namespace kestrum::test {
namespace {

class TrayDesktop : public ::testing::Test {
  protected:
    void SetUp() override {
        for (const char* tool : {"Xvfb", "openbox", "xdotool", "trayer"}) {
            if (QStandardPaths::findExecutable(QString::fromLatin1(tool)).isEmpty()) {
                if (qEnvironmentVariable("KESTRUM_REQUIRE_MEDIA") == QLatin1String("1")) {
                    FAIL() << tool << " is not installed";
                }
                GTEST_SKIP() << tool << " is not installed (scripts/install-deps.sh installs it)";
            }
        }
        ASSERT_TRUE(display_.start(1280, 800)) << display_.failure().toStdString();
        ASSERT_TRUE(display_.startWindowManager()) << display_.failure().toStdString();
    }
    void TearDown() override {
        for (QProcess* process : {kestrum_.get(), tray_.get()}) {
            if (!process || process->state() == QProcess::NotRunning) continue;
            process->kill();
            process->waitForFinished(5000);
        }
    }

    // trayer along the top edge, right-aligned, reserving its strip of the screen.
    void startTray() {
        tray_ = std::make_unique<QProcess>();
        tray_->start(QStringLiteral("trayer"),
                     {QStringLiteral("--edge"), QStringLiteral("top"), QStringLiteral("--align"),
                      QStringLiteral("right"), QStringLiteral("--widthtype"), QStringLiteral("pixel"),
                      QStringLiteral("--width"), QStringLiteral("120"), QStringLiteral("--height"),
                      QStringLiteral("24"), QStringLiteral("--SetDockType"), QStringLiteral("true"),
                      QStringLiteral("--SetPartialStrut"), QStringLiteral("true")});
        ASSERT_TRUE(
            waitUntil([] { return !visibleWindow(QStringLiteral("^trayer$"), true).isEmpty(); }, 10000));
    }

    void startKestrum() {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
        environment.insert(QStringLiteral("KESTRUM_PLATFORM"), QStringLiteral("fake"));
        // A profile of its own, so that no other test's Kestrum is the running instance.
        for (const char* variable : {"HOME", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"}) {
            environment.insert(QString::fromLatin1(variable), profile_.path());
        }
        kestrum_ = std::make_unique<QProcess>();
        kestrum_->setProcessEnvironment(environment);
        kestrum_->setProcessChannelMode(QProcess::MergedChannels);
        QObject::connect(kestrum_.get(), &QProcess::readyReadStandardOutput,
                         [this] { output_ += QString::fromUtf8(kestrum_->readAllStandardOutput()); });
        kestrum_->start(QStringLiteral(KESTRUM_BINARY_PATH), {});
    }
    bool waitForLine(const QString& line) {
        return waitUntil([&] { return output_.contains(line); }, 20000);
    }

    QTemporaryDir profile_;
    XvfbServer display_;
    std::unique_ptr<QProcess> tray_;
    std::unique_ptr<QProcess> kestrum_;
    QString output_;
};

TEST_F(TrayDesktop, TheIconOpensThePanelWhoseCommandsOpenSettingsAndQuit) {
    startTray();
    startKestrum();
    ASSERT_TRUE(waitForLine(QStringLiteral("Kestrum is in the tray"))) << output_.toStdString();
    // No window of ours shows before the user asks for one.
    EXPECT_TRUE(visibleWindow(QStringLiteral("^Kestrum$")).isEmpty());
    EXPECT_TRUE(visibleWindow(QStringLiteral("^Kestrum Settings$")).isEmpty());

    // The icon is the newest client of the tray, at its right end.
    const QRect tray = visibleWindow(QStringLiteral("^trayer$"), true);
    ASSERT_FALSE(tray.isEmpty());
    QRect panel;
    for (int x = tray.right() - 11; x > tray.left() && panel.isEmpty(); x -= 22) {
        clickAt({x, tray.center().y()});
        waitUntil([&] { return !(panel = visibleWindow(QStringLiteral("^Kestrum$"))).isEmpty(); }, 2000);
    }
    ASSERT_FALSE(panel.isEmpty()) << "a click on the tray opened no panel";
    EXPECT_EQ(panel.width(), 300);
    // By the pointer, under the tray, and wholly on the screen.
    EXPECT_GE(panel.top(), tray.bottom() - 1);
    EXPECT_LE(panel.right(), 1279);
    EXPECT_GE(panel.left(), 0);
    EXPECT_LT(panel.top(), 100);

    // "Settings" and "Quit" share the panel's last row; the panel closes as the settings take the focus.
    const int lastRowY = panel.bottom() - 16 - 14;
    clickAt({panel.left() + panel.width() / 4, lastRowY});
    QRect settings;
    ASSERT_TRUE(waitUntil(
        [&] { return !(settings = visibleWindow(QStringLiteral("^Kestrum Settings$"))).isEmpty(); }, 10000));
    EXPECT_EQ(settings.width(), 580);
    EXPECT_LE(settings.height(), 800);
    EXPECT_TRUE(waitUntil([] { return visibleWindow(QStringLiteral("^Kestrum$")).isEmpty(); }, 5000))
        << "the panel stays open after losing the focus";

    // Open the panel again and quit from it.
    panel = {};
    for (int x = tray.right() - 11; x > tray.left() && panel.isEmpty(); x -= 22) {
        clickAt({x, tray.center().y()});
        waitUntil([&] { return !(panel = visibleWindow(QStringLiteral("^Kestrum$"))).isEmpty(); }, 2000);
    }
    ASSERT_FALSE(panel.isEmpty());
    clickAt({panel.left() + panel.width() * 3 / 4, panel.bottom() - 16 - 14});
    ASSERT_TRUE(waitUntil([&] { return kestrum_->state() == QProcess::NotRunning; }, 20000))
        << output_.toStdString();
    EXPECT_EQ(kestrum_->exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(kestrum_->exitCode(), 0);
}

TEST_F(TrayDesktop, WithoutATrayThePanelOpensAsAWindowAtLaunch) {
    startKestrum();
    ASSERT_TRUE(waitForLine(QStringLiteral("Kestrum found no tray on this desktop")))
        << output_.toStdString();
    QRect panel;
    ASSERT_TRUE(
        waitUntil([&] { return !(panel = visibleWindow(QStringLiteral("^Kestrum$"))).isEmpty(); }, 10000));
    EXPECT_EQ(panel.width(), 300);
    ::kill(static_cast<pid_t>(kestrum_->processId()), SIGTERM);
    ASSERT_TRUE(waitUntil([&] { return kestrum_->state() == QProcess::NotRunning; }, 20000));
    EXPECT_EQ(kestrum_->exitCode(), 0);
}

}  // namespace
}  // namespace kestrum::test

// The main of the shell windows' tests: a private home, a private X server (Xvfb) with openbox managing
// it, a QGuiApplication on it (the xcb platform), then GoogleTest. Without Xvfb or openbox every test
// skips, saying so, unless KESTRUM_REQUIRE_MEDIA=1 (CI), where that is a failure.
#include "ShellWindowsTestMain.h"
#include "TestWindowClient.h"
#include "support/DisplayServers.h"
#include "support/TestEnvironment.h"
#include "support/TestRun.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <cstdio>

namespace {

QString missingDisplay;

}  // namespace

QString kestrum::test::managedDisplayMissing() {
    return missingDisplay;
}

int main(int argc, char** argv) {
    QTemporaryDir home(QDir::tempPath() + QStringLiteral("/kestrum-test-XXXXXX"));
    if (!home.isValid()) return 2;
    kestrum::test::usePrivateHome(home.path());
    kestrum::test::XvfbServer display;
    if (kestrum::test::onlyListsTests(argc, argv)) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    } else if (display.start(1280, 800) && display.startWindowManager() &&
               kestrum::test::TestWindowClient().awaitWindowManager()) {
        // The manager adopts windows now: a window mapped earlier could be lost.
        qputenv("QT_QPA_PLATFORM", "xcb");
    } else {
        if (qEnvironmentVariable("KESTRUM_REQUIRE_MEDIA") == QLatin1String("1")) {
            std::fprintf(stderr, "the shell windows' tests need Xvfb and openbox: %s\n",
                         qPrintable(display.failure()));
            return 1;
        }
        missingDisplay = display.failure();
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QGuiApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return kestrum::test::runAllTestsThenFinishBackgroundWork();
}

// The main of the view tests: a private home, a private X server (Xvfb, whose Mesa llvmpipe gives the
// scene graph its OpenGL), a QGuiApplication on it, then GoogleTest. Without Xvfb every test skips,
// saying so, unless KESTRUM_REQUIRE_MEDIA=1 (CI), where that is a failure.
#include "QmlViewHarness.h"
#include "support/DisplayServers.h"
#include "support/TestEnvironment.h"
#include "support/TestRun.h"
#include "ui/KestrumUi.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <cstdio>

int main(int argc, char** argv) {
    QTemporaryDir home(QDir::tempPath() + QStringLiteral("/kestrum-test-XXXXXX"));
    if (!home.isValid()) return 2;
    kestrum::test::usePrivateHome(home.path());
    kestrum::test::XvfbServer display;
    // KESTRUM_TEST_SCREEN ("1280x600") gives a program a smaller screen than the usual 1920 by 1080.
    const QStringList screenSize = qEnvironmentVariable("KESTRUM_TEST_SCREEN").split(QLatin1Char('x'));
    const bool hasScreenSize = screenSize.size() == 2;
    const int screenWidth = hasScreenSize ? screenSize[0].toInt() : 1920;
    const int screenHeight = hasScreenSize ? screenSize[1].toInt() : 1080;
    if (kestrum::test::onlyListsTests(argc, argv)) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    } else if (display.start(screenWidth, screenHeight)) {
        qputenv("QT_QPA_PLATFORM", "xcb");
    } else {
        if (qEnvironmentVariable("KESTRUM_REQUIRE_MEDIA") == QLatin1String("1")) {
            std::fprintf(stderr, "the view tests need Xvfb: %s\n", qPrintable(display.failure()));
            return 1;
        }
        kestrum::test::setDisplayMissing(display.failure());
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    // One scene graph for every window, as the application's: OpenGL, drawn on the GUI thread so that a
    // grab sees exactly what was last rendered.
    qputenv("QSG_RENDER_LOOP", "basic");
    kestrum::ui::useOpenGlSceneGraph();
    QGuiApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Kestrum"));
    QCoreApplication::setApplicationName(QStringLiteral("Kestrum"));
    testing::InitGoogleTest(&argc, argv);
    return kestrum::test::runAllTestsThenFinishBackgroundWork();
}

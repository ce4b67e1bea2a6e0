// The main of the player's tests: a private home, a private X server (Xvfb, whose Mesa llvmpipe gives
// the scene graph its OpenGL) and a private PulseAudio server with a null sink, a QGuiApplication with
// the OpenGL scene graph, then GoogleTest. Without a server or the test movies every test skips, saying
// so, unless KESTRUM_REQUIRE_MEDIA=1 (CI), where that is a failure. The render loop is Qt's basic one
// (drawing on the GUI thread) unless QSG_RENDER_LOOP asks for another.
#include "PlayerStage.h"
#include "support/DisplayServers.h"
#include "support/TestEnvironment.h"
#include "support/TestRun.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QSGRendererInterface>
#include <QTemporaryDir>

#include <cstdio>
#include <cstring>

namespace {

bool onlyListing(int argc, char** argv) {
    for (int index = 1; index < argc; ++index) {
        if (std::strcmp(argv[index], "--gtest_list_tests") == 0) return true;
    }
    return false;
}

QString startServers(kestrum::test::XvfbServer& display, kestrum::test::PulseAudioServer& sound) {
    if (!display.start(1920, 1080)) return QStringLiteral("Xvfb: ") + display.failure();
    if (!sound.start()) return QStringLiteral("PulseAudio: ") + sound.failure();
    if (!QFile::exists(kestrum::test::playerTestMovies().clock())) {
        return QStringLiteral("the test movies were not written (no HEVC encoder?) in ") +
               kestrum::test::playerTestMovies().folder;
    }
    return {};
}

}  // namespace

int main(int argc, char** argv) {
    QTemporaryDir home(QDir::tempPath() + QStringLiteral("/kestrum-test-XXXXXX"));
    if (!home.isValid()) return 2;
    kestrum::test::usePrivateHome(home.path());
    kestrum::test::XvfbServer display;
    kestrum::test::PulseAudioServer sound;
    if (onlyListing(argc, argv)) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    } else if (const QString missing = startServers(display, sound); missing.isEmpty()) {
        qputenv("QT_QPA_PLATFORM", "xcb");
    } else {
        if (qEnvironmentVariable("KESTRUM_REQUIRE_MEDIA") == QLatin1String("1")) {
            std::fprintf(stderr, "the player's tests cannot run: %s\n", qPrintable(missing));
            return 1;
        }
        kestrum::test::setPlayerStageMissing(missing);
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    if (qEnvironmentVariableIsEmpty("QSG_RENDER_LOOP")) qputenv("QSG_RENDER_LOOP", "basic");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::OpenGL);
    QGuiApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Kestrum"));
    QCoreApplication::setApplicationName(QStringLiteral("Kestrum"));
    testing::InitGoogleTest(&argc, argv);
    return kestrum::test::runAllTestsThenFinishBackgroundWork();
}

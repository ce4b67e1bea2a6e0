// The main of every test program: a private home, then a Qt event loop for coroutines, then GoogleTest.
// Built three times: the GUI variant (KESTRUM_TEST_GUI) makes a QGuiApplication on the offscreen platform
// unless a display is asked for, for tests that draw text or images; the widgets variant
// (KESTRUM_TEST_WIDGETS) makes a QApplication there, for the few dialogs that are widgets.
#include "support/TestEnvironment.h"
#include "support/TestRun.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#if defined(KESTRUM_TEST_WIDGETS)
#include <QApplication>
#elif defined(KESTRUM_TEST_GUI)
#include <QGuiApplication>
#endif
#include <QDir>
#include <QTemporaryDir>

#include <cstdlib>

int main(int argc, char** argv) {
    QTemporaryDir home(QDir::tempPath() + QStringLiteral("/kestrum-test-XXXXXX"));
    if (!home.isValid()) return 2;
    kestrum::test::usePrivateHome(home.path());
#if defined(KESTRUM_TEST_WIDGETS)
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication application(argc, argv);
#elif defined(KESTRUM_TEST_GUI)
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QGuiApplication application(argc, argv);
#else
    QCoreApplication application(argc, argv);
#endif
    QCoreApplication::setOrganizationName(QStringLiteral("Kestrum"));
    QCoreApplication::setApplicationName(QStringLiteral("Kestrum"));
    testing::InitGoogleTest(&argc, argv);
    return kestrum::test::runAllTestsThenFinishBackgroundWork();
}

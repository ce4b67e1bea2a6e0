// The main of every test program: a private home, then a Qt event loop for coroutines, then GoogleTest.
// Built twice: the GUI variant (KESTRUM_TEST_GUI) makes a QGuiApplication on the offscreen platform
// unless a display is asked for, for tests that draw text or images.
#include <gtest/gtest.h>

#include <QCoreApplication>
#ifdef KESTRUM_TEST_GUI
#include <QGuiApplication>
#endif
#include <QDir>
#include <QTemporaryDir>

#include <cstdlib>

namespace {

void useTemporaryHome(const QTemporaryDir& home) {
    const QString root = home.path();
    const auto set = [&](const char* name, const QString& sub) {
        const QString path = sub.isEmpty() ? root : root + QLatin1Char('/') + sub;
        QDir().mkpath(path);
        setenv(name, QFile::encodeName(path).constData(), 1);
    };
    set("HOME", {});
    set("XDG_CONFIG_HOME", QStringLiteral(".config"));
    set("XDG_CACHE_HOME", QStringLiteral(".cache"));
    set("XDG_STATE_HOME", QStringLiteral(".local/state"));
    set("XDG_DATA_HOME", QStringLiteral(".local/share"));
}

}  // namespace

int main(int argc, char** argv) {
    QTemporaryDir home(QDir::tempPath() + QStringLiteral("/kestrum-test-XXXXXX"));
    if (!home.isValid()) return 2;
    useTemporaryHome(home);
#ifdef KESTRUM_TEST_GUI
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QGuiApplication application(argc, argv);
#else
    QCoreApplication application(argc, argv);
#endif
    QCoreApplication::setOrganizationName(QStringLiteral("Kestrum"));
    QCoreApplication::setApplicationName(QStringLiteral("Kestrum"));
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

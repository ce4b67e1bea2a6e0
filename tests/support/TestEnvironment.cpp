#include "support/TestEnvironment.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include <cstring>

namespace kestrum::test {

void usePrivateHome(const QString& root) {
    const auto set = [&](const char* name, const QString& sub) {
        const QString path = sub.isEmpty() ? root : root + QLatin1Char('/') + sub;
        QDir().mkpath(path);
        qputenv(name, QFile::encodeName(path));
    };
    set("HOME", {});
    set("XDG_CONFIG_HOME", QStringLiteral(".config"));
    set("XDG_CACHE_HOME", QStringLiteral(".cache"));
    set("XDG_STATE_HOME", QStringLiteral(".local/state"));
    set("XDG_DATA_HOME", QStringLiteral(".local/share"));
    // The single instance's socket lives here: tests that run at once must not reach each other's program.
    set("XDG_RUNTIME_DIR", QStringLiteral(".runtime"));
    QFile::setPermissions(root + QStringLiteral("/.runtime"),
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
}

QString testHomeDirectory() {
    return qEnvironmentVariable("HOME");
}
QString testConfigDirectory() {
    return qEnvironmentVariable("XDG_CONFIG_HOME");
}
QString testCacheDirectory() {
    return qEnvironmentVariable("XDG_CACHE_HOME");
}
QString testStateDirectory() {
    return qEnvironmentVariable("XDG_STATE_HOME");
}

QByteArray readFileBytes(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return {};
    return file.readAll();
}

bool writeFileBytes(const QString& path, const QByteArray& bytes) {
    if (!QDir().mkpath(QFileInfo(path).absolutePath())) return false;
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) return false;
    return file.write(bytes) == bytes.size();
}

void processEventsFor(int milliseconds) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds) QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
}

bool onlyListsTests(int argc, char** argv) {
    for (int index = 1; index < argc; ++index) {
        if (std::strcmp(argv[index], "--gtest_list_tests") == 0) return true;
    }
    return false;
}

}  // namespace kestrum::test

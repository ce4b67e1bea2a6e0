#include "support/TestEnvironment.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

namespace kestrum::test {

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

}  // namespace kestrum::test

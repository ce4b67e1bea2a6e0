#include "support/PrivateSessionBus.h"

#include <QStandardPaths>

namespace kestrum::test {

bool PrivateSessionBus::start() {
    if (QStandardPaths::findExecutable(QStringLiteral("dbus-daemon")).isEmpty()) {
        failure_ = QStringLiteral("dbus-daemon is not installed");
        return false;
    }
    daemon_.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--session"), QStringLiteral("--nofork"),
                                                  QStringLiteral("--print-address=1")});
    if (!daemon_.waitForReadyRead(5000)) {
        failure_ = QStringLiteral("dbus-daemon printed no address");
        stop();
        return false;
    }
    address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
    return true;
}

void PrivateSessionBus::stop() {
    if (daemon_.state() == QProcess::NotRunning) return;
    daemon_.terminate();
    if (!daemon_.waitForFinished(3000)) {
        daemon_.kill();
        daemon_.waitForFinished(3000);
    }
}

}  // namespace kestrum::test

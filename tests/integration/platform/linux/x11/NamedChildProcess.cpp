#include "integration/platform/linux/x11/NamedChildProcess.h"

#include <QFile>
#include <QThread>

namespace kestrum::test {

NamedChildProcess::NamedChildProcess(const QString& argumentZero) {
    // The name travels as $0, never spliced into the script, so spaces stay literal.
    process_.start(QStringLiteral("bash"),
                   {QStringLiteral("-c"), QStringLiteral("exec -a \"$0\" sleep 60"), argumentZero});
    process_.waitForStarted(5000);
    const QByteArray named = argumentZero.toLocal8Bit() + '\0';
    for (int attempt = 0; attempt < 250 && process_.state() == QProcess::Running; ++attempt) {
        QFile commandLine(QStringLiteral("/proc/%1/cmdline").arg(process_.processId()));
        if (commandLine.open(QIODevice::ReadOnly) && commandLine.readAll().startsWith(named)) return;
        QThread::msleep(20);
    }
}

void NamedChildProcess::stop() {
    if (process_.state() == QProcess::NotRunning) return;
    process_.kill();
    process_.waitForFinished(5000);
}

}  // namespace kestrum::test

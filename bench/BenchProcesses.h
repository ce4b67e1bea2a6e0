#pragma once

#include <QCoreApplication>
#include <QFile>
#include <QThread>

#include <unistd.h>
#include <functional>

namespace kestrum::bench {

// The process's user plus system CPU seconds from /proc/<pid>/stat; 0 when it cannot be read.
inline double processCpuSeconds(qint64 pid) {
    QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!stat.open(QIODevice::ReadOnly)) return 0;
    const QByteArray text = stat.readAll();
    const QList<QByteArray> fields = text.mid(text.lastIndexOf(')') + 2).split(' ');
    return (fields.value(11).toDouble() + fields.value(12).toDouble()) /
           static_cast<double>(sysconf(_SC_CLK_TCK));
}

// Polls `condition` every 100 ms, running the event loop between, until it holds or `timeoutMs` passes;
// its last value.
inline bool waitFor(const std::function<bool()>& condition, int timeoutMs) {
    for (int waited = 0; waited < timeoutMs; waited += 100) {
        QCoreApplication::processEvents();
        if (condition()) return true;
        QThread::msleep(100);
    }
    return condition();
}

}  // namespace kestrum::bench

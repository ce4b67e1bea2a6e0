#include "base/log/CaptureLog.h"

#include "base/async/Detached.h"
#include "base/log/CaptureLogFile.h"

#include <QDateTime>
#include <QLocale>

#include <condition_variable>
#include <mutex>
#include <utility>

namespace kestrum {

namespace {

// The installed system sink. The mutex is held only to copy or swap the pointer, never while logging.
struct SystemSink {
    std::mutex mutex;
    std::shared_ptr<SystemLog> log;  // guarded by mutex
};

// Appends queued and not yet finished, so that tests can wait for the disk without sleeping.
struct PendingAppends {
    std::mutex mutex;
    std::condition_variable drained;
    int count = 0;  // guarded by mutex
};

// Both are leaked on purpose: entries may be logged, and appends may finish, while static destructors
// run at exit.
SystemSink& systemSink() {
    static auto* const sink = new SystemSink;
    return *sink;
}

PendingAppends& pendingAppends() {
    static auto* const pending = new PendingAppends;
    return *pending;
}

std::shared_ptr<SystemLog> installedSystemLog() {
    SystemSink& sink = systemSink();
    const std::lock_guard lock(sink.mutex);
    return sink.log;
}

void writeToSystemSink(const QString& message, SystemLog::Level level) {
    const std::shared_ptr<SystemLog> log = installedSystemLog();
    if (!log || !log->isEnabled(level)) return;
    if (level == SystemLog::Level::Error) {
        log->error(QStringLiteral("❌ ") + message);
    } else {
        log->info(message);
    }
}

// The moment of the call in the system's time zone. A new locale object per entry stands for the
// platform's fresh date formatter with its defaults kept; "zzz" is Qt's spelling of milliseconds in the
// pattern "yyyy-MM-dd HH:mm:ss.SSS".
QString timestampNow() {
    const QDateTime now = QDateTime::currentDateTime();
    return QLocale().toString(now, QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"));
}

QString buildLine(const QString& timestamp, SystemLog::Level level, const QString& message) {
    const QLatin1String levelWord =
        level == SystemLog::Level::Error ? QLatin1String("ERROR") : QLatin1String("INFO");
    return QLatin1Char('[') + timestamp + QLatin1String("] [") + levelWord + QLatin1String("] [Capture] ") +
           message + QLatin1Char('\n');
}

void queueAppend(QString line) {
    PendingAppends& pending = pendingAppends();
    {
        const std::lock_guard lock(pending.mutex);
        ++pending.count;
    }
    utilityPool().start([line = std::move(line)] {
        appendCaptureLogLine(line);
        PendingAppends& finished = pendingAppends();
        const std::lock_guard lock(finished.mutex);
        if (--finished.count == 0) finished.drained.notify_all();
    });
}

}  // namespace

void logCaptureInfo(const QString& message) {
    writeCaptureLogEntry(message, SystemLog::Level::Info);
}

void logCaptureError(const QString& message) {
    writeCaptureLogEntry(message, SystemLog::Level::Error);
}

void writeCaptureLogEntry(const QString& message, SystemLog::Level level) {
    writeToSystemSink(message, level);
    queueAppend(buildLine(timestampNow(), level, message));
}

void installCaptureSystemLog(std::shared_ptr<SystemLog> systemLog) {
    SystemSink& sink = systemSink();
    const std::lock_guard lock(sink.mutex);
    sink.log = std::move(systemLog);
}

void waitForCaptureLogWrites() {
    PendingAppends& pending = pendingAppends();
    std::unique_lock lock(pending.mutex);
    pending.drained.wait(lock, [&pending] { return pending.count == 0; });
}

}  // namespace kestrum

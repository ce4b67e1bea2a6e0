#include "platform/linux/syslog/SyslogSystemLog.h"

#include <syslog.h>

#include <mutex>
#include <utility>

namespace kestrum {

namespace {

int priorityOf(SystemLog::Level level) {
    return level == SystemLog::Level::Error ? LOG_ERR : LOG_INFO;
}

}  // namespace

SyslogSystemLog::SyslogSystemLog(QString category) : category_(std::move(category)) {
    // openlog keeps the ident pointer, so it must be a literal; once per process is enough because the
    // ident, options and facility are the same for every instance.
    static std::once_flag opened;
    std::call_once(opened, [] { openlog(kIdent, LOG_PID, LOG_USER); });
}

bool SyslogSystemLog::isEnabled(Level level) const {
    return (setlogmask(0) & LOG_MASK(priorityOf(level))) != 0;
}

void SyslogSystemLog::info(const QString& message) {
    write(priorityOf(Level::Info), message);
}

void SyslogSystemLog::error(const QString& message) {
    write(priorityOf(Level::Error), message);
}

QByteArray SyslogSystemLog::formatLine(const QString& message) const {
    return (QLatin1Char('[') + category_ + QLatin1String("] ") + message).toUtf8();
}

void SyslogSystemLog::write(int priority, const QString& message) const {
    const QByteArray line = formatLine(message);
    // "%s" so that a "%" in the message is never read as a conversion.
    syslog(LOG_USER | priority, "%s", line.constData());
}

}  // namespace kestrum

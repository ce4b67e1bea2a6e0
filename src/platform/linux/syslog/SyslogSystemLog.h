#pragma once

#include "base/log/SystemLog.h"

#include <QByteArray>

namespace kestrum {

// The system log on Linux: syslog(3), which journald (or a classic syslog daemon) reads from /dev/log.
//
// Every line goes out with the ident "com.tidemoss.Kestrum", the options LOG_PID and the facility
// LOG_USER; information at LOG_INFO, errors at LOG_ERR. syslog has no categories, so the category is
// carried at the front of the message in brackets: "[Capture] message". In the journal:
//     com.tidemoss.Kestrum[4242]: [Capture] Live Game Client verified. Recording is allowed.
// `journalctl -t com.tidemoss.Kestrum` shows the lines of the application.
//
// A level is enabled when it is in the process's log mask (`setlogmask(0)` reads it without changing
// it); syslog(3) drops lines outside the mask by itself. glibc's syslog is thread-safe and sends one
// datagram to the local daemon: the disk work is the daemon's. When no daemon listens the line is lost,
// which the port allows. The connection is opened once for the process, on the first construction.
class SyslogSystemLog final : public SystemLog {
  public:
    static constexpr const char* kIdent = "com.tidemoss.Kestrum";

    explicit SyslogSystemLog(QString category = QStringLiteral("Capture"));

    bool isEnabled(Level level) const override;
    void info(const QString& message) override;
    void error(const QString& message) override;

  private:
    // The bytes handed to syslog for `message`: "[<category>] <message>" in UTF-8.
    QByteArray formatLine(const QString& message) const;
    void write(int priority, const QString& message) const;

    const QString category_;
};

}  // namespace kestrum

#include "platform/linux/syslog/SyslogSystemLog.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryFile>

#include <syslog.h>
#include <unistd.h>

#include <optional>
#include <vector>

namespace {

using kestrum::SyslogSystemLog;
using Level = kestrum::SystemLog::Level;

// Sets the process's log mask for one scope and restores the previous one.
class ScopedLogMask {
  public:
    explicit ScopedLogMask(int mask) : saved_(setlogmask(mask)) {}
    ~ScopedLogMask() { setlogmask(saved_); }
    ScopedLogMask(const ScopedLogMask&) = delete;
    ScopedLogMask& operator=(const ScopedLogMask&) = delete;

  private:
    int saved_;
};

// Makes syslog(3) copy every line it accepts to standard error (LOG_PERROR) and sends standard error to
// a file for one scope, so that a test can read what the adapter handed to syslog. The adapter's own
// ident, options and facility are restored afterwards.
class CapturedSyslog {
  public:
    CapturedSyslog() {
        file_.open();
        savedStderr_ = ::dup(STDERR_FILENO);
        ::dup2(file_.handle(), STDERR_FILENO);
        openlog(SyslogSystemLog::kIdent, LOG_PID | LOG_PERROR, LOG_USER);
    }
    ~CapturedSyslog() { restore(); }
    CapturedSyslog(const CapturedSyslog&) = delete;
    CapturedSyslog& operator=(const CapturedSyslog&) = delete;

    // Everything captured, as text; ends the capture.
    QString finish() {
        restore();
        QFile reader(file_.fileName());
        if (!reader.open(QIODevice::ReadOnly)) return {};
        return QString::fromUtf8(reader.readAll());
    }

  private:
    void restore() {
        if (savedStderr_ < 0) return;
        openlog(SyslogSystemLog::kIdent, LOG_PID, LOG_USER);
        ::dup2(savedStderr_, STDERR_FILENO);
        ::close(savedStderr_);
        savedStderr_ = -1;
    }

    QTemporaryFile file_;
    int savedStderr_ = -1;
};

TEST(SyslogSystemLog, LinesCarryTheIdentAndTheCategoryAndHonourTheMask) {
    struct Case {
        const char* name;
        Level level;
        QString message;
        int mask;
        std::optional<QString> expected;  // the text after "com.tidemoss.Kestrum[pid]: ", absent when dropped
    };
    const std::vector<Case> cases = {
        {"information", Level::Info, QStringLiteral("Live Game Client verified."), LOG_UPTO(LOG_DEBUG),
         QStringLiteral("[Capture] Live Game Client verified.")},
        {"error", Level::Error, QStringLiteral("❌ Recording failed"), LOG_UPTO(LOG_DEBUG),
         QStringLiteral("[Capture] ❌ Recording failed")},
        {"conversion characters stay text", Level::Info, QStringLiteral("100% %s %n"), LOG_UPTO(LOG_DEBUG),
         QStringLiteral("[Capture] 100% %s %n")},
        {"information outside the mask", Level::Info, QStringLiteral("dropped"), LOG_UPTO(LOG_ERR),
         std::nullopt},
        {"error inside the mask", Level::Error, QStringLiteral("kept"), LOG_UPTO(LOG_ERR),
         QStringLiteral("[Capture] kept")},
        {"error outside the mask", Level::Error, QStringLiteral("dropped"), LOG_MASK(LOG_INFO), std::nullopt},
    };
    SyslogSystemLog log;
    const QString prefix = QStringLiteral("com.tidemoss.Kestrum[%1]: ").arg(::getpid());
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const ScopedLogMask mask(c.mask);
        EXPECT_EQ(log.isEnabled(c.level), c.expected.has_value());
        CapturedSyslog captured;
        if (c.level == Level::Error) {
            log.error(c.message);
        } else {
            log.info(c.message);
        }
        const QString text = captured.finish();
        EXPECT_EQ(text, c.expected ? prefix + *c.expected + QLatin1Char('\n') : QString());
    }
}

}  // namespace

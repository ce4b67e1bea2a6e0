#pragma once

#include "base/log/CaptureLog.h"
#include "platform/fake/FakeSystemLog.h"
#include "support/QtPrinters.h"

#include <QStringList>

#include <memory>

namespace kestrum::test {

// Makes a fake system log the capture log's system sink for one test, and gives what it received in the
// order of the calls. Header only, so that only the test programs that use it link the capture log and
// the fakes.
class CapturedLog {
  public:
    CapturedLog() { installCaptureSystemLog(sink); }
    ~CapturedLog() {
        installCaptureSystemLog(nullptr);
        waitForCaptureLogWrites();
    }
    CapturedLog(const CapturedLog&) = delete;
    CapturedLog& operator=(const CapturedLog&) = delete;

    // The messages as the capture log words them: the sink's "❌ " in front of errors is taken off.
    QStringList lines() const {
        QStringList messages;
        for (const auto& line : sink->lines()) {
            messages << QString(line.message).remove(0, line.level == SystemLog::Level::Error ? 2 : 0);
        }
        return messages;
    }
    int countStartingWith(const QString& prefix) const {
        int count = 0;
        for (const QString& line : lines()) count += line.startsWith(prefix) ? 1 : 0;
        return count;
    }

    const std::shared_ptr<FakeSystemLog> sink = std::make_shared<FakeSystemLog>();
};

}  // namespace kestrum::test

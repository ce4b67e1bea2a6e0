#pragma once

#include "core/log/CaptureLog.h"
#include "platform/fake/FakeSystemLog.h"

#include <QStringList>

#include <memory>

namespace kestrum::test {

// Keeps the capture log's lines for one test, as the capture log words them.
class CapturedLog {
  public:
    CapturedLog() { installCaptureSystemLog(log_); }
    ~CapturedLog() {
        installCaptureSystemLog(nullptr);
        waitForCaptureLogWrites();
    }

    QStringList lines() const {
        QStringList messages;
        // The system sink puts "❌ " in front of errors.
        for (const auto& line : log_->lines()) {
            messages << QString(line.message).remove(0, line.level == SystemLog::Level::Error ? 2 : 0);
        }
        return messages;
    }
    int countStartingWith(const QString& prefix) const {
        int count = 0;
        for (const QString& line : lines()) count += line.startsWith(prefix) ? 1 : 0;
        return count;
    }

  private:
    std::shared_ptr<FakeSystemLog> log_ = std::make_shared<FakeSystemLog>();
};

}  // namespace kestrum::test

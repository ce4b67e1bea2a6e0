#pragma once

#include "base/log/SystemLog.h"

namespace kestrum::tools {

// Shows the capture log's lines on standard error while a command runs, so that the client's failure
// and certificate lines are seen where the command is typed.
class StderrSystemLog final : public SystemLog {
  public:
    bool isEnabled(Level) const override { return true; }
    void info(const QString& message) override;
    void error(const QString& message) override;
};

}  // namespace kestrum::tools

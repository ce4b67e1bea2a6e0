#pragma once

#include "base/log/SystemLog.h"

#include <QList>
#include <QString>

#include <mutex>

namespace kestrum {

// A system log that keeps every line in memory, in the order of the calls, for tests and for systems
// without a log of their own. Thread-safe: any thread may log, set levels and read the lines at once.
// Both levels start enabled. A line given at a disabled level is still recorded, so that a test can see
// whether the caller honoured `isEnabled`.
class FakeSystemLog final : public SystemLog {
  public:
    struct Line {
        Level level = Level::Info;
        QString message;
        friend bool operator==(const Line&, const Line&) = default;
    };

    bool isEnabled(Level level) const override;
    void info(const QString& message) override;
    void error(const QString& message) override;

    void setEnabled(Level level, bool enabled);
    // A copy of the lines recorded so far.
    QList<Line> lines() const;
    void clear();

  private:
    void record(Level level, const QString& message);

    mutable std::mutex mutex_;
    QList<Line> lines_;         // guarded by mutex_
    bool infoEnabled_ = true;   // guarded by mutex_
    bool errorEnabled_ = true;  // guarded by mutex_
};

}  // namespace kestrum

#include "platform/fake/FakeSystemLog.h"

namespace kestrum {

bool FakeSystemLog::isEnabled(Level level) const {
    const std::lock_guard lock(mutex_);
    return level == Level::Error ? errorEnabled_ : infoEnabled_;
}

void FakeSystemLog::info(const QString& message) {
    record(Level::Info, message);
}

void FakeSystemLog::error(const QString& message) {
    record(Level::Error, message);
}

void FakeSystemLog::setEnabled(Level level, bool enabled) {
    const std::lock_guard lock(mutex_);
    (level == Level::Error ? errorEnabled_ : infoEnabled_) = enabled;
}

QList<FakeSystemLog::Line> FakeSystemLog::lines() const {
    const std::lock_guard lock(mutex_);
    return lines_;
}

void FakeSystemLog::clear() {
    const std::lock_guard lock(mutex_);
    lines_.clear();
}

void FakeSystemLog::record(Level level, const QString& message) {
    const std::lock_guard lock(mutex_);
    lines_.append(Line{level, message});
}

}  // namespace kestrum

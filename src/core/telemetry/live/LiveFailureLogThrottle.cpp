#include "core/telemetry/live/LiveFailureLogThrottle.h"

#include "base/log/CaptureLog.h"

namespace kestrum {

bool LiveFailureLogThrottle::claim(const QString& endpointWord) {
    const Clock::TimePoint now = clock_.now();
    std::lock_guard lock(mutex_);
    const auto last = lastFailureLogAt_.find(endpointWord);
    if (last != lastFailureLogAt_.end() && now - last->second < kInterval) return false;
    lastFailureLogAt_[endpointWord] = now;
    return true;
}

void LiveFailureLogThrottle::logFailure(const QString& endpointWord, const QString& detail) {
    if (!claim(endpointWord)) return;
    const QString text = detail.isEmpty() ? QStringLiteral("unknown error") : detail;
    logCaptureError(QStringLiteral("Live Client Data API /") + endpointWord + QStringLiteral(" failed: ") +
                    text);
}

}  // namespace kestrum

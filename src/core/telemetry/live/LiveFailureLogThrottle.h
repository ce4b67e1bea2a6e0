#pragma once

#include "base/async/Clock.h"

#include <QString>

#include <chrono>
#include <map>
#include <mutex>

namespace kestrum {

// Keeps the failure lines of the local service's endpoints to one per endpoint word per interval
// (30 seconds), however fast the endpoint fails; the words are independent of each other.
//
// Thread-safe: the map of last lines is guarded by its own mutex, which is released before any logging.
class LiveFailureLogThrottle {
  public:
    static constexpr std::chrono::seconds kInterval{30};

    explicit LiveFailureLogThrottle(Clock& clock) : clock_(clock) {}

    // True when a line for `endpointWord` may be written now; the moment is then recorded for it.
    bool claim(const QString& endpointWord);

    // Writes "Live Client Data API /<word> failed: <detail>" through logCaptureError when `claim` allows.
    // An empty detail reads "unknown error".
    void logFailure(const QString& endpointWord, const QString& detail);

  private:
    Clock& clock_;
    std::mutex mutex_;
    std::map<QString, Clock::TimePoint> lastFailureLogAt_;  // guarded by mutex_
};

}  // namespace kestrum

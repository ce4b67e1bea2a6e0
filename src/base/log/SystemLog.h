#pragma once

#include <QString>

namespace kestrum {

// The operating system's own log: one line at a time, at the level of information or of error.
//
// Contract, for every adapter:
// - Callable from any thread at any time, concurrently; adapters keep no state that needs the caller's
//   thread and take no lock that a capture path could wait on for long.
// - Never blocks on disk: a line leaves the process at once (to the log daemon or to memory) and any disk
//   work is somebody else's.
// - Never fails: a line that cannot be delivered is dropped silently. Nothing is reported to the caller.
// - The message is a finished text owned by the caller; adapters copy what they keep. It is logged as it
//   stands, never redacted; an adapter may add its own fixed prefix (a category) in front of it.
// - `isEnabled` answers whether a line of that level would be kept right now, so that a caller may skip
//   the call when the level is off. A line given to `info` or `error` at a level that is off is dropped.
class SystemLog {
  public:
    enum class Level { Info, Error };

    virtual ~SystemLog() = default;

    virtual bool isEnabled(Level level) const = 0;
    virtual void info(const QString& message) = 0;
    virtual void error(const QString& message) = 0;

  protected:
    SystemLog() = default;
    SystemLog(const SystemLog&) = default;
    SystemLog& operator=(const SystemLog&) = default;
};

}  // namespace kestrum

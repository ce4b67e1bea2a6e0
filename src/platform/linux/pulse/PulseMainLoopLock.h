#pragma once

#include "platform/linux/pulse/PulseMainLoop.h"

namespace kestrum {

// Holds the lock of a PulseMainLoop for one scope. Never taken on the loop's own thread, where libpulse
// already holds it around every callback.
class PulseMainLoopLock {
  public:
    explicit PulseMainLoopLock(PulseMainLoop& loop) : loop_(loop) { loop_.lock(); }
    ~PulseMainLoopLock() { loop_.unlock(); }
    PulseMainLoopLock(const PulseMainLoopLock&) = delete;
    PulseMainLoopLock& operator=(const PulseMainLoopLock&) = delete;

  private:
    PulseMainLoop& loop_;
};

}  // namespace kestrum

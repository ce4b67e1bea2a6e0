#pragma once

#include "platform/linux/pulse/PulseMainLoop.h"
#include "platform/ports/MicrophoneAccess.h"

#include <chrono>

namespace kestrum {

// Microphone access on Linux, where the desktop asks no permission: a microphone is there when the
// sound server offers an input. `authorized` when the server has at least one source that is not the
// monitor of a sink; `denied` when it answers but has none (nothing to record from, and nothing the
// user could grant); `notDetermined` when no server answers. No state is restricted.
//
// Each status() asks the server afresh on a short-lived connection, so that a microphone plugged in or
// a server started later shows at the next read. Main thread; a read blocks for at most the connect
// timeout plus the request timeout, and for a few milliseconds on a live local server.
class PulseMicrophoneAccess final : public MicrophoneAccess {
  public:
    explicit PulseMicrophoneAccess(std::chrono::milliseconds timeout = PulseMainLoop::kConnectTimeout)
        : timeout_(timeout) {}

    Status status() const override;
    // Nothing is shown: the answer is status() == authorized.
    QCoro::Task<bool> request() override;

  private:
    std::chrono::milliseconds timeout_;
};

}  // namespace kestrum

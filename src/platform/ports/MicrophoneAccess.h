#pragma once

#include <QCoroTask>

namespace kestrum {

// The operating system's permission to record from the microphone (on Linux: authorised when the audio
// server has a source). Main thread only.
class MicrophoneAccess {
  public:
    // The authorisation states with their stored numbers; a status read from the system may carry a
    // number outside the four, which callers treat as "nothing to do".
    enum class Status : int { notDetermined = 0, restricted = 1, denied = 2, authorized = 3 };

    virtual ~MicrophoneAccess() = default;

    // The present state, without showing anything.
    virtual Status status() const = 0;

    // Asks the system for access and completes, on the main thread, when the user or the system has
    // answered; yields whether access was granted. Never fails: a refusal is simply false.
    virtual QCoro::Task<bool> request() = 0;

  protected:
    MicrophoneAccess() = default;
    MicrophoneAccess(const MicrophoneAccess&) = default;
    MicrophoneAccess& operator=(const MicrophoneAccess&) = default;
};

}  // namespace kestrum

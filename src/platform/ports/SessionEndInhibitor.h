#pragma once

#include "platform/ports/Subscription.h"

#include <functional>

namespace kestrum {

// Asks the system to wait before it shuts down while the application has work that must not be cut off
// (a movie being finalised), and tells when the system is about to end the session anyway.
//
// Contract, for every adapter:
// - Every call is made on the main thread and returns at once: taking the hold may involve a request
//   to a system service, whose answer arrives later; `isHeld` tells whether the system has granted it.
// - `setHeld(true)` asks for the hold once, however often it is called; `setHeld(false)` gives it back
//   at once, or as soon as a grant still on its way arrives. A hold the system refuses, or a system
//   without such a service, leaves `isHeld` false; nothing else changes.
// - A hold only delays the end: the system waits a bounded time (it decides how long), then goes on.
// - The session-ending handlers run on the main thread when the system announces the shutdown; a
//   holder is expected to finish its work and then give the hold back.
class SessionEndInhibitor {
  public:
    using Handler = std::function<void()>;

    virtual ~SessionEndInhibitor() = default;

    virtual void setHeld(bool held) = 0;
    virtual bool isHeld() const = 0;

    [[nodiscard]] virtual Subscription observeSessionEnding(Handler handler) = 0;

  protected:
    SessionEndInhibitor() = default;
    SessionEndInhibitor(const SessionEndInhibitor&) = default;
    SessionEndInhibitor& operator=(const SessionEndInhibitor&) = default;
};

}  // namespace kestrum

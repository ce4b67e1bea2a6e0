#pragma once

#include "platform/ports/ApplicationWindows.h"
#include "platform/ports/Subscription.h"

#include <functional>

namespace kestrum {

// Keeps one running instance of the application per user: the first instance listens, and a later launch
// hands its request to it and ends.
//
// Contract, for every adapter:
// - `claim` is called once, on the main thread, at launch, before any window exists. It either makes this
//   process the one that listens (`listening`), or delivers `request` to the instance that listens and
//   waits for its acknowledgement (`forwarded`; the caller then exits with status 0), or fails
//   (`failed`: no instance answers and this one cannot listen; the caller runs on without the channel).
//   It blocks for at most a few seconds when an instance exists but does not answer, and treats such an
//   instance as gone.
// - Requests of later launches reach the listening instance's handlers on its main thread, one call per
//   launch, after `claim` returned `listening`.
class SingleInstanceChannel {
  public:
    enum class Outcome { listening, forwarded, failed };
    // What a later launch asks of the running instance: to show its review window, or (kestrum --share)
    // to start League Share with its window; with what proves the user's request to the window manager.
    struct Request {
        enum class Kind { showDashboard, startLeagueShare };
        ActivationToken token;
        Kind kind = Kind::showDashboard;

        friend bool operator==(const Request&, const Request&) = default;
    };
    using Handler = std::function<void(const Request& request)>;

    virtual ~SingleInstanceChannel() = default;

    virtual Outcome claim(const Request& request) = 0;
    [[nodiscard]] virtual Subscription observeRequests(Handler handler) = 0;

  protected:
    SingleInstanceChannel() = default;
    SingleInstanceChannel(const SingleInstanceChannel&) = default;
    SingleInstanceChannel& operator=(const SingleInstanceChannel&) = default;
};

}  // namespace kestrum

#pragma once

#include "platform/ports/SingleInstanceChannel.h"

#include <QByteArray>

#include <functional>
#include <optional>

namespace kestrum {

// One running Kestrum per user. At launch the process claims the single-instance channel: when another
// instance already runs, that one takes this launch's request (its review window, whether or not this
// launch asked for "--dashboard", or League Share for "--share") and this process ends with status 0;
// otherwise this process is the instance, and every later launch's request reaches it, with what proves
// the user's request to the window manager.
//
// Threads: main thread. The channel must outlive it.
class SingleInstanceLaunch {
  public:
    using Request = SingleInstanceChannel::Request;
    using RequestHandler = SingleInstanceChannel::Handler;

    explicit SingleInstanceLaunch(SingleInstanceChannel& channel) : channel_(channel) {}

    // Claims the channel with this launch's `request`. The exit status when this process must end now
    // (the running instance took the request); absent when it runs on, as the instance or, if the channel
    // failed, on its own. From a `listening` claim on, later launches' requests reach `onRequest`.
    std::optional<int> claim(const Request& request, RequestHandler onRequest);

    // What proves this launch's request: the launcher's startup notification id, taken from the
    // environment's DESKTOP_STARTUP_ID before the toolkit reads and clears it, and the display server's
    // time at launch when known.
    static ActivationToken launchToken(const QByteArray& desktopStartupID,
                                       std::optional<quint32> serverTimeMs);

  private:
    SingleInstanceChannel& channel_;
    Subscription requests_;
};

}  // namespace kestrum

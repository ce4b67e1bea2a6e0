#include "core/shell/SingleInstanceLaunch.h"

namespace kestrum {

std::optional<int> SingleInstanceLaunch::claim(const Request& request, RequestHandler onRequest) {
    switch (channel_.claim(request)) {
        case SingleInstanceChannel::Outcome::forwarded:
            return 0;
        case SingleInstanceChannel::Outcome::listening:
            requests_ = channel_.observeRequests(std::move(onRequest));
            return std::nullopt;
        case SingleInstanceChannel::Outcome::failed:
            break;  // runs on without the channel: a second launch then starts a second instance
    }
    return std::nullopt;
}

ActivationToken SingleInstanceLaunch::launchToken(const QByteArray& desktopStartupID,
                                                  std::optional<quint32> serverTimeMs) {
    ActivationToken token;
    token.startupID = QString::fromUtf8(desktopStartupID).trimmed();
    // A startup id proves the request by itself (it carries the launch's time); the server time is the
    // fallback of a launch from a terminal.
    if (token.startupID.isEmpty()) token.eventTimeMs = serverTimeMs;
    return token;
}

}  // namespace kestrum

#pragma once

#include "platform/linux/x11/XcbConnection.h"
#include "platform/ports/ApplicationWindows.h"

#include <optional>

namespace kestrum {

// Asks the window manager to give the focus to a window of ours, with the proof that the user asked for
// it, so that its focus-stealing prevention lets it through: the launch's startup notification id
// (_NET_STARTUP_ID on the window, and the launch's feedback ended with a startup-notification "remove"
// message), and the time of the user's event in the _NET_ACTIVE_WINDOW request (taken from the id's
// "_TIME<n>" part when no event time is given). Main thread; the connection must outlive it.
class X11WindowActivation {
  public:
    explicit X11WindowActivation(XcbConnection& connection) : connection_(connection) {}

    // For a mapped client window; a window not mapped yet is ignored by the window manager, so the
    // caller asks once the window is shown.
    void activate(xcb_window_t window, const ActivationToken& token);

    // The display server's time now, in milliseconds (the clock of X events), found by a round trip
    // through a property change; absent when the server does not answer within a second.
    std::optional<quint32> serverTimeMs();

    // The time a startup id carries at its end ("..._TIME1234"); absent when it carries none.
    static std::optional<quint32> timeFromStartupID(const QString& startupID);

  private:
    void sendStartupRemove(const QString& startupID);

    XcbConnection& connection_;
};

}  // namespace kestrum

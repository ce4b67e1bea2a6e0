#pragma once

#include "platform/linux/x11/XcbConnection.h"

namespace kestrum {

// Whether a window of ours shows in the desktop's task switcher (taskbar, Alt+Tab), through EWMH's
// _NET_WM_STATE_SKIP_TASKBAR. The state of a mapped window belongs to the window manager, so it is asked
// for with a client message to the root window, never by rewriting the property or by changing the
// toolkit's window flags (which would make a new window). A window that is not mapped yet gets the state
// when it is mapped: the caller asks again then. Main thread; the connection must outlive it.
class X11TaskSwitcherState {
  public:
    explicit X11TaskSwitcherState(XcbConnection& connection) : connection_(connection) {}

    // Asks the window manager to add or remove the state of the client window `window`; sent at once
    // (flushed). A window that has vanished is ignored by the server.
    void setSkipsTaskSwitcher(xcb_window_t window, bool skips);

    // Whether the window carries the state now, as the window manager has set it.
    bool skipsTaskSwitcher(xcb_window_t window);

  private:
    XcbConnection& connection_;
};

}  // namespace kestrum

#include "platform/linux/x11/X11TaskSwitcherState.h"

#include <algorithm>

namespace kestrum {

void X11TaskSwitcherState::setSkipsTaskSwitcher(xcb_window_t window, bool skips) {
    xcb_ewmh_connection_t& ewmh = connection_.ewmh();
    // Source "normal application"; the pager state is left alone: the window stays on the desktop's pager.
    xcb_ewmh_request_change_wm_state(
        &ewmh, connection_.screenNumber(), window, skips ? XCB_EWMH_WM_STATE_ADD : XCB_EWMH_WM_STATE_REMOVE,
        ewmh._NET_WM_STATE_SKIP_TASKBAR, XCB_ATOM_NONE, XCB_EWMH_CLIENT_SOURCE_TYPE_NORMAL);
    connection_.flush();
}

bool X11TaskSwitcherState::skipsTaskSwitcher(xcb_window_t window) {
    xcb_ewmh_connection_t& ewmh = connection_.ewmh();
    const auto reply = connection_.wait(
        xcb_get_property_reply, connection_.requestProperty(window, ewmh._NET_WM_STATE, XCB_ATOM_ATOM));
    const std::vector<std::uint32_t> states = XcbConnection::values32(reply.get(), XCB_ATOM_ATOM);
    return std::find(states.begin(), states.end(), ewmh._NET_WM_STATE_SKIP_TASKBAR) != states.end();
}

}  // namespace kestrum

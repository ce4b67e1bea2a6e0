#include "PointerPressRecorder.h"

#include <cstdlib>

namespace kestrum::test {

PointerPressRecorder::PointerPressRecorder(const QRect& frame) {
    window_ = client_.create({frame, QByteArray("recorder"), QByteArray("recorder"), std::nullopt, false});
    // Only one client may select presses on a window; the window's own client selects none.
    connection_ = xcb_connect(nullptr, nullptr);
    const std::uint32_t mask = XCB_EVENT_MASK_BUTTON_PRESS;
    xcb_change_window_attributes(connection_, window_, XCB_CW_EVENT_MASK, &mask);
    std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

PointerPressRecorder::~PointerPressRecorder() {
    xcb_disconnect(connection_);
}

int PointerPressRecorder::presses() {
    while (xcb_generic_event_t* event = xcb_poll_for_event(connection_)) {
        if ((event->response_type & 0x7f) == XCB_BUTTON_PRESS) ++presses_;
        std::free(event);
    }
    return presses_;
}

}  // namespace kestrum::test

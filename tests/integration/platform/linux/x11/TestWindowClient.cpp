#include "integration/platform/linux/x11/TestWindowClient.h"

#include <QElapsedTimer>
#include <QThread>

#include <xcb/xcb_icccm.h>

#include <cstdlib>
#include <cstring>

namespace kestrum::test {

TestWindowClient::TestWindowClient() : connection_(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(connection_) == 0)
        screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
}

bool TestWindowClient::awaitWindowManager(int timeoutMs) {
    const xcb_atom_t wmState = atom("WM_STATE");
    QElapsedTimer elapsed;
    elapsed.start();
    while (elapsed.elapsed() < timeoutMs) {
        const xcb_window_t probe = create({QRect(0, 0, 10, 10), QByteArray("probe"), {}, {}});
        bool managed = false;
        for (int attempt = 0; attempt < 25 && !managed; ++attempt) {
            QThread::msleep(20);
            xcb_get_property_reply_t* state = xcb_get_property_reply(
                connection_, xcb_get_property(connection_, 0, probe, wmState, XCB_ATOM_ANY, 0, 0), nullptr);
            managed = state != nullptr && state->type != XCB_ATOM_NONE;
            std::free(state);
        }
        xcb_destroy_window(connection_, probe);
        sync();
        if (managed) return true;
    }
    return false;
}

xcb_window_t TestWindowClient::create(const Window& wanted) {
    const xcb_window_t window = xcb_generate_id(connection_);
    const QRect& frame = wanted.frame;
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, screen_->root,
                      static_cast<std::int16_t>(frame.x()), static_cast<std::int16_t>(frame.y()),
                      static_cast<std::uint16_t>(frame.width()), static_cast<std::uint16_t>(frame.height()),
                      0, XCB_WINDOW_CLASS_INPUT_OUTPUT, screen_->root_visual, 0, nullptr);
    xcb_size_hints_t hints{};
    xcb_icccm_size_hints_set_position(&hints, 1, frame.x(), frame.y());
    xcb_icccm_size_hints_set_size(&hints, 1, frame.width(), frame.height());
    xcb_icccm_set_wm_normal_hints(connection_, window, &hints);
    if (wanted.netName) {
        setProperty(window, atom("_NET_WM_NAME"), atom("UTF8_STRING"), 8, wanted.netName->size(),
                    wanted.netName->data());
    }
    if (wanted.name)
        setProperty(window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, wanted.name->size(), wanted.name->data());
    if (wanted.pid) setProperty(window, atom("_NET_WM_PID"), XCB_ATOM_CARDINAL, 32, 1, &*wanted.pid);
    if (wanted.dock) {
        const xcb_atom_t dock = atom("_NET_WM_WINDOW_TYPE_DOCK");
        setProperty(window, atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, 1, &dock);
    }
    xcb_map_window(connection_, window);
    sync();
    return window;
}

void TestWindowClient::unmap(xcb_window_t window) {
    xcb_unmap_window(connection_, window);
    sync();
}

void TestWindowClient::raise(xcb_window_t window) {
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection_, window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    sync();
}

void TestWindowClient::focus(xcb_window_t window) {
    xcb_set_input_focus(connection_, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
    sync();
}

void TestWindowClient::publishActiveWindow(xcb_window_t window) {
    setProperty(screen_->root, atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, 32, 1, &window);
    sync();
}

xcb_atom_t TestWindowClient::atom(const char* name) {
    const auto length = static_cast<std::uint16_t>(std::strlen(name));
    xcb_intern_atom_reply_t* reply =
        xcb_intern_atom_reply(connection_, xcb_intern_atom(connection_, 0, length, name), nullptr);
    const xcb_atom_t found = reply != nullptr ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    std::free(reply);
    return found;
}

void TestWindowClient::setProperty(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, int format,
                                   std::size_t count, const void* data) {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, property, type,
                        static_cast<std::uint8_t>(format), static_cast<std::uint32_t>(count), data);
}

void TestWindowClient::sync() {
    std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

}  // namespace kestrum::test

#include "StreamTestWindow.h"

#include <cstdlib>

namespace kestrum::test {

StreamTestWindow::StreamTestWindow(int width, int height, int x, int y) : width_(width), height_(height) {
    connection_ = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection_)) return;
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    window_ = xcb_generate_id(connection_);
    const std::uint32_t background = screen->black_pixel;
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, screen->root, static_cast<std::int16_t>(x),
                      static_cast<std::int16_t>(y), static_cast<std::uint16_t>(width),
                      static_cast<std::uint16_t>(height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      screen->root_visual, XCB_CW_BACK_PIXEL, &background);
    context_ = xcb_generate_id(connection_);
    xcb_create_gc(connection_, context_, window_, 0, nullptr);
    xcb_map_window(connection_, window_);
    sync();
}

StreamTestWindow::~StreamTestWindow() {
    xcb_disconnect(connection_);
}

void StreamTestWindow::sync(xcb_void_cookie_t) {
    std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

void StreamTestWindow::fillRectangle(std::uint32_t rgb, int x, int y, int width, int height) {
    xcb_change_gc(connection_, context_, XCB_GC_FOREGROUND, &rgb);
    const xcb_rectangle_t rectangle{static_cast<std::int16_t>(x), static_cast<std::int16_t>(y),
                                    static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height)};
    xcb_poly_fill_rectangle(connection_, window_, context_, 1, &rectangle);
}

void StreamTestWindow::fillHalves(std::uint32_t leftRgb, std::uint32_t rightRgb) {
    fillRectangle(leftRgb, 0, 0, width_ / 2, height_);
    fillRectangle(rightRgb, width_ / 2, 0, width_ - width_ / 2, height_);
    sync();
}

void StreamTestWindow::resize(int width, int height) {
    const std::uint32_t size[] = {static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height)};
    xcb_configure_window(connection_, window_, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
    width_ = width;
    height_ = height;
    sync();
}

void StreamTestWindow::warpPointer(int x, int y) {
    xcb_warp_pointer(connection_, XCB_NONE, window_, 0, 0, 0, 0, static_cast<std::int16_t>(x),
                     static_cast<std::int16_t>(y));
    sync();
}

}  // namespace kestrum::test

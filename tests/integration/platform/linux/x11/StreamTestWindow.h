#pragma once

#include <xcb/xcb.h>

#include <cstdint>

namespace kestrum::test {

// A plain window of the test's own on the display in DISPLAY, drawn with solid colours, as a game's
// window would be seen by the stream. Every call waits for the server to have done it. Main thread.
class StreamTestWindow {
  public:
    // A mapped top-level window of `width` by `height` pixels at (x, y).
    StreamTestWindow(int width, int height, int x = 0, int y = 0);
    ~StreamTestWindow();
    StreamTestWindow(const StreamTestWindow&) = delete;
    StreamTestWindow& operator=(const StreamTestWindow&) = delete;

    // 0 when the display could not be reached.
    std::uint32_t id() const { return window_; }

    // Colours are 0xRRGGBB.
    void fill(std::uint32_t rgb) { fillHalves(rgb, rgb); }
    void fillHalves(std::uint32_t leftRgb, std::uint32_t rightRgb);
    void resize(int width, int height);
    void unmap() { sync(xcb_unmap_window(connection_, window_)); }
    void map() { sync(xcb_map_window(connection_, window_)); }
    void destroy() { sync(xcb_destroy_window(connection_, window_)); }
    // Puts the pointer at (x, y) inside the window.
    void warpPointer(int x, int y);

  private:
    void fillRectangle(std::uint32_t rgb, int x, int y, int width, int height);
    // Waits until the server has carried out everything sent so far, `request` included.
    void sync(xcb_void_cookie_t request = {});

    xcb_connection_t* connection_ = nullptr;
    xcb_window_t window_ = XCB_NONE;
    xcb_gcontext_t context_ = XCB_NONE;
    int width_;
    int height_;
};

}  // namespace kestrum::test

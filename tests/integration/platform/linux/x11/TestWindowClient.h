#pragma once

#include <QByteArray>
#include <QRect>

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>

namespace kestrum::test {

// A client of the test's X server ($DISPLAY at construction) that makes real top-level windows and plays
// the window manager's part where a test has none. Each call ends with a round trip, so the server has
// acted on it when it returns.
class TestWindowClient {
  public:
    struct Window {
        QRect frame;  // asked for, as user-specified (managers honour it), then decorated by a manager
        std::optional<QByteArray> netName;  // _NET_WM_NAME, UTF-8
        std::optional<QByteArray> name;     // WM_NAME, Latin-1
        std::optional<std::uint32_t> pid;   // _NET_WM_PID
        bool dock = false;                  // _NET_WM_WINDOW_TYPE_DOCK
    };

    TestWindowClient();
    ~TestWindowClient() { xcb_disconnect(connection_); }
    TestWindowClient(const TestWindowClient&) = delete;
    TestWindowClient& operator=(const TestWindowClient&) = delete;

    bool connected() const { return screen_ != nullptr; }
    // Openbox claims the screen a moment before it handles windows, and may lose those mapped meanwhile:
    // maps probes until one is managed (carries WM_STATE); false when none is within `timeoutMs`.
    bool awaitWindowManager(int timeoutMs = 5000);
    // Creates and maps the window.
    xcb_window_t create(const Window& window);
    void unmap(xcb_window_t window);
    void raise(xcb_window_t window);
    void focus(xcb_window_t window);
    // Writes _NET_ACTIVE_WINDOW on the root as a manager does; XCB_WINDOW_NONE for none.
    void publishActiveWindow(xcb_window_t window);

  private:
    xcb_atom_t atom(const char* name);
    void setProperty(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, int format, std::size_t count,
                     const void* data);
    void sync();

    xcb_connection_t* connection_ = nullptr;
    xcb_screen_t* screen_ = nullptr;
};

}  // namespace kestrum::test

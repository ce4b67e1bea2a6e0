#pragma once

#include "TestWindowClient.h"

#include <QRect>

#include <xcb/xcb.h>

namespace kestrum::test {

// A top-level window of another X client (managed, at `frame`), whose pointer presses are counted on a
// connection of its own: what lies below a window that should let clicks through. Main thread.
class PointerPressRecorder {
  public:
    explicit PointerPressRecorder(const QRect& frame);
    ~PointerPressRecorder();
    PointerPressRecorder(const PointerPressRecorder&) = delete;
    PointerPressRecorder& operator=(const PointerPressRecorder&) = delete;

    // The presses received so far (reads what has arrived, never waits).
    int presses();
    xcb_window_t window() const { return window_; }

  private:
    TestWindowClient client_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    xcb_connection_t* connection_ = nullptr;
    int presses_ = 0;
};

}  // namespace kestrum::test

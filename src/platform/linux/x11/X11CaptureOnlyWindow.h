#pragma once

#include "platform/linux/x11/XcbConnection.h"

#include <QByteArray>

namespace kestrum {

// Gives a window of ours what a window meant to be captured by other programs needs on X11: its identifier
// as both parts of WM_CLASS (instance and class) and as WM_WINDOW_ROLE, so that a capture program's list
// and a window rule can find it, and an empty input region (XFixes, the Shape extension's input kind), so
// that the pointer's clicks go to the window below. It stays an ordinary mapped window whose pixels are
// its content. Main thread; the connection must outlive it.
class X11CaptureOnlyWindow {
  public:
    explicit X11CaptureOnlyWindow(XcbConnection& connection);

    // Writes the properties and the input region of `window` and flushes; a vanished window is ignored by
    // the server. The input region needs XFixes 2 or later: without it only the properties are written.
    void apply(xcb_window_t window, const QByteArray& identifier);

    // Once the window is mapped: a window manager that reparents it into a frame of its own may leave the
    // frame taking the pointer over the window (openbox copies only the bounding shape), so the frame gets
    // the empty input region too. Call it after every mapping and resize (the manager may reset the
    // frame's shape then); nothing happens for a window that is not reparented.
    void passInputThroughFrame(xcb_window_t window);

    bool hasInputShapes() const { return hasInputShapes_; }

  private:
    void clearInputRegion(xcb_window_t window);

    XcbConnection& connection_;
    bool hasInputShapes_ = false;  // the server speaks XFixes 2+, asked once at construction
};

}  // namespace kestrum

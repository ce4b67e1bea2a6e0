#pragma once

#include "base/common/Result.h"
#include "platform/linux/x11/X11StreamSharedMemory.h"

#include <xcb/damage.h>
#include <xcb/xcb.h>
#include <xcb/xfixes.h>

#include <cstdint>
#include <optional>
#include <tuple>

namespace kestrum {

enum class X11StreamReadOutcome {
    picture,     // the window's pixels were read
    unreadable,  // the window exists but has no picture now (unmapped, or not viewable yet)
    failed,      // this read went wrong; the next one may succeed
    ended,       // the window was destroyed or the display connection lost: no read will succeed again
};

// What one read of the window gave. The pixels are BGRX, `bytesPerRow` apart, in the reader's shared
// memory: valid until the next read.
struct X11StreamRead {
    X11StreamReadOutcome outcome = X11StreamReadOutcome::failed;
    const std::uint8_t* pixels = nullptr;
    int width = 0;
    int height = 0;
    int bytesPerRow = 0;
    // The window was damaged since the previous picture, or the drawn cursor moved or changed shape.
    bool changed = false;
};

// Reads one window's picture on a connection of its own: the window is redirected (Composite,
// automatic, so the desktop shows it as before) and its backing pixmap, named again after every map and
// resize, is copied by MIT-SHM into shared memory. Damage reports on the window tell a changed picture
// from a repeated one; XFixes gives the pointer's sprite.
//
// The whole object lives on the capture thread: `open`, `read` and `close` are called there only.
class X11StreamWindowReader {
  public:
    X11StreamWindowReader() = default;
    ~X11StreamWindowReader();
    X11StreamWindowReader(const X11StreamWindowReader&) = delete;
    X11StreamWindowReader& operator=(const X11StreamWindowReader&) = delete;

    // Connects to the display named by DISPLAY and starts watching `windowID`. An Error when the display
    // cannot be reached, lacks an extension, or the window does not exist.
    Status open(std::uint32_t windowID);
    // Reads the picture once, with the pointer's sprite drawn in when `withCursor`.
    X11StreamRead read(bool withCursor);
    // Leaves the display; the server drops the redirection, the damage and the segment with the
    // connection.
    void close();

    // Why reads ended (outcome `ended`); absent while they have not.
    const std::optional<Error>& endError() const { return endError_; }

  private:
    Status checkExtensions();
    Status watchWindow();
    void drainEvents();
    void handleEvent(const xcb_generic_event_t& event);
    bool namePixmap();
    void releasePixmap();
    X11StreamRead readPixmap(bool withCursor);
    bool drawCursor(xcb_xfixes_get_cursor_image_cookie_t sprite, xcb_translate_coordinates_cookie_t origin);
    void end(const QString& description);

    xcb_connection_t* connection_ = nullptr;
    xcb_window_t window_ = XCB_NONE;
    xcb_window_t root_ = XCB_NONE;
    xcb_pixmap_t pixmap_ = XCB_NONE;  // the window's backing pixmap while named
    xcb_damage_damage_t damage_ = XCB_NONE;
    std::uint8_t damageNotifyType_ = 0;  // the response type of this connection's DamageNotify
    X11StreamSharedMemory memory_;
    bool mapped_ = false;      // the window itself is mapped (an ancestor may still hide it)
    bool needsPixmap_ = true;  // mapped or resized since the pixmap was named
    bool damaged_ = true;      // a DamageNotify came since the last repair; the first picture is new
    int width_ = 0;            // of the named pixmap's window, without its border, in pixels
    int height_ = 0;
    int borderWidth_ = 0;
    // The sprite last drawn: where, and which (the server's serial), so that a moved pointer counts
    // as a change of the picture. Absent when it was not on the window.
    std::optional<std::tuple<int, int, std::uint32_t>> lastCursor_;
    std::optional<Error> endError_;
};

}  // namespace kestrum

#pragma once

#include "platform/linux/proc/ProcessTable.h"
#include "platform/ports/ShareableContent.h"

#include <QString>

#include <memory>

namespace kestrum {

class XcbConnection;

// The shareable content of an X11 desktop.
//
// Windows: the clients a window manager lists in `_NET_CLIENT_LIST_STACKING` (top-most first) or else
// `_NET_CLIENT_LIST` (in the order they were mapped); without a window manager, the children of the root
// window, top-most first, each replaced by its client (the descendant carrying WM_STATE) where a manager
// reparented it. Input-only windows are left out. For each: the title from `_NET_WM_NAME` (UTF-8), else
// `WM_NAME`; the frame of the client area (geometry at the window's position on the root, decorations
// excluded); on screen when its map state is viewable; the owner from `_NET_WM_PID` through the process
// table, with the process id alone (empty names) when the process cannot be read, and no owner without
// `_NET_WM_PID`. The desktop's own windows are those of type `_NET_WM_WINDOW_TYPE_DESKTOP` or `_DOCK`.
//
// Displays: the RandR monitors (1.5), numbered from 1 in the server's order; the whole screen as display 1
// when RandR has none. Applications: the distinct owners of the listed windows, in order of first
// appearance.
//
// The connection is opened at the first call and kept; a broken one is replaced at the next call. A
// window that vanishes while it is described is left out. Main thread only, as the port says.
class X11ShareableContent final : public ShareableContent {
  public:
    // `displayName` empty: $DISPLAY at the time the connection is opened.
    explicit X11ShareableContent(QString displayName = {}, ProcessTable processes = ProcessTable());
    ~X11ShareableContent() override;
    X11ShareableContent(const X11ShareableContent&) = delete;
    X11ShareableContent& operator=(const X11ShareableContent&) = delete;

    Result<ShareableContentSnapshot> currentContent(bool excludingDesktopWindows,
                                                    bool onScreenWindowsOnly) override;

  private:
    // The open connection, opened now if there is none or the last one broke.
    Result<XcbConnection*> connection();

    QString displayName_;
    ProcessTable processes_;
    std::unique_ptr<XcbConnection> connection_;
};

}  // namespace kestrum

#include "platform/linux/x11/X11CaptureOnlyWindow.h"

#include <xcb/shape.h>
#include <xcb/xfixes.h>

namespace kestrum {

X11CaptureOnlyWindow::X11CaptureOnlyWindow(XcbConnection& connection) : connection_(connection) {
    // XFixes must be told the client's version before any other request of it.
    const auto reply = connection_.wait(xcb_xfixes_query_version_reply,
                                        xcb_xfixes_query_version(connection_.connection(), 4, 0));
    hasInputShapes_ = reply && reply->major_version >= 2;
}

void X11CaptureOnlyWindow::apply(xcb_window_t window, const QByteArray& identifier) {
    xcb_connection_t* connection = connection_.connection();
    // WM_CLASS holds the instance and the class, each ended by a NUL.
    QByteArray windowClass = identifier;
    windowClass.append('\0').append(identifier).append('\0');
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(windowClass.size()), windowClass.constData());
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, connection_.atom("WM_WINDOW_ROLE"),
                        XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(identifier.size()),
                        identifier.constData());
    clearInputRegion(window);
    connection_.flush();
}

void X11CaptureOnlyWindow::passInputThroughFrame(xcb_window_t window) {
    if (!hasInputShapes_) return;
    // The frame is the ancestor whose parent is the root.
    xcb_window_t frame = window;
    for (;;) {
        const auto tree =
            connection_.wait(xcb_query_tree_reply, xcb_query_tree(connection_.connection(), frame));
        if (!tree) return;  // vanished meanwhile
        if (tree->parent == tree->root || tree->parent == XCB_WINDOW_NONE) break;
        frame = tree->parent;
    }
    if (frame == window) return;
    clearInputRegion(frame);
    connection_.flush();
}

void X11CaptureOnlyWindow::clearInputRegion(xcb_window_t window) {
    if (!hasInputShapes_) return;
    xcb_connection_t* connection = connection_.connection();
    const xcb_xfixes_region_t empty = xcb_generate_id(connection);
    xcb_xfixes_create_region(connection, empty, 0, nullptr);
    xcb_xfixes_set_window_shape_region(connection, window, XCB_SHAPE_SK_INPUT, 0, 0, empty);
    xcb_xfixes_destroy_region(connection, empty);
}

}  // namespace kestrum

#include "platform/linux/x11/X11WindowStreamFactory.h"

#include "platform/linux/x11/X11WindowStream.h"

#include <xcb/xcb.h>

#include <cstdlib>

namespace kestrum {

QSizeF X11WindowStreamFactory::sourcePixelSize(const ShareableWindow& window) const {
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    QSizeF size = window.frame.size();
    if (!xcb_connection_has_error(connection)) {
        xcb_get_geometry_reply_t* geometry =
            xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window.windowID), nullptr);
        if (geometry) size = QSizeF(geometry->width, geometry->height);
        std::free(geometry);
    }
    xcb_disconnect(connection);
    return size;
}

std::unique_ptr<WindowStream> X11WindowStreamFactory::makeWindowStream(
    const ShareableWindow& window, const WindowStreamConfiguration& configuration) {
    return std::make_unique<X11WindowStream>(window, configuration);
}

}  // namespace kestrum

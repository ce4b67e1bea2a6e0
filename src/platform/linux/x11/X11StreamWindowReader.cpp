#include "platform/linux/x11/X11StreamWindowReader.h"

#include "platform/linux/x11/X11StreamCursorOverlay.h"

#include <xcb/composite.h>

#include <cstdlib>
#include <memory>
#include <utility>

namespace kestrum {

namespace {

constexpr std::uint32_t kAllPlanes = ~0u;
constexpr std::size_t kBytesPerPixel = 4;

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};
// XCB hands replies and errors out in malloc'd memory.
template <class Reply>
using XcbReply = std::unique_ptr<Reply, FreeReply>;

const QString kWindowGone = QStringLiteral("The window is gone");

Error missingExtension(const char* name) {
    return Error::withDescription(
        QStringLiteral("The X display lacks the %1 extension needed to read a window.")
            .arg(QLatin1String(name)));
}

// True when a depth-`depth` picture comes as 32-bit pixels in the order blue, green, red, unused.
bool isBgrxLayout(const xcb_setup_t& setup, std::uint8_t depth) {
    if (setup.image_byte_order != XCB_IMAGE_ORDER_LSB_FIRST || (depth != 24 && depth != 32)) return false;
    for (auto formats = xcb_setup_pixmap_formats_iterator(&setup); formats.rem; xcb_format_next(&formats)) {
        if (formats.data->depth == depth) return formats.data->bits_per_pixel == 32;
    }
    return false;
}

}  // namespace

X11StreamWindowReader::~X11StreamWindowReader() {
    close();
}

Status X11StreamWindowReader::open(std::uint32_t windowID) {
    close();
    endError_.reset();
    window_ = windowID;
    connection_ = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection_)) {
        close();
        return Error::withDescription(QStringLiteral("The X display cannot be opened."));
    }
    Status ready = checkExtensions();
    if (ready.ok()) ready = watchWindow();
    if (!ready.ok()) close();
    return ready;
}

void X11StreamWindowReader::close() {
    if (connection_) xcb_disconnect(connection_);
    connection_ = nullptr;
    memory_.unmap();
    pixmap_ = XCB_NONE;
    damage_ = XCB_NONE;
    lastCursor_.reset();
}

Status X11StreamWindowReader::checkExtensions() {
    const std::pair<xcb_extension_t*, const char*> extensions[] = {{&xcb_composite_id, "Composite"},
                                                                   {&xcb_damage_id, "DAMAGE"},
                                                                   {&xcb_shm_id, "MIT-SHM"},
                                                                   {&xcb_xfixes_id, "XFIXES"}};
    for (const auto& [extension, name] : extensions) xcb_prefetch_extension_data(connection_, extension);
    for (const auto& [extension, name] : extensions) {
        const xcb_query_extension_reply_t* data = xcb_get_extension_data(connection_, extension);
        if (!data || !data->present) return missingExtension(name);
    }
    damageNotifyType_ = xcb_get_extension_data(connection_, &xcb_damage_id)->first_event + XCB_DAMAGE_NOTIFY;
    // Each extension must be told the client's version before its other requests are used.
    const auto composite = xcb_composite_query_version(connection_, 0, 4);
    const auto damage = xcb_damage_query_version(connection_, 1, 1);
    const auto shm = xcb_shm_query_version(connection_);
    const auto xfixes = xcb_xfixes_query_version(connection_, 4, 0);
    const XcbReply<xcb_composite_query_version_reply_t> compositeVersion(
        xcb_composite_query_version_reply(connection_, composite, nullptr));
    const XcbReply<xcb_damage_query_version_reply_t> damageVersion(
        xcb_damage_query_version_reply(connection_, damage, nullptr));
    const XcbReply<xcb_shm_query_version_reply_t> shmVersion(
        xcb_shm_query_version_reply(connection_, shm, nullptr));
    const XcbReply<xcb_xfixes_query_version_reply_t> xfixesVersion(
        xcb_xfixes_query_version_reply(connection_, xfixes, nullptr));
    // NameWindowPixmap came with Composite 0.2; memory handed over by file descriptor with MIT-SHM 1.2.
    if (!compositeVersion || (compositeVersion->major_version == 0 && compositeVersion->minor_version < 2)) {
        return missingExtension("Composite 0.2");
    }
    if (!damageVersion) return missingExtension("DAMAGE");
    if (!shmVersion || (shmVersion->major_version == 1 && shmVersion->minor_version < 2)) {
        return missingExtension("MIT-SHM 1.2");
    }
    if (!xfixesVersion) return missingExtension("XFIXES");
    return Status::success();
}

Status X11StreamWindowReader::watchWindow() {
    const std::uint32_t eventMask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    // Event selections are per client: this connection's mask leaves the owner's and the window
    // manager's untouched.
    const auto select =
        xcb_change_window_attributes_checked(connection_, window_, XCB_CW_EVENT_MASK, &eventMask);
    const auto geometry = xcb_get_geometry(connection_, window_);
    const auto attributes = xcb_get_window_attributes(connection_, window_);
    XcbReply<xcb_generic_error_t> selectError(xcb_request_check(connection_, select));
    const XcbReply<xcb_get_geometry_reply_t> geometryReply(
        xcb_get_geometry_reply(connection_, geometry, nullptr));
    const XcbReply<xcb_get_window_attributes_reply_t> attributesReply(
        xcb_get_window_attributes_reply(connection_, attributes, nullptr));
    if (selectError || !geometryReply || !attributesReply) return Error::withDescription(kWindowGone);
    if (!isBgrxLayout(*xcb_get_setup(connection_), geometryReply->depth)) {
        return Error::withDescription(
            QStringLiteral("The window's pixel format (depth %1) cannot be read.").arg(geometryReply->depth));
    }
    root_ = geometryReply->root;
    mapped_ = attributesReply->map_state != XCB_MAP_STATE_UNMAPPED;
    needsPixmap_ = true;
    damaged_ = true;
    const auto redirect =
        xcb_composite_redirect_window_checked(connection_, window_, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
    XcbReply<xcb_generic_error_t> redirectError(xcb_request_check(connection_, redirect));
    if (redirectError) {
        return Error::withDescription(
            QStringLiteral("The window cannot be redirected for capture (X error %1).")
                .arg(redirectError->error_code));
    }
    damage_ = xcb_generate_id(connection_);
    xcb_damage_create(connection_, damage_, window_, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
    xcb_flush(connection_);
    return Status::success();
}

void X11StreamWindowReader::end(const QString& description) {
    if (!endError_) endError_ = Error::withDescription(description);
}

void X11StreamWindowReader::drainEvents() {
    while (xcb_generic_event_t* event = xcb_poll_for_event(connection_)) {
        handleEvent(*event);
        std::free(event);
    }
    if (xcb_connection_has_error(connection_)) end(QStringLiteral("The X display connection was lost"));
}

void X11StreamWindowReader::handleEvent(const xcb_generic_event_t& event) {
    const std::uint8_t type = event.response_type & 0x7F;
    if (type == damageNotifyType_) {
        damaged_ = true;
        return;
    }
    switch (type) {
        case XCB_DESTROY_NOTIFY:
            if (reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window == window_)
                end(kWindowGone);
            return;
        case XCB_UNMAP_NOTIFY:
            if (reinterpret_cast<const xcb_unmap_notify_event_t&>(event).window != window_) return;
            mapped_ = false;
            releasePixmap();
            return;
        case XCB_MAP_NOTIFY:
            if (reinterpret_cast<const xcb_map_notify_event_t&>(event).window != window_) return;
            mapped_ = true;
            needsPixmap_ = true;
            return;
        case XCB_CONFIGURE_NOTIFY: {
            const auto& configure = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
            if (configure.window != window_) return;
            // A resized window has a new backing pixmap; the named one keeps the old picture. A move
            // changes neither.
            if (configure.width != width_ || configure.height != height_ ||
                configure.border_width != borderWidth_) {
                needsPixmap_ = true;
            }
            return;
        }
        default:
            // Errors of requests sent unchecked (the damage repair) show in the read that follows them.
            return;
    }
}

void X11StreamWindowReader::releasePixmap() {
    if (pixmap_ != XCB_NONE) xcb_free_pixmap(connection_, pixmap_);
    pixmap_ = XCB_NONE;
    needsPixmap_ = true;
}

bool X11StreamWindowReader::namePixmap() {
    releasePixmap();
    const xcb_pixmap_t pixmap = xcb_generate_id(connection_);
    const auto name = xcb_composite_name_window_pixmap_checked(connection_, window_, pixmap);
    const auto geometry = xcb_get_geometry(connection_, window_);
    XcbReply<xcb_generic_error_t> nameError(xcb_request_check(connection_, name));
    const XcbReply<xcb_get_geometry_reply_t> geometryReply(
        xcb_get_geometry_reply(connection_, geometry, nullptr));
    if (!geometryReply) {
        // Destroyed before its DestroyNotify reached this connection.
        end(kWindowGone);
        return false;
    }
    // BadMatch: mapped, but an ancestor (a window manager's frame) is not, so nothing is drawn.
    if (nameError) return false;
    pixmap_ = pixmap;
    width_ = geometryReply->width;
    height_ = geometryReply->height;
    borderWidth_ = geometryReply->border_width;
    needsPixmap_ = false;
    damaged_ = true;
    return true;
}

X11StreamRead X11StreamWindowReader::read(bool withCursor) {
    if (!connection_) return {X11StreamReadOutcome::ended};
    drainEvents();
    if (endError_) return {X11StreamReadOutcome::ended};
    if (!mapped_) return {X11StreamReadOutcome::unreadable};
    if (needsPixmap_ && !namePixmap()) {
        return {endError_ ? X11StreamReadOutcome::ended : X11StreamReadOutcome::unreadable};
    }
    const std::size_t byteCount =
        static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_) * kBytesPerPixel;
    if (!memory_.reserve(connection_, byteCount).ok()) return {X11StreamReadOutcome::failed};
    return readPixmap(withCursor);
}

X11StreamRead X11StreamWindowReader::readPixmap(bool withCursor) {
    X11StreamRead result{X11StreamReadOutcome::failed};
    result.changed = damaged_;
    // The repair goes first, so that drawing during the copy is reported for the next read.
    if (damaged_) xcb_damage_subtract(connection_, damage_, XCB_NONE, XCB_NONE);
    damaged_ = false;
    // The named pixmap includes the border; the picture is the inside.
    const auto image = xcb_shm_get_image(
        connection_, pixmap_, static_cast<std::int16_t>(borderWidth_),
        static_cast<std::int16_t>(borderWidth_), static_cast<std::uint16_t>(width_),
        static_cast<std::uint16_t>(height_), kAllPlanes, XCB_IMAGE_FORMAT_Z_PIXMAP, memory_.segment(), 0);
    // The sprite and the window's place on the screen travel in the same round trip as the picture.
    const auto sprite =
        withCursor ? xcb_xfixes_get_cursor_image(connection_) : xcb_xfixes_get_cursor_image_cookie_t{};
    const auto origin = withCursor ? xcb_translate_coordinates(connection_, window_, root_, 0, 0)
                                   : xcb_translate_coordinates_cookie_t{};
    const XcbReply<xcb_shm_get_image_reply_t> imageReply(
        xcb_shm_get_image_reply(connection_, image, nullptr));
    if (!imageReply) {
        // Most likely a pixmap outdated by a resize whose notice is still on its way: name it again.
        if (withCursor) {
            xcb_discard_reply(connection_, sprite.sequence);
            xcb_discard_reply(connection_, origin.sequence);
        }
        needsPixmap_ = true;
        damaged_ = true;
        if (xcb_connection_has_error(connection_)) end(QStringLiteral("The X display connection was lost"));
        result.outcome = endError_ ? X11StreamReadOutcome::ended : X11StreamReadOutcome::failed;
        return result;
    }
    result.outcome = X11StreamReadOutcome::picture;
    result.pixels = memory_.data();
    result.width = width_;
    result.height = height_;
    result.bytesPerRow = width_ * static_cast<int>(kBytesPerPixel);
    if (withCursor) {
        result.changed = drawCursor(sprite, origin) || result.changed;
    } else {
        lastCursor_.reset();
    }
    return result;
}

bool X11StreamWindowReader::drawCursor(xcb_xfixes_get_cursor_image_cookie_t sprite,
                                       xcb_translate_coordinates_cookie_t origin) {
    const XcbReply<xcb_xfixes_get_cursor_image_reply_t> spriteReply(
        xcb_xfixes_get_cursor_image_reply(connection_, sprite, nullptr));
    const XcbReply<xcb_translate_coordinates_reply_t> originReply(
        xcb_translate_coordinates_reply(connection_, origin, nullptr));
    std::optional<std::tuple<int, int, std::uint32_t>> drawn;
    if (spriteReply && originReply && originReply->same_screen) {
        const X11StreamCursorSprite cursor{xcb_xfixes_get_cursor_image_cursor_image(spriteReply.get()),
                                           spriteReply->width, spriteReply->height,
                                           spriteReply->x - spriteReply->xhot - originReply->dst_x,
                                           spriteReply->y - spriteReply->yhot - originReply->dst_y};
        if (drawCursorSprite(memory_.data(), width_, height_, width_ * static_cast<int>(kBytesPerPixel),
                             cursor)) {
            drawn = std::tuple(cursor.left, cursor.top, spriteReply->cursor_serial);
        }
    }
    const bool changed = drawn != lastCursor_;
    lastCursor_ = drawn;
    return changed;
}

}  // namespace kestrum

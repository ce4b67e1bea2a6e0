#include "platform/linux/x11/XcbConnection.h"

#include <xcb/randr.h>
#include <xcb/xcbext.h>

#include <cstring>

namespace kestrum {

namespace {

QString describedDisplay(const QString& displayName) {
    if (!displayName.isEmpty()) return displayName;
    const QString fromEnvironment = qEnvironmentVariable("DISPLAY");
    return fromEnvironment.isEmpty() ? QStringLiteral("(DISPLAY is not set)") : fromEnvironment;
}

const xcb_screen_t* screenOfNumber(xcb_connection_t* connection, int screenNumber) {
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int index = 0; screens.rem > 0; xcb_screen_next(&screens), ++index) {
        if (index == screenNumber) return screens.data;
    }
    return nullptr;
}

}  // namespace

Result<std::unique_ptr<XcbConnection>> XcbConnection::open(const QString& displayName) {
    const QByteArray name = displayName.toLocal8Bit();
    int screenNumber = 0;
    // xcb_connect always gives a connection object, an errored one when no server answers; it must be
    // disconnected either way.
    xcb_connection_t* connection = xcb_connect(name.isEmpty() ? nullptr : name.constData(), &screenNumber);
    const xcb_screen_t* screen =
        xcb_connection_has_error(connection) == 0 ? screenOfNumber(connection, screenNumber) : nullptr;
    if (screen == nullptr) {
        xcb_disconnect(connection);
        return Error{QStringLiteral("X11"), 1,
                     QStringLiteral("No X display answers at %1.").arg(describedDisplay(displayName)),
                     nullptr};
    }
    return std::unique_ptr<XcbConnection>(new XcbConnection(connection, screenNumber, screen));
}

XcbConnection::XcbConnection(xcb_connection_t* connection, int screenNumber, const xcb_screen_t* screen)
    : connection_(connection), screenNumber_(screenNumber), screen_(screen) {}

XcbConnection::~XcbConnection() {
    if (ewmh_) xcb_ewmh_connection_wipe(ewmh_.get());
    xcb_disconnect(connection_);
}

int XcbConnection::fileDescriptor() const {
    return xcb_get_file_descriptor(connection_);
}

bool XcbConnection::hasError() const {
    return xcb_connection_has_error(connection_) != 0;
}

xcb_ewmh_connection_t& XcbConnection::ewmh() {
    if (!ewmh_) {
        ewmh_ = std::make_unique<xcb_ewmh_connection_t>();
        std::memset(ewmh_.get(), 0, sizeof(xcb_ewmh_connection_t));
        xcb_intern_atom_cookie_t* cookies = xcb_ewmh_init_atoms(connection_, ewmh_.get());
        xcb_generic_error_t* error = nullptr;
        // Frees the cookies. On a broken connection the atoms stay 0 (None), which matches no property:
        // every read then finds nothing, which is what a dead display has to say.
        xcb_ewmh_init_atoms_replies(ewmh_.get(), cookies, &error);
        std::free(error);
    }
    return *ewmh_;
}

xcb_atom_t XcbConnection::wmStateAtom() {
    if (!wmState_) {
        static constexpr char kName[] = "WM_STATE";
        const auto reply =
            wait(xcb_intern_atom_reply, xcb_intern_atom(connection_, 0, sizeof(kName) - 1, kName));
        wmState_ = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    }
    return *wmState_;
}

xcb_atom_t XcbConnection::atom(const QByteArray& name) {
    const auto known = atoms_.find(name);
    if (known != atoms_.end()) return known->second;
    const auto reply =
        wait(xcb_intern_atom_reply,
             xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.constData()));
    if (!reply) return XCB_ATOM_NONE;  // not kept: a broken connection stays broken anyway
    atoms_.emplace(name, reply->atom);
    return reply->atom;
}

bool XcbConnection::supportsRandrMonitors() {
    if (!randrMonitors_) {
        const xcb_query_extension_reply_t* extension = xcb_get_extension_data(connection_, &xcb_randr_id);
        bool supported = false;
        if (extension != nullptr && extension->present != 0) {
            // RandR wants the client's version announced before other requests; GetMonitors came in 1.5.
            const auto version =
                wait(xcb_randr_query_version_reply, xcb_randr_query_version(connection_, 1, 5));
            supported = version && (version->major_version > 1 ||
                                    (version->major_version == 1 && version->minor_version >= 5));
        }
        randrMonitors_ = supported;
    }
    return *randrMonitors_;
}

xcb_get_property_cookie_t XcbConnection::requestProperty(xcb_window_t window, xcb_atom_t property,
                                                         xcb_atom_t type, std::uint32_t lengthLongs) const {
    return xcb_get_property(connection_, 0, window, property, type, 0, lengthLongs);
}

void XcbConnection::dispatch(const EventHandler& onEvent) {
    for (bool progressed = true; progressed;) {
        progressed = false;
        // Reads the socket when nothing is queued, so the replies that came with the events are in too.
        while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_)}) {
            onEvent(*event);
            progressed = true;
        }
        if (completeArrivedReplies()) progressed = true;
    }
    flush();
}

void XcbConnection::flush() const {
    xcb_flush(connection_);
}

bool XcbConnection::completeArrivedReplies() {
    bool completed = false;
    while (!pending_.empty()) {
        void* reply = nullptr;
        xcb_generic_error_t* error = nullptr;
        if (xcb_poll_for_reply(connection_, pending_.front().sequence, &reply, &error) == 0) break;
        std::free(error);
        const Reply<void> owned(reply);
        // Moved out first: the handler may queue further requests behind it.
        const PendingReply done = std::move(pending_.front());
        pending_.pop_front();
        done.handler(owned.get());
        completed = true;
    }
    return completed;
}

bool XcbConnection::exists(const xcb_get_property_reply_t* reply) {
    return reply != nullptr && reply->type != XCB_ATOM_NONE;
}

std::vector<std::uint32_t> XcbConnection::values32(const xcb_get_property_reply_t* reply, xcb_atom_t type) {
    if (!exists(reply) || reply->type != type || reply->format != 32) return {};
    // The property's value is not guaranteed to be aligned for uint32_t reads in every build; copy it.
    const int length = xcb_get_property_value_length(reply);
    std::vector<std::uint32_t> values(static_cast<std::size_t>(length) / sizeof(std::uint32_t));
    std::memcpy(values.data(), xcb_get_property_value(reply), values.size() * sizeof(std::uint32_t));
    return values;
}

std::optional<QString> XcbConnection::text(const xcb_get_property_reply_t* reply) {
    if (!exists(reply) || reply->format != 8) return std::nullopt;
    const auto* bytes = static_cast<const char*>(xcb_get_property_value(reply));
    const int length = xcb_get_property_value_length(reply);
    if (reply->type == ewmh().UTF8_STRING) return QString::fromUtf8(bytes, length);
    return QString::fromLatin1(bytes, length);
}

}  // namespace kestrum

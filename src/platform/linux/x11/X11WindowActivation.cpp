#include "platform/linux/x11/X11WindowActivation.h"

#include <QRegularExpression>
#include <QThread>

#include <algorithm>
#include <cstring>

namespace kestrum {

namespace {

// A value of a startup-notification message: quoted, with quotes and backslashes escaped, when it holds a
// space, a quote or a backslash.
QByteArray startupMessageValue(const QString& value) {
    QByteArray bytes = value.toUtf8();
    if (!bytes.contains(' ') && !bytes.contains('"') && !bytes.contains('\\')) return bytes;
    bytes.replace('\\', "\\\\").replace('"', "\\\"");
    return '"' + bytes + '"';
}

}  // namespace

void X11WindowActivation::activate(xcb_window_t window, const ActivationToken& token) {
    xcb_ewmh_connection_t& ewmh = connection_.ewmh();
    if (!token.startupID.isEmpty()) {
        const QByteArray id = token.startupID.toUtf8();
        xcb_change_property(connection_.connection(), XCB_PROP_MODE_REPLACE, window,
                            connection_.atom(QByteArrayLiteral("_NET_STARTUP_ID")), ewmh.UTF8_STRING, 8,
                            static_cast<std::uint32_t>(id.size()), id.constData());
    }
    const quint32 timestamp =
        token.eventTimeMs.value_or(timeFromStartupID(token.startupID).value_or(XCB_CURRENT_TIME));
    xcb_ewmh_request_change_active_window(&ewmh, connection_.screenNumber(), window,
                                          XCB_EWMH_CLIENT_SOURCE_TYPE_NORMAL, timestamp, XCB_NONE);
    if (!token.startupID.isEmpty()) sendStartupRemove(token.startupID);
    connection_.flush();
}

std::optional<quint32> X11WindowActivation::timeFromStartupID(const QString& startupID) {
    static const QRegularExpression timePart(QStringLiteral("_TIME(\\d+)$"));
    const QRegularExpressionMatch match = timePart.match(startupID);
    if (!match.hasMatch()) return std::nullopt;
    bool ok = false;
    const quint32 time = match.captured(1).toUInt(&ok);
    if (!ok) return std::nullopt;
    return time;
}

std::optional<quint32> X11WindowActivation::serverTimeMs() {
    xcb_connection_t* connection = connection_.connection();
    const xcb_window_t window = xcb_generate_id(connection);
    const std::uint32_t eventMask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, connection_.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &eventMask);
    const xcb_atom_t property = connection_.atom(QByteArrayLiteral("_KESTRUM_TIME"));
    xcb_change_property(connection, XCB_PROP_MODE_APPEND, window, property, XCB_ATOM_STRING, 8, 0, nullptr);
    connection_.flush();
    std::optional<quint32> time;
    for (int waitedMs = 0; !time && waitedMs < 1000 && !connection_.hasError(); ++waitedMs) {
        // Other events on this connection are ours too (nothing else selects on it), and dropped.
        while (xcb_generic_event_t* event = xcb_poll_for_event(connection)) {
            if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY) {
                const auto* notify = reinterpret_cast<const xcb_property_notify_event_t*>(event);
                if (notify->window == window) time = notify->time;
            }
            std::free(event);
        }
        if (!time) QThread::msleep(1);
    }
    xcb_destroy_window(connection, window);
    connection_.flush();
    return time;
}

void X11WindowActivation::sendStartupRemove(const QString& startupID) {
    // The startup-notification message travels in pieces of 20 bytes, the first as _NET_STARTUP_INFO_BEGIN,
    // the rest as _NET_STARTUP_INFO, from a window of the sender, ending with a zero byte.
    xcb_connection_t* connection = connection_.connection();
    const xcb_window_t sender = xcb_generate_id(connection);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, sender, connection_.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    const QByteArray message = QByteArrayLiteral("remove: ID=") + startupMessageValue(startupID) + '\0';
    const xcb_atom_t begin = connection_.atom(QByteArrayLiteral("_NET_STARTUP_INFO_BEGIN"));
    const xcb_atom_t more = connection_.atom(QByteArrayLiteral("_NET_STARTUP_INFO"));
    for (qsizetype offset = 0; offset < message.size(); offset += 20) {
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 8;
        event.window = sender;
        event.type = offset == 0 ? begin : more;
        const qsizetype length = std::min<qsizetype>(20, message.size() - offset);
        std::memcpy(event.data.data8, message.constData() + offset, static_cast<std::size_t>(length));
        xcb_send_event(connection, 0, connection_.root(), XCB_EVENT_MASK_PROPERTY_CHANGE,
                       reinterpret_cast<const char*>(&event));
    }
    xcb_destroy_window(connection, sender);
}

}  // namespace kestrum

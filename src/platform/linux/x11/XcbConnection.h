#pragma once

#include "base/common/Result.h"

#include <QByteArray>
#include <QString>

#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

#include <cstdint>
#include <cstdlib>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace kestrum {

// One client connection to an X display, shared by the desktop adapters (workspace, shareable content,
// capture access), with the atoms they read: EWMH's, interned in one pipelined batch on first use, and
// WM_STATE.
//
// Two ways to talk to the server: `wait` blocks for one reply (the shareable content sends all its
// requests first and then collects, so a snapshot costs a few round trips whatever the number of
// windows); `whenReplied` + `dispatch` never block (the workspace reads the front window from a socket
// notifier on the main thread). Not thread-safe: one owner thread, the main thread for every adapter
// here. A broken connection (the server went away) stays broken: `hasError` turns true, every reply comes
// back null, and the owner opens a new one if it wants.
class XcbConnection {
  public:
    struct FreeDeleter {
        void operator()(void* memory) const { std::free(memory); }
    };
    // xcb hands out replies and events allocated with malloc; the receiver frees them.
    template <class T>
    using Reply = std::unique_ptr<T, FreeDeleter>;
    using EventHandler = std::function<void(const xcb_generic_event_t& event)>;

    // Connects to `displayName`, or to $DISPLAY when it is empty. An Error naming the display when no X
    // server answers there (nothing to crash on: an unset DISPLAY, a dead socket, a refused connection).
    static Result<std::unique_ptr<XcbConnection>> open(const QString& displayName = {});

    ~XcbConnection();
    XcbConnection(const XcbConnection&) = delete;
    XcbConnection& operator=(const XcbConnection&) = delete;

    xcb_connection_t* connection() const { return connection_; }
    const xcb_screen_t& screen() const { return *screen_; }
    xcb_window_t root() const { return screen_->root; }
    int screenNumber() const { return screenNumber_; }
    int fileDescriptor() const;
    bool hasError() const;

    // The EWMH atoms; the first call interns them (one round trip, pipelined).
    xcb_ewmh_connection_t& ewmh();
    // The ICCCM WM_STATE atom, which a window manager puts on the client windows it manages.
    xcb_atom_t wmStateAtom();
    // The atom of `name`, interned on first use (one round trip) and kept; XCB_ATOM_NONE on a broken
    // connection.
    xcb_atom_t atom(const QByteArray& name);
    // Whether the server speaks RandR 1.5 (GetMonitors); asked once.
    bool supportsRandrMonitors();

    // A GetProperty request for up to `lengthLongs` 32-bit units of `property`, of `type` (or any type).
    xcb_get_property_cookie_t requestProperty(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                                              std::uint32_t lengthLongs = 1024) const;

    // Blocks for the reply of `cookie`, sent by the matching request; null on an X error (a window that
    // vanished meanwhile) or a broken connection. The error itself is dropped: callers skip what failed.
    template <class ReplyFunction, class Cookie>
    auto wait(ReplyFunction replyFunction, Cookie cookie) const {
        xcb_generic_error_t* error = nullptr;
        auto* reply = replyFunction(connection_, cookie, &error);
        std::free(error);
        return Reply<std::remove_pointer_t<decltype(reply)>>(reply);
    }

    // Calls `handler` from a later `dispatch` once the reply of `cookie` has arrived; with null when the
    // request failed or the connection broke. Handlers run in request order and may send new requests.
    template <class ReplyType, class Cookie>
    void whenReplied(Cookie cookie, std::function<void(const ReplyType* reply)> handler) {
        pending_.push_back({cookie.sequence, [handler = std::move(handler)](const void* reply) {
                                handler(static_cast<const ReplyType*>(reply));
                            }});
    }

    // Hands every event that has arrived to `onEvent`, completes every reply that has arrived, and sends
    // what the handlers requested. Never blocks; call it whenever the connection's socket is readable.
    void dispatch(const EventHandler& onEvent);
    void flush() const;

    // Whether the property of a GetProperty reply exists on the window (of whatever type).
    static bool exists(const xcb_get_property_reply_t* reply);
    // The 32-bit items of a property of `type` (CARDINAL, WINDOW, ATOM, ...); empty when it is missing,
    // of another type or of another format.
    static std::vector<std::uint32_t> values32(const xcb_get_property_reply_t* reply, xcb_atom_t type);
    // A text property: UTF-8 when its type is UTF8_STRING, else Latin-1 (STRING; COMPOUND_TEXT agrees with
    // it on ASCII, which is all a title in that encoding usually holds). Absent when it is missing; an
    // empty property is an empty text.
    std::optional<QString> text(const xcb_get_property_reply_t* reply);

  private:
    struct PendingReply {
        unsigned int sequence = 0;
        std::function<void(const void* reply)> handler;
    };

    XcbConnection(xcb_connection_t* connection, int screenNumber, const xcb_screen_t* screen);
    // Completes the replies at the front of the queue that have arrived; true when any did.
    bool completeArrivedReplies();

    xcb_connection_t* connection_;
    int screenNumber_;
    const xcb_screen_t* screen_;  // owned by the connection's setup data
    std::unique_ptr<xcb_ewmh_connection_t> ewmh_;
    std::optional<xcb_atom_t> wmState_;
    std::map<QByteArray, xcb_atom_t> atoms_;
    std::optional<bool> randrMonitors_;
    std::deque<PendingReply> pending_;  // in request order, which is the order replies arrive in
};

}  // namespace kestrum

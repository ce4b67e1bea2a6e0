#include "platform/linux/x11/X11ShareableContent.h"

#include "platform/linux/x11/XcbConnection.h"

#include <xcb/randr.h>
#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <map>
#include <utility>

namespace kestrum {

namespace {

// Enough 32-bit units for any client list (one per window).
constexpr std::uint32_t kWindowListLongs = 1u << 16;
// Where a reparenting manager puts the client below a top-level frame: one level down, or two for
// managers that wrap it once more.
constexpr int kClientSearchDepth = 2;

using WindowIds = std::vector<xcb_window_t>;

WindowIds childrenOf(const xcb_query_tree_reply_t* tree) {
    if (tree == nullptr) return {};
    const xcb_window_t* children = xcb_query_tree_children(tree);
    return WindowIds(children, children + xcb_query_tree_children_length(tree));
}

// Replaces each top-level window by its client: the first window carrying WM_STATE in a breadth-first
// walk below it (itself included), or itself when there is none (no manager sets WM_STATE). One round
// trip per level, for all top-levels at once.
WindowIds clientsOf(XcbConnection& x, const WindowIds& topLevels) {
    WindowIds clients = topLevels;
    std::vector<bool> resolved(topLevels.size(), false);
    std::vector<std::pair<std::size_t, xcb_window_t>> level;  // (index of its top-level, window)
    for (std::size_t index = 0; index < topLevels.size(); ++index)
        level.emplace_back(index, topLevels[index]);
    for (int depth = 0; !level.empty(); ++depth) {
        std::vector<xcb_get_property_cookie_t> states;
        for (const auto& entry : level)
            states.push_back(x.requestProperty(entry.second, x.wmStateAtom(), XCB_ATOM_ANY, 0));
        std::vector<std::pair<std::size_t, xcb_window_t>> unresolved;
        for (std::size_t k = 0; k < level.size(); ++k) {
            const auto state = x.wait(xcb_get_property_reply, states[k]);
            const auto [index, window] = level[k];
            if (resolved[index]) continue;
            if (XcbConnection::exists(state.get())) {
                clients[index] = window;
                resolved[index] = true;
            } else {
                unresolved.push_back(level[k]);
            }
        }
        if (depth == kClientSearchDepth) break;
        std::vector<xcb_query_tree_cookie_t> trees;
        for (const auto& entry : unresolved) trees.push_back(xcb_query_tree(x.connection(), entry.second));
        level.clear();
        for (std::size_t k = 0; k < unresolved.size(); ++k) {
            const auto tree = x.wait(xcb_query_tree_reply, trees[k]);
            for (const xcb_window_t child : childrenOf(tree.get()))
                level.emplace_back(unresolved[k].first, child);
        }
    }
    return clients;
}

// The windows to describe, top-most first where the desktop knows the stacking.
WindowIds listedWindows(XcbConnection& x) {
    xcb_ewmh_connection_t& ewmh = x.ewmh();
    const auto stackingCookie =
        x.requestProperty(x.root(), ewmh._NET_CLIENT_LIST_STACKING, XCB_ATOM_WINDOW, kWindowListLongs);
    const auto listCookie =
        x.requestProperty(x.root(), ewmh._NET_CLIENT_LIST, XCB_ATOM_WINDOW, kWindowListLongs);
    const auto stacking = x.wait(xcb_get_property_reply, stackingCookie);
    const auto list = x.wait(xcb_get_property_reply, listCookie);
    if (XcbConnection::exists(stacking.get())) {
        // EWMH lists the stack bottom to top.
        WindowIds windows = XcbConnection::values32(stacking.get(), XCB_ATOM_WINDOW);
        std::reverse(windows.begin(), windows.end());
        return windows;
    }
    if (XcbConnection::exists(list.get())) return XcbConnection::values32(list.get(), XCB_ATOM_WINDOW);
    // No manager publishes a list: the root's children, which the server gives bottom to top.
    const auto tree = x.wait(xcb_query_tree_reply, xcb_query_tree(x.connection(), x.root()));
    WindowIds topLevels = childrenOf(tree.get());
    std::reverse(topLevels.begin(), topLevels.end());
    return clientsOf(x, topLevels);
}

struct WindowRequests {
    xcb_window_t window = XCB_WINDOW_NONE;
    xcb_get_window_attributes_cookie_t attributes{};
    xcb_get_geometry_cookie_t geometry{};
    xcb_translate_coordinates_cookie_t position{};
    xcb_get_property_cookie_t processIdentifier{};
    xcb_get_property_cookie_t netName{};
    xcb_get_property_cookie_t name{};
    xcb_get_property_cookie_t type{};
};

WindowRequests requestDescription(XcbConnection& x, xcb_window_t window) {
    xcb_connection_t* c = x.connection();
    xcb_ewmh_connection_t& ewmh = x.ewmh();
    WindowRequests requests;
    requests.window = window;
    requests.attributes = xcb_get_window_attributes(c, window);
    requests.geometry = xcb_get_geometry(c, window);
    requests.position = xcb_translate_coordinates(c, window, x.root(), 0, 0);
    requests.processIdentifier = x.requestProperty(window, ewmh._NET_WM_PID, XCB_ATOM_CARDINAL, 1);
    requests.netName = x.requestProperty(window, ewmh._NET_WM_NAME, ewmh.UTF8_STRING);
    requests.name = xcb_icccm_get_wm_name(c, window);
    requests.type = x.requestProperty(window, ewmh._NET_WM_WINDOW_TYPE, XCB_ATOM_ATOM, 32);
    return requests;
}

bool isDesktopWindow(XcbConnection& x, const xcb_get_property_reply_t* type) {
    const xcb_ewmh_connection_t& ewmh = x.ewmh();
    const std::vector<std::uint32_t> types = XcbConnection::values32(type, XCB_ATOM_ATOM);
    return std::any_of(types.begin(), types.end(), [&](std::uint32_t atom) {
        return atom == ewmh._NET_WM_WINDOW_TYPE_DESKTOP || atom == ewmh._NET_WM_WINDOW_TYPE_DOCK;
    });
}

// Looks processes up once per snapshot, however many windows they own.
class OwnerLookup {
  public:
    explicit OwnerLookup(const ProcessTable& processes) : processes_(processes) {}

    std::optional<ShareableApplication> owner(const std::vector<std::uint32_t>& windowPid) {
        if (windowPid.empty() || windowPid.front() == 0) return std::nullopt;
        const auto processIdentifier = static_cast<qint32>(windowPid.front());
        auto known = cache_.find(processIdentifier);
        if (known == cache_.end()) {
            known = cache_.emplace(processIdentifier, processes_.application(processIdentifier)).first;
        }
        const std::optional<RunningApplication>& application = known->second;
        if (!application) return ShareableApplication{processIdentifier, {}, {}};
        return ShareableApplication{processIdentifier, application->bundleIdentifier.value_or(QString()),
                                    application->localizedName.value_or(QString())};
    }

  private:
    const ProcessTable& processes_;
    std::map<qint32, std::optional<RunningApplication>> cache_;
};

// Collects one window's replies; absent when it vanished, is input-only or is filtered out.
std::optional<ShareableWindow> describe(XcbConnection& x, const WindowRequests& requests, OwnerLookup& owners,
                                        bool excludingDesktopWindows, bool onScreenWindowsOnly) {
    const auto attributes = x.wait(xcb_get_window_attributes_reply, requests.attributes);
    const auto geometry = x.wait(xcb_get_geometry_reply, requests.geometry);
    const auto position = x.wait(xcb_translate_coordinates_reply, requests.position);
    const auto processIdentifier = x.wait(xcb_get_property_reply, requests.processIdentifier);
    const auto netName = x.wait(xcb_get_property_reply, requests.netName);
    const auto name = x.wait(xcb_get_property_reply, requests.name);
    const auto type = x.wait(xcb_get_property_reply, requests.type);
    if (!attributes || !geometry || !position) return std::nullopt;
    if (attributes->_class == XCB_WINDOW_CLASS_INPUT_ONLY) return std::nullopt;
    const bool isOnScreen = attributes->map_state == XCB_MAP_STATE_VIEWABLE;
    if (onScreenWindowsOnly && !isOnScreen) return std::nullopt;
    if (excludingDesktopWindows && isDesktopWindow(x, type.get())) return std::nullopt;
    ShareableWindow window;
    window.windowID = requests.window;
    window.title = x.text(netName.get());
    if (!window.title) window.title = x.text(name.get());
    window.frame = QRectF(position->dst_x, position->dst_y, geometry->width, geometry->height);
    window.isOnScreen = isOnScreen;
    window.owningApplication =
        owners.owner(XcbConnection::values32(processIdentifier.get(), XCB_ATOM_CARDINAL));
    return window;
}

std::vector<ShareableDisplay> readDisplays(XcbConnection& x) {
    std::vector<ShareableDisplay> displays;
    if (x.supportsRandrMonitors()) {
        const auto monitors =
            x.wait(xcb_randr_get_monitors_reply, xcb_randr_get_monitors(x.connection(), x.root(), 1));
        if (monitors) {
            for (auto it = xcb_randr_get_monitors_monitors_iterator(monitors.get()); it.rem > 0;
                 xcb_randr_monitor_info_next(&it)) {
                displays.push_back({static_cast<std::uint32_t>(displays.size() + 1),
                                    QRectF(it.data->x, it.data->y, it.data->width, it.data->height)});
            }
        }
    }
    if (displays.empty()) {
        displays.push_back({1, QRectF(0, 0, x.screen().width_in_pixels, x.screen().height_in_pixels)});
    }
    return displays;
}

std::vector<ShareableApplication> distinctOwners(const std::vector<ShareableWindow>& windows) {
    std::vector<ShareableApplication> applications;
    for (const ShareableWindow& window : windows) {
        if (!window.owningApplication) continue;
        if (std::find(applications.begin(), applications.end(), *window.owningApplication) ==
            applications.end()) {
            applications.push_back(*window.owningApplication);
        }
    }
    return applications;
}

}  // namespace

X11ShareableContent::X11ShareableContent(QString displayName, ProcessTable processes)
    : displayName_(std::move(displayName)), processes_(std::move(processes)) {}

X11ShareableContent::~X11ShareableContent() = default;

Result<XcbConnection*> X11ShareableContent::connection() {
    if (connection_ && !connection_->hasError()) return connection_.get();
    connection_.reset();
    Result<std::unique_ptr<XcbConnection>> opened = XcbConnection::open(displayName_);
    if (!opened.ok()) return opened.error();
    connection_ = std::move(opened).value();
    return connection_.get();
}

Result<ShareableContentSnapshot> X11ShareableContent::currentContent(bool excludingDesktopWindows,
                                                                     bool onScreenWindowsOnly) {
    const Result<XcbConnection*> opened = connection();
    if (!opened.ok()) return opened.error();
    XcbConnection& x = *opened.value();

    // Every window's requests go out before the first reply is read: one round trip for all of them.
    std::vector<WindowRequests> requests;
    for (const xcb_window_t window : listedWindows(x)) requests.push_back(requestDescription(x, window));
    ShareableContentSnapshot snapshot;
    OwnerLookup owners(processes_);
    for (const WindowRequests& request : requests) {
        if (auto window = describe(x, request, owners, excludingDesktopWindows, onScreenWindowsOnly)) {
            snapshot.windows.push_back(std::move(*window));
        }
    }
    snapshot.displays = readDisplays(x);
    snapshot.applications = distinctOwners(snapshot.windows);
    if (x.hasError()) {
        connection_.reset();
        return Error{QStringLiteral("X11"), 2, QStringLiteral("The X display stopped answering."), nullptr};
    }
    return snapshot;
}

}  // namespace kestrum

#include "platform/linux/x11/LinuxWorkspace.h"

#include "platform/linux/x11/XcbConnection.h"

#include <QSocketNotifier>
#include <QtGlobal>

namespace kestrum {

namespace {

// How far up the window tree the owner of a focus window is looked for: a client window sits directly
// under the root or under one or two frames of a window manager.
constexpr int kMaxOwnerSearchDepth = 8;

// The focus values of the core protocol that are no window.
constexpr xcb_window_t kPointerRoot = XCB_INPUT_FOCUS_POINTER_ROOT;

struct ScanDifference {
    std::vector<RunningApplication> ended;
    std::vector<RunningApplication> launched;
};

// Both lists in ascending process id. An id in both with another name or identifier is a process that
// exec'd: it ends as the old application and launches as the new one.
ScanDifference difference(const std::vector<RunningApplication>& before,
                          const std::vector<RunningApplication>& after) {
    ScanDifference found;
    auto old = before.begin();
    auto now = after.begin();
    while (old != before.end() || now != after.end()) {
        if (now == after.end() || (old != before.end() && old->processIdentifier < now->processIdentifier)) {
            found.ended.push_back(*old++);
        } else if (old == before.end() || now->processIdentifier < old->processIdentifier) {
            found.launched.push_back(*now++);
        } else {
            if (*old != *now) {
                found.ended.push_back(*old);
                found.launched.push_back(*now);
            }
            ++old;
            ++now;
        }
    }
    return found;
}

}  // namespace

LinuxWorkspace::LinuxWorkspace(ProcessTable processes, const QString& displayName)
    : processes_(std::move(processes)), applications_(processes_.applicationsOfCurrentUser()) {
    connectDisplay(displayName);
    QObject::connect(&scanTimer_, &QTimer::timeout, [this] { scan(); });
    scanTimer_.start(kScanIntervalMs);
}

LinuxWorkspace::~LinuxWorkspace() = default;

WorkspaceSubscription LinuxWorkspace::observe(Notice notice, Handler handler) {
    return observers_.add(notice, std::move(handler));
}

void LinuxWorkspace::scan() {
    std::vector<RunningApplication> now = processes_.applicationsOfCurrentUser();
    const ScanDifference found = difference(applications_, now);
    // The snapshot is replaced before any notice, so a launch handler finds the new application in it
    // and a terminate handler no longer finds the old one.
    applications_ = std::move(now);
    for (const RunningApplication& application : found.ended) deliver(Notice::didTerminate, application);
    for (const RunningApplication& application : found.launched) deliver(Notice::didLaunch, application);
    if (!activeWindowPublished_) pollInputFocus();
}

void LinuxWorkspace::connectDisplay(const QString& displayName) {
    Result<std::unique_ptr<XcbConnection>> opened = XcbConnection::open(displayName);
    if (!opened.ok()) {
        qWarning("LinuxWorkspace: %s Activation notices are off.",
                 qUtf8Printable(opened.error().description));
        return;
    }
    display_ = std::move(opened).value();
    display_->ewmh();  // interned now, while nothing else is in flight
    const std::uint32_t eventMask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(display_->connection(), display_->root(), XCB_CW_EVENT_MASK, &eventMask);
    displayNotifier_ = std::make_unique<QSocketNotifier>(display_->fileDescriptor(), QSocketNotifier::Read);
    QObject::connect(displayNotifier_.get(), &QSocketNotifier::activated, [this] { onDisplayReadable(); });
    readActiveWindow();
}

void LinuxWorkspace::onDisplayReadable() {
    display_->dispatch([this](const xcb_generic_event_t& event) { handleEvent(event); });
    if (display_->hasError()) {
        // Deleting a notifier inside its own signal is not allowed; a disabled one stays quiet.
        displayNotifier_->setEnabled(false);
        frontmost_.reset();
        qWarning("LinuxWorkspace: the X connection broke. Activation notices are off.");
    }
}

void LinuxWorkspace::handleEvent(const xcb_generic_event_t& event) {
    // The top bit marks events sent by another client; errors (type 0) of requests that have no reply
    // handler need no answer.
    if ((event.response_type & 0x7f) != XCB_PROPERTY_NOTIFY) return;
    const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (notify.window == display_->root() && notify.atom == display_->ewmh()._NET_ACTIVE_WINDOW) {
        readActiveWindow();
    }
}

void LinuxWorkspace::readActiveWindow() {
    const std::uint64_t generation = ++frontGeneration_;
    const xcb_get_property_cookie_t cookie =
        display_->requestProperty(display_->root(), display_->ewmh()._NET_ACTIVE_WINDOW, XCB_ATOM_WINDOW, 1);
    display_->whenReplied<xcb_get_property_reply_t>(cookie, [this, generation](const auto* reply) {
        if (generation != frontGeneration_) return;
        activeWindowPublished_ = XcbConnection::exists(reply);
        const std::vector<std::uint32_t> windows = XcbConnection::values32(reply, XCB_ATOM_WINDOW);
        resolveFront(windows.empty() ? xcb_window_t{XCB_WINDOW_NONE} : windows.front(), generation, 0);
    });
    display_->flush();
}

void LinuxWorkspace::pollInputFocus() {
    if (!display_ || display_->hasError()) return;
    const std::uint64_t generation = ++frontGeneration_;
    display_->whenReplied<xcb_get_input_focus_reply_t>(
        xcb_get_input_focus(display_->connection()), [this, generation](const auto* reply) {
            if (generation != frontGeneration_) return;
            resolveFront(reply ? reply->focus : xcb_window_t{XCB_WINDOW_NONE}, generation, 0);
        });
    display_->flush();
}

void LinuxWorkspace::resolveFront(xcb_window_t window, std::uint64_t generation, int depth) {
    if (window == XCB_WINDOW_NONE || window == kPointerRoot || window == display_->root() ||
        depth > kMaxOwnerSearchDepth) {
        settleFront(0, generation);
        return;
    }
    const xcb_get_property_cookie_t cookie =
        display_->requestProperty(window, display_->ewmh()._NET_WM_PID, XCB_ATOM_CARDINAL, 1);
    display_->whenReplied<xcb_get_property_reply_t>(
        cookie, [this, window, generation, depth](const auto* reply) {
            if (generation != frontGeneration_) return;
            const std::vector<std::uint32_t> pid = XcbConnection::values32(reply, XCB_ATOM_CARDINAL);
            if (!pid.empty()) {
                settleFront(static_cast<qint32>(pid.front()), generation);
                return;
            }
            // No pid on this window (a focus child of a client, or a frame): ask its parent.
            display_->whenReplied<xcb_query_tree_reply_t>(
                xcb_query_tree(display_->connection(), window), [this, generation, depth](const auto* tree) {
                    if (generation != frontGeneration_) return;
                    resolveFront(tree ? tree->parent : xcb_window_t{XCB_WINDOW_NONE}, generation, depth + 1);
                });
        });
}

void LinuxWorkspace::settleFront(qint32 processIdentifier, std::uint64_t generation) {
    if (generation != frontGeneration_) return;
    frontmost_ = processes_.application(processIdentifier);
    if (std::exchange(frontProcessIdentifier_, processIdentifier) == processIdentifier) return;
    deliver(Notice::didActivate,
            frontmost_.value_or(RunningApplication{std::nullopt, processIdentifier, std::nullopt}));
}

void LinuxWorkspace::deliver(Notice notice, const RunningApplication& application) {
    observers_.deliver(notice, application);
}

}  // namespace kestrum

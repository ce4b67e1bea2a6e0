#pragma once

#include "platform/linux/proc/ProcessTable.h"
#include "platform/ports/Workspace.h"
#include "platform/ports/WorkspaceObservers.h"

#include <QString>
#include <QTimer>

#include <xcb/xcb.h>

#include <cstdint>
#include <map>
#include <memory>
#include <utility>

class QSocketNotifier;

namespace kestrum {

class XcbConnection;

// The workspace of a Linux desktop on X11.
//
// Running applications are the named processes of the current user (see ProcessTable), scanned once a
// second by a timer on the main thread; the snapshot is the latest scan, so it is at most a second old.
// The differences between two scans are the launch and terminate notices: first every ended application,
// then every new one, each in ascending process id. A process that execs under the same id into another
// name ends as the old application and launches as the new one. A process that starts and ends between
// two scans is never seen. Processes running at construction are in the first snapshot without notices.
//
// The front application is the owner of the window named by `_NET_ACTIVE_WINDOW` on the root window,
// re-read at every PropertyNotify of it. The owner is the process in `_NET_WM_PID` of that window or of its
// nearest ancestor that has one, looked up in /proc whatever its user or name, so that any application
// coming to the front is noticed. Without a window manager nobody publishes `_NET_ACTIVE_WINDOW`; then
// the X input focus stands in for it, polled at every scan. The connection is read through a socket
// notifier and every request is answered asynchronously: the main thread never waits on the X server.
//
// An activation notice goes out when the front process changes (applications are noticed, not windows),
// the front at construction included once it is read (the front starts as "none known"). When the front moves
// to something that no running process owns (no window, the root, a window without `_NET_WM_PID`, a process
// gone meanwhile), the notice still goes out, so that an observer comparing the front with one process learns
// that it left: it carries that window's process id (0 when there is none) and no names, while
// `frontmostApplication` is absent.
//
// Without a display (none at construction, or the server went away) the process side goes on, and no
// activation is delivered any more.
//
// Main thread only: construction, every call and destruction. Handlers run from the timer and the socket
// notifier, never inline inside `observe`; the workspace must not be destroyed by one of its handlers.
class LinuxWorkspace final : public Workspace {
  public:
    static constexpr int kScanIntervalMs = 1000;

    // `displayName` empty: $DISPLAY.
    explicit LinuxWorkspace(ProcessTable processes = ProcessTable(), const QString& displayName = {});
    ~LinuxWorkspace() override;
    LinuxWorkspace(const LinuxWorkspace&) = delete;
    LinuxWorkspace& operator=(const LinuxWorkspace&) = delete;

    std::vector<RunningApplication> runningApplications() const override { return applications_; }
    std::optional<RunningApplication> frontmostApplication() const override { return frontmost_; }
    [[nodiscard]] WorkspaceSubscription observe(Notice notice, Handler handler) override;

  private:
    void scan();
    void connectDisplay(const QString& displayName);
    void onDisplayReadable();
    void handleEvent(const xcb_generic_event_t& event);
    // Each starts a new look at the front, which supersedes any look still waiting for its replies.
    void readActiveWindow();
    void pollInputFocus();
    // Finds the process of `window` (or of an ancestor), then settles the front on it.
    void resolveFront(xcb_window_t window, std::uint64_t generation, int depth);
    void settleFront(qint32 processIdentifier, std::uint64_t generation);
    void deliver(Notice notice, const RunningApplication& application);

    ProcessTable processes_;
    std::vector<RunningApplication> applications_;  // the latest scan, ascending process id
    std::optional<RunningApplication> frontmost_;
    // The process id of the front as last settled; 0 when none is known.
    qint32 frontProcessIdentifier_ = 0;
    // Counts the looks at the front; a reply to an older look than the latest is dropped.
    std::uint64_t frontGeneration_ = 0;
    // Whether the root carried `_NET_ACTIVE_WINDOW` at the last read; without it the focus is polled.
    bool activeWindowPublished_ = false;

    std::unique_ptr<XcbConnection> display_;
    std::unique_ptr<QSocketNotifier> displayNotifier_;
    QTimer scanTimer_;
    WorkspaceObservers observers_;
};

}  // namespace kestrum

#pragma once

#include "platform/ports/RunningApplication.h"
#include "platform/ports/WorkspaceSubscription.h"

#include <functional>
#include <optional>
#include <vector>

namespace kestrum {

// The desktop's view of running applications: which run, which one is in front, and notices when one
// launches, terminates or comes to the front.
//
// Contract, for every adapter:
// - Every call is made on the main thread, and every handler runs on the main thread, never inline
//   inside `observe` and never while the adapter holds a lock that `runningApplications` would take.
// - `runningApplications` is a snapshot taken now, in the adapter's order (stable between calls for the
//   same processes); an empty list is a valid answer (nothing recognised runs).
// - A handler receives the application the notice is about; for `didTerminate`, the application as it
//   was known before it ended. The snapshot given by `runningApplications` inside a launch handler
//   already holds the new application, and inside a terminate handler no longer holds the old one.
// - Handlers of one notice run in the order they were added. A subscription dropped inside a handler
//   stops the later deliveries to it at once.
class Workspace {
  public:
    enum class Notice { didLaunch, didTerminate, didActivate };
    using Handler = std::function<void(const RunningApplication& application)>;

    virtual ~Workspace() = default;

    virtual std::vector<RunningApplication> runningApplications() const = 0;

    // The application whose window has the focus; absent when none is known (no window, or a window of
    // no known process).
    virtual std::optional<RunningApplication> frontmostApplication() const = 0;

    // Calls `handler` for every later notice of kind `notice` until the subscription is dropped.
    [[nodiscard]] virtual WorkspaceSubscription observe(Notice notice, Handler handler) = 0;

  protected:
    Workspace() = default;
    Workspace(const Workspace&) = default;
    Workspace& operator=(const Workspace&) = default;
};

}  // namespace kestrum

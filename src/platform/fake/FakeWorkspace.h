#pragma once

#include "platform/ports/Workspace.h"
#include "platform/ports/WorkspaceObservers.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <utility>

namespace kestrum {

// A workspace whose applications and notices are scripted by a test (or left empty on a system without
// a workspace of its own). Main thread only, as the port says. Notices are delivered synchronously by
// the scripting calls, which stand for the desktop's own delivery on the main thread.
class FakeWorkspace final : public Workspace {
  public:
    std::vector<RunningApplication> runningApplications() const override { return applications_; }
    std::optional<RunningApplication> frontmostApplication() const override { return frontmost_; }
    [[nodiscard]] WorkspaceSubscription observe(Notice notice, Handler handler) override;

    // Replaces the list silently, without notices.
    void setRunningApplications(std::vector<RunningApplication> applications);
    // Appends the application, then delivers `didLaunch`.
    void launch(const RunningApplication& application);
    // Removes every application with the process id, then delivers `didTerminate` for the first one
    // removed; does nothing when none runs with that id.
    void terminate(qint32 processIdentifier);
    // Makes the application the front one and delivers `didActivate`; it need not be in the list.
    void activate(const RunningApplication& application);

    // Handlers registered now for `notice`.
    std::size_t observerCount(Notice notice) const;

  private:
    void deliver(Notice notice, const RunningApplication& application);

    std::vector<RunningApplication> applications_;
    std::optional<RunningApplication> frontmost_;
    WorkspaceObservers observers_;
};

}  // namespace kestrum

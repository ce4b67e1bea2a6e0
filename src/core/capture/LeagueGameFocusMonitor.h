#pragma once

#include "platform/ports/Workspace.h"

#include <functional>

namespace kestrum {

// Tells whether the game is the front application, from the workspace's activation notices: each
// activation calls the handler with whether the activated application is the game's process. The
// focus at the start is not tested; the first notice sets the true state.
//
// Main thread, like the notices. At most one observation is pending; destroying the monitor ends it.
class LeagueGameFocusMonitor {
  public:
    explicit LeagueGameFocusMonitor(Workspace& workspace) : workspace_(workspace) {}

    // Ends any earlier observation, then observes for `processID`.
    void start(qint32 processID, std::function<void(bool isGameFocused)> handler);
    void stop() { observer_.reset(); }
    bool isObserving() const { return observer_.isActive(); }

  private:
    Workspace& workspace_;
    WorkspaceSubscription observer_;
};

}  // namespace kestrum

#pragma once

#include "platform/ports/HandlerList.h"
#include "platform/ports/Workspace.h"

#include <cstddef>
#include <map>

namespace kestrum {

// The observers of a Workspace adapter, one handler list per notice, with the delivery rules of the port
// (HandlerList.h). Main thread, like the notices.
class WorkspaceObservers {
  public:
    WorkspaceSubscription add(Workspace::Notice notice, Workspace::Handler handler) {
        return lists_[notice].add(std::move(handler));
    }

    void deliver(Workspace::Notice notice, const RunningApplication& application) const {
        const auto found = lists_.find(notice);
        if (found != lists_.end()) found->second.deliver(application);
    }

    std::size_t count(Workspace::Notice notice) const {
        const auto found = lists_.find(notice);
        return found == lists_.end() ? 0 : found->second.count();
    }

  private:
    std::map<Workspace::Notice, HandlerList<RunningApplication>> lists_;
};

}  // namespace kestrum

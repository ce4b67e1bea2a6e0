#pragma once

#include "platform/ports/Workspace.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace kestrum {

// The observers of a Workspace adapter, with the delivery rules of the port: handlers of one notice run
// in the order they were added, and a subscription dropped inside a handler stops later deliveries to it
// at once. The subscriptions hold the list weakly, so one that outlives its adapter removes nothing.
// Main thread, like the notices.
class WorkspaceObservers {
  public:
    WorkspaceSubscription add(Workspace::Notice notice, Workspace::Handler handler) {
        const std::uint64_t id = registry_->nextId++;
        registry_->handlers.emplace(id, std::make_pair(notice, std::move(handler)));
        return WorkspaceSubscription([weakRegistry = std::weak_ptr<Registry>(registry_), id] {
            if (const auto registry = weakRegistry.lock()) registry->handlers.erase(id);
        });
    }

    void deliver(Workspace::Notice notice, const RunningApplication& application) const {
        std::vector<std::uint64_t> ids;
        for (const auto& [id, entry] : registry_->handlers) {
            if (entry.first == notice) ids.push_back(id);
        }
        // Each handler is looked up again before its call, and a copy is called, so that dropping the
        // running subscription does not destroy the handler mid-call.
        for (const std::uint64_t id : ids) {
            const auto found = registry_->handlers.find(id);
            if (found == registry_->handlers.end()) continue;
            const Workspace::Handler handler = found->second.second;
            handler(application);
        }
    }

    std::size_t count(Workspace::Notice notice) const {
        return static_cast<std::size_t>(
            std::count_if(registry_->handlers.begin(), registry_->handlers.end(),
                          [&](const auto& entry) { return entry.second.first == notice; }));
    }

  private:
    struct Registry {
        std::map<std::uint64_t, std::pair<Workspace::Notice, Workspace::Handler>>
            handlers;  // by id: order added
        std::uint64_t nextId = 1;
    };
    std::shared_ptr<Registry> registry_ = std::make_shared<Registry>();
};

}  // namespace kestrum

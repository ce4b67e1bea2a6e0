#pragma once

#include "platform/ports/Subscription.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace kestrum {

// The handlers of one kind of notice of a port, with the delivery rules every port promises: handlers
// run in the order they were added, and a subscription dropped inside a handler stops later deliveries
// to it at once. The subscriptions hold the list weakly, so one that outlives its adapter removes
// nothing. One thread, the one notices are delivered on.
template <class Argument>
class HandlerList {
  public:
    using Handler = std::function<void(const Argument& argument)>;

    Subscription add(Handler handler) {
        const std::uint64_t id = registry_->nextId++;
        registry_->handlers.emplace(id, std::move(handler));
        return Subscription([weakRegistry = std::weak_ptr<Registry>(registry_), id] {
            if (const auto registry = weakRegistry.lock()) registry->handlers.erase(id);
        });
    }

    void deliver(const Argument& argument) const {
        std::vector<std::uint64_t> ids;
        for (const auto& entry : registry_->handlers) ids.push_back(entry.first);
        // Each handler is looked up again before its call, and a copy is called, so that dropping the
        // running subscription does not destroy the handler mid-call.
        for (const std::uint64_t id : ids) {
            const auto found = registry_->handlers.find(id);
            if (found == registry_->handlers.end()) continue;
            const Handler handler = found->second;
            handler(argument);
        }
    }

    std::size_t count() const { return registry_->handlers.size(); }

  private:
    struct Registry {
        std::map<std::uint64_t, Handler> handlers;  // by id: the order added
        std::uint64_t nextId = 1;
    };
    std::shared_ptr<Registry> registry_ = std::make_shared<Registry>();
};

}  // namespace kestrum

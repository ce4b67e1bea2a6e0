#pragma once

#include "platform/ports/HandlerList.h"
#include "platform/ports/SingleInstanceChannel.h"

#include <memory>

namespace kestrum {

// Single-instance channels of several "processes" within one test: channels made on the same registry
// stand for launches of the same user. The first to claim listens; later claims deliver their request to
// the listener's handlers synchronously and are `forwarded`, unless the registry is set to refuse
// listening (`failed`). Main thread only.
class FakeSingleInstanceChannel final : public SingleInstanceChannel {
  public:
    struct Registry {
        FakeSingleInstanceChannel* listener = nullptr;
        bool canListen = true;
    };

    explicit FakeSingleInstanceChannel(std::shared_ptr<Registry> registry) : registry_(std::move(registry)) {}
    ~FakeSingleInstanceChannel() override {
        if (registry_->listener == this) registry_->listener = nullptr;
    }

    Outcome claim(const Request& request) override {
        if (registry_->listener && registry_->listener != this) {
            registry_->listener->requests_.deliver(request);
            return Outcome::forwarded;
        }
        if (!registry_->canListen) return Outcome::failed;
        registry_->listener = this;
        return Outcome::listening;
    }
    [[nodiscard]] Subscription observeRequests(Handler handler) override {
        return requests_.add(std::move(handler));
    }

  private:
    std::shared_ptr<Registry> registry_;
    HandlerList<Request> requests_;
};

}  // namespace kestrum

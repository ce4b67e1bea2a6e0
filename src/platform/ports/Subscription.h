#pragma once

#include <functional>
#include <utility>

namespace kestrum {

// Keeps one observer of a port's notices registered for as long as it lives: destroying or resetting it
// unsubscribes, and the handler is never called afterwards. Move-only. Belongs to the thread the port's
// notices are delivered on (the main thread for every port). A subscription may outlive its port only if
// the port's `unsubscribe` callback tolerates that (every adapter's does: it holds its registry weakly).
class Subscription {
  public:
    Subscription() = default;
    explicit Subscription(std::function<void()> unsubscribe) : unsubscribe_(std::move(unsubscribe)) {}
    ~Subscription() { reset(); }

    Subscription(Subscription&& other) noexcept : unsubscribe_(std::exchange(other.unsubscribe_, nullptr)) {}
    Subscription& operator=(Subscription&& other) noexcept {
        if (this != &other) {
            reset();
            unsubscribe_ = std::exchange(other.unsubscribe_, nullptr);
        }
        return *this;
    }
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;

    void reset() {
        if (auto unsubscribe = std::exchange(unsubscribe_, nullptr)) unsubscribe();
    }
    bool isActive() const { return static_cast<bool>(unsubscribe_); }

  private:
    std::function<void()> unsubscribe_;
};

}  // namespace kestrum

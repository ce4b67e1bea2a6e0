#pragma once

#include <functional>
#include <utility>

namespace kestrum {

// Keeps one observer of a Workspace notice registered for as long as it lives: destroying or resetting
// it unsubscribes, and the handler is never called afterwards. Move-only. Belongs to the main thread,
// like the notices themselves. A subscription may outlive its workspace only if the workspace's
// `unsubscribe` callback tolerates that (every adapter's does: it holds its registry weakly).
class WorkspaceSubscription {
  public:
    WorkspaceSubscription() = default;
    explicit WorkspaceSubscription(std::function<void()> unsubscribe)
        : unsubscribe_(std::move(unsubscribe)) {}
    ~WorkspaceSubscription() { reset(); }

    WorkspaceSubscription(WorkspaceSubscription&& other) noexcept
        : unsubscribe_(std::exchange(other.unsubscribe_, nullptr)) {}
    WorkspaceSubscription& operator=(WorkspaceSubscription&& other) noexcept {
        if (this != &other) {
            reset();
            unsubscribe_ = std::exchange(other.unsubscribe_, nullptr);
        }
        return *this;
    }
    WorkspaceSubscription(const WorkspaceSubscription&) = delete;
    WorkspaceSubscription& operator=(const WorkspaceSubscription&) = delete;

    void reset() {
        if (auto unsubscribe = std::exchange(unsubscribe_, nullptr)) unsubscribe();
    }
    bool isActive() const { return static_cast<bool>(unsubscribe_); }

  private:
    std::function<void()> unsubscribe_;
};

}  // namespace kestrum

#pragma once

#include <functional>

namespace kestrum {

// Keeps one observer of a NotificationCenter registered for as long as the token lives. Destroying or
// resetting the token removes the observer; after that its handler is never called again, also not for
// a notification already queued. Move-only. A token may outlive its center; removal then does nothing.
// Thread-safe in the sense of the center: any thread may destroy a token, but a handler running on the
// main thread at that moment finishes.
class NotificationObserverToken {
  public:
    NotificationObserverToken() = default;
    explicit NotificationObserverToken(std::function<void()> remove) : remove_(std::move(remove)) {}
    ~NotificationObserverToken() { reset(); }

    NotificationObserverToken(NotificationObserverToken&& other) noexcept
        : remove_(std::move(other.remove_)) {
        other.remove_ = nullptr;
    }
    NotificationObserverToken& operator=(NotificationObserverToken&& other) noexcept {
        if (this != &other) {
            reset();
            remove_ = std::move(other.remove_);
            other.remove_ = nullptr;
        }
        return *this;
    }
    NotificationObserverToken(const NotificationObserverToken&) = delete;
    NotificationObserverToken& operator=(const NotificationObserverToken&) = delete;

    // Removes the observer now; a token that holds none is left as it is.
    void reset() {
        if (!remove_) return;
        const std::function<void()> remove = std::move(remove_);
        remove_ = nullptr;
        remove();
    }

    bool isActive() const { return static_cast<bool>(remove_); }

  private:
    std::function<void()> remove_;
};

}  // namespace kestrum

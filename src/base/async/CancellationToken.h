#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace kestrum {

// A request to stop, shared by every copy of the token. Whoever starts a job keeps a copy and cancels
// it; the job's body tests `isCancelled()` between steps and sleeps of the Clock wake early with false.
//
// Thread-safe: any thread may cancel, test or register. Cancelling is one-way and idempotent.
class CancellationToken {
    struct State;

  public:
    // Keeps one `onCancel` callback registered; destroying or resetting it unregisters the callback.
    // When the callback is running on another thread at that moment, unregistering waits for it to
    // return, so that whatever the callback uses may be destroyed right after. Unregistering from
    // inside the callback itself does not wait.
    class [[nodiscard]] Registration {
      public:
        Registration() = default;
        Registration(Registration&& other) noexcept;
        Registration& operator=(Registration&& other) noexcept;
        Registration(const Registration&) = delete;
        Registration& operator=(const Registration&) = delete;
        ~Registration();

        // Unregisters now; a callback that has not started will never run.
        void reset();

      private:
        friend class CancellationToken;
        Registration(std::shared_ptr<State> state, std::uint64_t id) : state_(std::move(state)), id_(id) {}

        std::shared_ptr<State> state_;
        std::uint64_t id_ = 0;
    };

    // A fresh token, not cancelled, not shared with any other.
    CancellationToken();

    // Marks the token cancelled and runs every registered callback once, in registration order, on the
    // calling thread, outside any lock. A second call does nothing.
    void cancel() const;

    bool isCancelled() const;

    // Registers `callback` to run once on the thread that cancels. When the token is already cancelled
    // the callback runs at once on the calling thread and the registration returned is empty.
    Registration onCancel(std::function<void()> callback) const;

    friend bool operator==(const CancellationToken& a, const CancellationToken& b) {
        return a.state_ == b.state_;
    }

  private:
    std::shared_ptr<State> state_;
};

}  // namespace kestrum

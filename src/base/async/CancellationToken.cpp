#include "base/async/CancellationToken.h"

#include <atomic>
#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

namespace kestrum {

struct CancellationToken::State {
    std::atomic<bool> cancelled{false};  // written under mutex, read lock-free by isCancelled

    std::mutex mutex;
    std::condition_variable callbackReturned;                // signalled when runningId goes back to 0
    std::uint64_t nextId = 1;                                // guarded by mutex
    std::map<std::uint64_t, std::function<void()>> pending;  // guarded by mutex; ids rise with registration
    std::uint64_t runningId = 0;                             // guarded by mutex; 0 when none runs
    std::thread::id runningThread;                           // guarded by mutex; the cancelling thread
};

CancellationToken::CancellationToken() : state_(std::make_shared<State>()) {}

void CancellationToken::cancel() const {
    std::unique_lock lock(state_->mutex);
    if (state_->cancelled.load(std::memory_order_relaxed)) return;
    state_->cancelled.store(true, std::memory_order_release);
    while (!state_->pending.empty()) {
        auto node = state_->pending.extract(state_->pending.begin());
        state_->runningId = node.key();
        state_->runningThread = std::this_thread::get_id();
        lock.unlock();
        {
            // The callback and its captures are both gone before the registration may return.
            auto callback = std::move(node.mapped());
            node = {};
            callback();
        }
        lock.lock();
        state_->runningId = 0;
        state_->callbackReturned.notify_all();
    }
}

bool CancellationToken::isCancelled() const {
    return state_->cancelled.load(std::memory_order_acquire);
}

CancellationToken::Registration CancellationToken::onCancel(std::function<void()> callback) const {
    {
        std::lock_guard lock(state_->mutex);
        if (!state_->cancelled.load(std::memory_order_relaxed)) {
            const std::uint64_t id = state_->nextId++;
            state_->pending.emplace(id, std::move(callback));
            return Registration(state_, id);
        }
    }
    callback();
    return {};
}

CancellationToken::Registration::Registration(Registration&& other) noexcept
    : state_(std::move(other.state_)), id_(std::exchange(other.id_, 0)) {}

CancellationToken::Registration& CancellationToken::Registration::operator=(Registration&& other) noexcept {
    if (this != &other) {
        reset();
        state_ = std::move(other.state_);
        id_ = std::exchange(other.id_, 0);
    }
    return *this;
}

CancellationToken::Registration::~Registration() {
    reset();
}

void CancellationToken::Registration::reset() {
    if (!state_) return;
    const std::shared_ptr<State> state = std::move(state_);
    const std::uint64_t id = std::exchange(id_, 0);
    std::unique_lock lock(state->mutex);
    auto node = state->pending.extract(id);
    if (node.empty() && state->runningId == id && state->runningThread != std::this_thread::get_id()) {
        state->callbackReturned.wait(lock, [&] { return state->runningId != id; });
    }
    lock.unlock();
    // `node` (the never-run callback) is destroyed here, outside the lock: its captures may unregister
    // other callbacks of this token.
}

}  // namespace kestrum

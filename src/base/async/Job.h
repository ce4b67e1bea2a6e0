#pragma once

#include "base/async/CancellationToken.h"
#include "base/async/EventLoopHandle.h"

#include <QCoroTask>
#include <QtGlobal>

#include <concepts>
#include <coroutine>
#include <memory>
#include <mutex>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace kestrum {

// A started, cancellable coroutine that any number of callers may await: a stop joins the one stop
// that runs, a stop awaits the start. Copies of a Job are handles on one shared state, which lives as
// long as the body runs even when every handle has been dropped.
//
// Threads: the body runs on the thread that calls `start` (at once, until its first suspension, then
// wherever its own awaits resume it). Handles may be used from any thread. An awaiter still waiting
// when the body finishes is resumed through the event loop of the thread it awaited on (queued), never
// inline inside the finishing body; an awaiter that comes after the end gets the value at once.
//
// Cancelling only cancels `token()`: the body stops cooperatively, and every awaiter still receives
// what the body returns. A body must not throw; if it does, the process stops with a fatal message.
template <class T>
class Job {
    using Stored = std::conditional_t<std::is_void_v<T>, std::monostate, T>;

    struct State {
        CancellationToken token;
        std::mutex mutex;
        std::optional<Stored> value;  // guarded by mutex; set once, when the body returns
        std::vector<std::pair<EventLoopHandle, std::coroutine_handle<>>> awaiters;  // guarded by mutex

        void finish(Stored result) {
            decltype(awaiters) waiting;
            {
                std::lock_guard lock(mutex);
                value.emplace(std::move(result));
                waiting.swap(awaiters);
            }
            for (auto& [loop, awaiter] : waiting) {
                // A thread that has ended cannot run its awaiter any more; that coroutine stays suspended.
                loop.post([awaiter = awaiter] { awaiter.resume(); });
            }
        }
    };

    class Awaiter {
      public:
        explicit Awaiter(std::shared_ptr<State> state) : state_(std::move(state)) {}

        bool await_ready() const {
            std::lock_guard lock(state_->mutex);
            return state_->value.has_value();
        }
        bool await_suspend(std::coroutine_handle<> awaiter) {
            std::lock_guard lock(state_->mutex);
            if (state_->value.has_value()) return false;  // finished since await_ready
            state_->awaiters.emplace_back(EventLoopHandle::current(), awaiter);
            return true;
        }
        T await_resume() const {
            std::lock_guard lock(state_->mutex);
            if constexpr (!std::is_void_v<T>) return *state_->value;
        }

      private:
        std::shared_ptr<State> state_;
    };

    explicit Job(std::shared_ptr<State> state) : state_(std::move(state)) {}

    template <class Body>
    static QCoro::Task<void> run(std::shared_ptr<State> state, Body body) {
        // `body` is a parameter, so it lives in this frame as long as the coroutine it made runs: the
        // captures of a lambda body stay valid.
        try {
            if constexpr (std::is_void_v<T>) {
                co_await body(state->token);
                state->finish(std::monostate{});
            } else {
                state->finish(co_await body(state->token));
            }
        } catch (...) {
            qFatal("kestrum::Job: the body of a job threw an exception");
        }
    }

  public:
    // Starts `body(token)` at once; `body` is a callable taking a CancellationToken and returning
    // QCoro::Task<T>, typically a coroutine lambda.
    template <class Body>
    requires std::same_as<std::invoke_result_t<Body&, CancellationToken>, QCoro::Task<T>>
    static Job start(Body body) {
        auto state = std::make_shared<State>();
        // The wrapper's Task is dropped on purpose: QCoro frees its frame when the body has finished.
        run(state, std::move(body));
        return Job(std::move(state));
    }

    // Cancels the token given to the body. Any thread.
    void cancel() const { state_->token.cancel(); }
    bool isCancelled() const { return state_->token.isCancelled(); }
    CancellationToken token() const { return state_->token; }

    bool isFinished() const {
        std::lock_guard lock(state_->mutex);
        return state_->value.has_value();
    }

    // What the body returned, once it has finished; absent before.
    std::optional<T> result() const requires(!std::is_void_v<T>) {
        std::lock_guard lock(state_->mutex);
        return state_->value;
    }

    // `co_await job` yields a copy of the body's value (nothing for Job<void>).
    Awaiter operator co_await() const { return Awaiter(state_); }

    friend bool operator==(const Job& a, const Job& b) { return a.state_ == b.state_; }

  private:
    std::shared_ptr<State> state_;
};

}  // namespace kestrum

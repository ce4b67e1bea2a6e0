#pragma once

#include "base/async/SerialQueueTimer.h"

#include <QFuture>
#include <QPromise>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <type_traits>

namespace kestrum {

// A named thread that runs tasks one at a time in the order they were queued, with timers and a
// blocking `sync`: the stand-in for a serial dispatch queue ("com.kestrum.capture.queue" for the
// capture samples, "com.kestrum.league-share.video" for the share stream, and the executors of the
// library scanner and detail loader).
//
// Every member is callable from any thread. The queue's thread runs no Qt event loop: code on it must
// not await coroutines or expect queued Qt calls to reach it. Destruction runs the tasks already queued
// (and any they queue in turn), drops the timers and joins the thread; destroying the queue from one of
// its own tasks detaches the thread instead of joining it.
class SerialQueue {
  public:
    using TimePoint = std::chrono::steady_clock::time_point;
    using Duration = std::chrono::nanoseconds;

    // Starts the thread; its OS name is `label` cut to 15 bytes (the kernel's limit).
    explicit SerialQueue(QString label);
    ~SerialQueue();
    SerialQueue(const SerialQueue&) = delete;
    SerialQueue& operator=(const SerialQueue&) = delete;

    const QString& label() const;

    // True when called from a task or timer handler running on this queue.
    bool isCurrent() const;

    // Queues `task` behind every task queued before it, and returns at once.
    void async(std::function<void()> task);

    // Runs `task` on the queue and returns once it has run. Called on the queue itself, it runs `task`
    // inline instead of dead-locking.
    void sync(const std::function<void()>& task);

    // Queues `work` and returns a future of its result, which a coroutine on a thread with a Qt event
    // loop may `co_await` (QCoro's QFuture support).
    template <class Work>
    auto submit(Work work) -> QFuture<std::invoke_result_t<Work&>>;

    // Runs `handler` on the queue `delay` from now and, when `repeatInterval` is given and positive, at
    // every `repeatInterval` after that. The k-th firing is due at start + delay + k * interval, so
    // firings do not drift with the handler's run time; a handler that overruns skips to the next
    // future deadline instead of catching up in a burst. Timers fire with no added leeway: the thread
    // runs with the finest timer slack the kernel allows.
    SerialQueueTimer scheduleTimer(Duration delay, std::optional<Duration> repeatInterval,
                                   std::function<void()> handler);

    // The deadline of a repeating timer's next firing once a firing has ended at `now`: the first point
    // of the grid `firstDeadline + k * interval` (k >= 1) strictly after `now`. `interval` is positive.
    static TimePoint nextRepeatDeadline(TimePoint firstDeadline, Duration interval, TimePoint now);

  private:
    struct State;
    struct TimerEntry;
    static void run(const std::shared_ptr<State>& state);

    std::shared_ptr<State> state_;  // shared with the thread, which may outlive a self-destroying queue
    std::thread thread_;
};

template <class Work>
auto SerialQueue::submit(Work work) -> QFuture<std::invoke_result_t<Work&>> {
    using Result = std::invoke_result_t<Work&>;
    // Shared, because std::function needs a copyable task and QPromise is move-only.
    auto promise = std::make_shared<QPromise<Result>>();
    auto shared = std::make_shared<Work>(std::move(work));
    QFuture<Result> future = promise->future();
    promise->start();
    async([promise, shared] {
        if constexpr (std::is_void_v<Result>) {
            (*shared)();
        } else {
            promise->addResult((*shared)());
        }
        promise->finish();
    });
    return future;
}

}  // namespace kestrum

#include "base/async/SerialQueue.h"

#include <pthread.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <utility>

namespace kestrum {

namespace {

constexpr std::size_t kThreadNameBytes = 15;  // the kernel keeps 16 bytes with the terminating zero

// The queue whose task or handler the calling thread is running; null on other threads.
thread_local const void* tCurrentQueue = nullptr;

void nameCurrentThread(const QString& label) {
    const QByteArray name = label.toUtf8().left(kThreadNameBytes);
    pthread_setname_np(pthread_self(), name.constData());
}

void useFinestTimerSlack() {
#ifdef __linux__
    // The default slack of 50 us would let the kernel defer every timer wake-up of the queue.
    prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
#endif
}

}  // namespace

// One timer. Owned jointly by the queue's schedule and the canceller of its handle.
struct SerialQueue::TimerEntry {
    TimePoint firstDeadline;        // immutable: start + delay
    Duration interval;              // immutable; zero for a one-shot timer
    std::function<void()> handler;  // immutable; called on the queue's thread only
    bool cancelled = false;         // guarded by State::mutex
};

struct SerialQueue::State {
    explicit State(QString name) : label(std::move(name)) {}

    const QString label;
    std::mutex mutex;
    std::condition_variable wake;             // signalled on a new task, a new timer and at the stop
    std::deque<std::function<void()>> tasks;  // guarded by mutex
    std::multimap<TimePoint, std::shared_ptr<TimerEntry>> timers;  // guarded by mutex; armed, by deadline
    bool timersChanged = false;  // guarded by mutex; new timer since last wait
    bool stopping = false;       // guarded by mutex

    // The next timer due at or before `now`, taken out of the schedule; null when none is due.
    std::shared_ptr<TimerEntry> takeDueTimer(TimePoint now) {
        if (timers.empty() || timers.begin()->first > now) return nullptr;
        std::shared_ptr<TimerEntry> entry = std::move(timers.begin()->second);
        timers.erase(timers.begin());
        return entry;
    }

    // Puts a repeating timer back at its next deadline after `now`, on the grid start + k * interval.
    void rearm(const std::shared_ptr<TimerEntry>& entry, TimePoint now) {
        timers.emplace(nextRepeatDeadline(entry->firstDeadline, entry->interval, now), entry);
    }

    void disarm(const std::shared_ptr<TimerEntry>& entry) {
        entry->cancelled = true;
        for (auto it = timers.begin(); it != timers.end(); ++it) {
            if (it->second == entry) {
                timers.erase(it);
                return;
            }
        }
    }

    void waitForWork(std::unique_lock<std::mutex>& lock) {
        const auto hasWork = [this] { return !tasks.empty() || stopping || timersChanged; };
        if (timers.empty()) {
            wake.wait(lock, hasWork);
        } else {
            // A copy: wait_until rereads its deadline, and a cancel may erase the timer meanwhile.
            const TimePoint nextDeadline = timers.begin()->first;
            wake.wait_until(lock, nextDeadline, hasWork);
        }
        timersChanged = false;
    }
};

SerialQueue::SerialQueue(QString label) : state_(std::make_shared<State>(std::move(label))) {
    thread_ = std::thread([state = state_] { run(state); });
}

SerialQueue::~SerialQueue() {
    {
        std::lock_guard lock(state_->mutex);
        state_->stopping = true;
        for (auto& [deadline, entry] : state_->timers) entry->cancelled = true;
        state_->timers.clear();
    }
    state_->wake.notify_all();
    if (isCurrent()) {
        thread_.detach();
    } else {
        thread_.join();
    }
}

const QString& SerialQueue::label() const {
    return state_->label;
}

bool SerialQueue::isCurrent() const {
    return tCurrentQueue == state_.get();
}

void SerialQueue::async(std::function<void()> task) {
    // Notified under the lock: once it is released the task may run and even destroy this queue, so
    // nothing here may touch `this` afterwards.
    std::lock_guard lock(state_->mutex);
    state_->tasks.push_back(std::move(task));
    state_->wake.notify_one();
}

void SerialQueue::sync(const std::function<void()>& task) {
    if (isCurrent()) {
        task();
        return;
    }
    std::mutex mutex;
    std::condition_variable ran;
    bool done = false;
    async([&] {
        task();
        // Notified under the lock: the waiter cannot return and destroy these before we are done.
        std::lock_guard lock(mutex);
        done = true;
        ran.notify_all();
    });
    std::unique_lock lock(mutex);
    ran.wait(lock, [&] { return done; });
}

SerialQueueTimer SerialQueue::scheduleTimer(Duration delay, std::optional<Duration> repeatInterval,
                                            std::function<void()> handler) {
    auto entry = std::make_shared<TimerEntry>();
    entry->firstDeadline = std::chrono::steady_clock::now() + std::max(delay, Duration::zero());
    entry->interval = std::max(repeatInterval.value_or(Duration::zero()), Duration::zero());
    entry->handler = std::move(handler);
    std::weak_ptr<State> weakState = state_;
    {
        std::lock_guard lock(state_->mutex);
        if (state_->stopping) return {};
        state_->timers.emplace(entry->firstDeadline, entry);
        state_->timersChanged = true;
        state_->wake.notify_one();
    }
    return SerialQueueTimer([weakState = std::move(weakState), entry] {
        const std::shared_ptr<State> state = weakState.lock();
        if (!state) return;  // the queue is gone, and its timers with it
        std::lock_guard lock(state->mutex);
        state->disarm(entry);
    });
}

SerialQueue::TimePoint SerialQueue::nextRepeatDeadline(TimePoint firstDeadline, Duration interval,
                                                       TimePoint now) {
    const auto periodsPassed = now < firstDeadline ? 0 : (now - firstDeadline) / interval;
    return firstDeadline + (periodsPassed + 1) * interval;
}

void SerialQueue::run(const std::shared_ptr<State>& state) {
    nameCurrentThread(state->label);
    useFinestTimerSlack();
    tCurrentQueue = state.get();
    std::unique_lock lock(state->mutex);
    bool timerRanLast = false;
    for (;;) {
        // A due timer and a waiting task take turns, so that neither a busy queue delays timers nor a
        // timer whose handler overruns its interval starves the tasks.
        const bool taskHasTurn = timerRanLast && !state->tasks.empty();
        const std::shared_ptr<TimerEntry> timer =
            taskHasTurn ? nullptr : state->takeDueTimer(std::chrono::steady_clock::now());
        if (timer) {
            lock.unlock();
            timer->handler();
            lock.lock();
            if (!timer->cancelled && timer->interval > Duration::zero() && !state->stopping) {
                state->rearm(timer, std::chrono::steady_clock::now());
            }
            timerRanLast = true;
            continue;
        }
        timerRanLast = false;
        if (!state->tasks.empty()) {
            std::function<void()> task = std::move(state->tasks.front());
            state->tasks.pop_front();
            lock.unlock();
            task();
            task = nullptr;  // its captures are released before the lock is taken again
            lock.lock();
            continue;
        }
        if (state->stopping) break;
        state->waitForWork(lock);
    }
    tCurrentQueue = nullptr;
}

}  // namespace kestrum

#pragma once

#include "base/async/Clock.h"
#include "base/async/Job.h"

#include <functional>
#include <vector>

namespace kestrum {

// Main-thread actions that run once a delay has passed on a Clock: the delayed hover, the clearing of a
// "copied" mark, the brief display of a control. Each action is a task of its own; none cancels another,
// so an action that must not run late checks the state it changes when it runs.
//
// Threads: the main thread, which runs the event loop the sleeps resume on. Destroying the owner cancels
// every action still waiting, and a cancelled action never runs; the clock must outlive the owner.
class DelayedActions {
  public:
    explicit DelayedActions(Clock& clock) : clock_(clock) {}
    ~DelayedActions();
    DelayedActions(const DelayedActions&) = delete;
    DelayedActions& operator=(const DelayedActions&) = delete;

    // Runs `action` on the main thread once `delay` has passed, unless the returned job is cancelled
    // first or this owner goes.
    Job<void> after(Clock::Duration delay, std::function<void()> action);

    // Cancels every action still waiting.
    void cancelAll();

    Clock& clock() const { return clock_; }

  private:
    Clock& clock_;
    std::vector<Job<void>> waiting_;  // main thread; finished jobs are dropped at the next `after`
};

}  // namespace kestrum

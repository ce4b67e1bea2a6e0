#pragma once

#include "base/async/Clock.h"
#include "base/async/Job.h"

#include <QString>

#include <chrono>
#include <functional>
#include <optional>

namespace kestrum {

// The short message over the movie after a key or a click ("Paused", "Volume 40%"): a title and the
// system symbol name drawn beside it.
struct PlaybackFeedback {
    QString title;
    QString symbol;

    friend bool operator==(const PlaybackFeedback&, const PlaybackFeedback&) = default;
};

// The toast now showing. Each `show` replaces the one on screen at once and gets its own full second;
// the dismissal of an older one never clears a newer one.
//
// Threads: the main thread; the second is slept on the Clock. `changed` is called after every change of
// `feedback()`. The clock must outlive the toast; destroying the toast cancels its dismissal.
class DashboardToast {
  public:
    static constexpr std::chrono::milliseconds kDuration{1000};

    DashboardToast(Clock& clock, std::function<void()> changed);
    ~DashboardToast();
    DashboardToast(const DashboardToast&) = delete;
    DashboardToast& operator=(const DashboardToast&) = delete;

    void show(const QString& title, const QString& symbol);
    // Cancels the dismissal; the toast showing stays until the next `show` (the review window goes).
    void cancelDismissal();

    const std::optional<PlaybackFeedback>& feedback() const { return feedback_; }

  private:
    Clock& clock_;
    std::function<void()> changed_;
    std::optional<PlaybackFeedback> feedback_;  // main thread
    std::optional<Job<void>> dismissal_;        // main thread: feedbackDismissalTask
};

}  // namespace kestrum

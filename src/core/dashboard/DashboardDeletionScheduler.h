#pragma once

#include "base/async/Clock.h"
#include "base/async/Job.h"
#include "core/library/MatchVideo.h"
#include "platform/ports/FileActions.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <QString>

#include <chrono>
#include <functional>
#include <optional>
#include <vector>

namespace kestrum {

// Deletion with an undo: a swipe marks a recording, and five seconds later its movie and session
// document go to the trash; the same swipe within those seconds takes the mark back. Nothing is ever
// deleted outright. The context menu's "Move to Trash" sends files to the trash at once.
//
// A recording is normal (no entry), pending (an entry in each of the three maps, keyed by the movie's
// path) or gone (in the trash). The review window going cancels every delay: a pending deletion then
// never happens, on purpose, as when the program quits.
//
// While pending, a recording's card shows the whole seconds left (the deadline less now, rounded up),
// updated every second; at 0 it keeps showing until the files have gone.
//
// Threads: the main thread; the delays run on the Clock, so a cancellation and a commit never race. The
// clock and the file actions must outlive the scheduler; destroying it cancels the delays.
class DashboardDeletionScheduler : public QObject {
    Q_OBJECT

  public:
    static constexpr std::chrono::milliseconds kUndoDelay{5000};
    static constexpr std::chrono::milliseconds kCountdownInterval{1000};

    struct Hooks {
        // Before the files go: the player of a recording among them pauses, to release its file.
        std::function<void(const std::vector<MatchVideo>&)> willTrash;
        // The movies that went: the library forgets them and refreshes.
        std::function<void(const QSet<QString>& moviePaths)> didTrash;
        // Some files stayed: the alert's message.
        std::function<void(const QString& message)> reportFailure;
    };

    DashboardDeletionScheduler(Clock& clock, FileActions& fileActions, Hooks hooks,
                               QObject* parent = nullptr);
    ~DashboardDeletionScheduler() override;

    // The swipe: undoes the recording's pending deletion if it is pending for this very record,
    // otherwise schedules one.
    void handleDeletionAction(const MatchVideo& match);
    void scheduleDeletion(const MatchVideo& match);
    void cancelPendingDeletion(const MatchVideo& match);
    void commitDeletion(const MatchVideo& match);
    void moveRecordingsToTrash(const std::vector<MatchVideo>& matches);

    // Cancels every pending deletion; the recordings stay.
    void cancelAll();

    bool isPending(const QString& moviePath) const { return pendingDeletionDeadlines_.contains(moviePath); }
    // The seconds the card shows; absent when not pending.
    std::optional<long long> secondsLeft(const QString& moviePath) const;
    std::optional<Clock::TimePoint> deadline(const QString& moviePath) const;

  signals:
    // A recording became pending, stopped being, or its countdown moved.
    void pendingChanged(const QString& moviePath);

  private:
    void forget(const QString& moviePath);
    QCoro::Task<void> runDelay(MatchVideo match, Clock::TimePoint deadline, CancellationToken token);

    Clock& clock_;
    FileActions& fileActions_;
    Hooks hooks_;
    // All main thread, keyed by movie path.
    QHash<QString, Clock::TimePoint> pendingDeletionDeadlines_;
    QHash<QString, MatchVideo> pendingDeletionMatches_;
    QHash<QString, Job<void>> pendingDeletionTasks_;
    QHash<QString, long long> pendingDeletionSecondsLeft_;
};

}  // namespace kestrum

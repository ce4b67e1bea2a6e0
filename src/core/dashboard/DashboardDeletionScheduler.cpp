#include "core/dashboard/DashboardDeletionScheduler.h"

#include "core/dashboard/DashboardTexts.h"
#include "core/dashboard/RecordingTrash.h"

#include <algorithm>
#include <utility>

namespace kestrum {

namespace {

long long wholeSecondsUntil(Clock::TimePoint deadline, Clock::TimePoint now) {
    using namespace std::chrono;
    const auto left = duration_cast<milliseconds>(deadline - now).count();
    return std::max<long long>(0, (left + 999) / 1000);
}

}  // namespace

DashboardDeletionScheduler::DashboardDeletionScheduler(Clock& clock, FileActions& fileActions, Hooks hooks,
                                                       QObject* parent)
    : QObject(parent), clock_(clock), fileActions_(fileActions), hooks_(std::move(hooks)) {}

DashboardDeletionScheduler::~DashboardDeletionScheduler() {
    for (const Job<void>& task : std::as_const(pendingDeletionTasks_)) task.cancel();
}

void DashboardDeletionScheduler::handleDeletionAction(const MatchVideo& match) {
    const auto pending = pendingDeletionMatches_.constFind(match.url);
    if (pending != pendingDeletionMatches_.constEnd() && *pending == match) {
        cancelPendingDeletion(match);
        return;
    }
    scheduleDeletion(match);
}

void DashboardDeletionScheduler::scheduleDeletion(const MatchVideo& match) {
    if (pendingDeletionDeadlines_.contains(match.url)) return;
    const Clock::TimePoint deadline = clock_.now() + kUndoDelay;
    pendingDeletionDeadlines_.insert(match.url, deadline);
    pendingDeletionMatches_.insert(match.url, match);
    pendingDeletionSecondsLeft_.insert(match.url, wholeSecondsUntil(deadline, clock_.now()));
    pendingDeletionTasks_.insert(match.url,
                                 Job<void>::start([this, match, deadline](CancellationToken token) {
                                     return runDelay(match, deadline, std::move(token));
                                 }));
    emit pendingChanged(match.url);
}

QCoro::Task<void> DashboardDeletionScheduler::runDelay(MatchVideo match, Clock::TimePoint deadline,
                                                       CancellationToken token) {
    // The countdown moves once a second; the last sleep ends exactly at the deadline.
    while (clock_.now() < deadline) {
        const Clock::Duration nap = std::min<Clock::Duration>(kCountdownInterval, deadline - clock_.now());
        QCoro::Task<bool> sleep = clock_.sleep(nap, token);
        const bool waited = co_await sleep;
        if (!waited || token.isCancelled()) co_return;  // undone, or the window went: touch nothing
        pendingDeletionSecondsLeft_.insert(match.url, wholeSecondsUntil(deadline, clock_.now()));
        emit pendingChanged(match.url);
    }
    commitDeletion(match);
}

void DashboardDeletionScheduler::cancelPendingDeletion(const MatchVideo& match) {
    if (const auto task = pendingDeletionTasks_.constFind(match.url);
        task != pendingDeletionTasks_.constEnd()) {
        task->cancel();
    }
    forget(match.url);
    emit pendingChanged(match.url);
}

void DashboardDeletionScheduler::commitDeletion(const MatchVideo& match) {
    forget(match.url);
    emit pendingChanged(match.url);
    moveRecordingsToTrash({match});
}

void DashboardDeletionScheduler::moveRecordingsToTrash(const std::vector<MatchVideo>& matches) {
    if (hooks_.willTrash) hooks_.willTrash(matches);
    const RecordingTrashOutcome outcome = moveRecordingFilesToTrash(fileActions_, matches);
    if (hooks_.didTrash) hooks_.didTrash(outcome.trashedMoviePaths);
    if (!outcome.failureLines.isEmpty() && hooks_.reportFailure) {
        hooks_.reportFailure(DashboardTexts::trashFailure(outcome.failureLines));
    }
}

void DashboardDeletionScheduler::cancelAll() {
    const QList<QString> paths = pendingDeletionTasks_.keys();
    for (const Job<void>& task : std::as_const(pendingDeletionTasks_)) task.cancel();
    pendingDeletionTasks_.clear();
    pendingDeletionDeadlines_.clear();
    pendingDeletionMatches_.clear();
    pendingDeletionSecondsLeft_.clear();
    for (const QString& path : paths) emit pendingChanged(path);
}

std::optional<long long> DashboardDeletionScheduler::secondsLeft(const QString& moviePath) const {
    const auto found = pendingDeletionSecondsLeft_.constFind(moviePath);
    if (found == pendingDeletionSecondsLeft_.constEnd()) return std::nullopt;
    return *found;
}

std::optional<Clock::TimePoint> DashboardDeletionScheduler::deadline(const QString& moviePath) const {
    const auto found = pendingDeletionDeadlines_.constFind(moviePath);
    if (found == pendingDeletionDeadlines_.constEnd()) return std::nullopt;
    return *found;
}

void DashboardDeletionScheduler::forget(const QString& moviePath) {
    pendingDeletionTasks_.remove(moviePath);
    pendingDeletionDeadlines_.remove(moviePath);
    pendingDeletionMatches_.remove(moviePath);
    pendingDeletionSecondsLeft_.remove(moviePath);
}

}  // namespace kestrum

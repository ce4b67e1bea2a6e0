#include "core/share/LeagueShareCoordinator.h"

#include "core/share/LeagueShareWindowGeometry.h"

namespace kestrum {

LeagueShareCoordinator::LeagueShareCoordinator(LeagueShareEnvironment environment, QObject* parent)
    : QObject(parent), environment_(std::move(environment)) {}

LeagueShareCoordinator::~LeagueShareCoordinator() {
    if (monitoringTask_) monitoringTask_->cancel();
    focusObserver_.reset();
    // The stream goes before the queue drains, so nothing new is queued behind the drain; the outputs
    // are members declared before the queue and still alive while it runs.
    fanout_.endStream();
    stream_.reset();
}

void LeagueShareCoordinator::start() {
    if (monitoringTask_) return;
    if (!environment_.screenCaptureAccess.preflight()) {
        setRunning(false);
        setStatus(LeagueShareStatus::permissionRequired());
        return;
    }
    setRunning(true);
    const QPointer<LeagueShareCoordinator> self(this);
    focusObserver_ =
        environment_.workspace.observe(Workspace::Notice::didActivate, [self](const RunningApplication&) {
            if (self) self->updateSourceFocus();
        });
    startMonitoring(stopTask_);
}

void LeagueShareCoordinator::startMonitoring(std::optional<Job<void>> pendingStop) {
    monitoringTask_ =
        Job<void>::start([self = QPointer<LeagueShareCoordinator>(this), clock = &environment_.clock,
                          pendingStop](CancellationToken token) -> QCoro::Task<void> {
            // A stop still under way finishes first, so that its stream's end never crosses a new start.
            if (pendingStop) co_await *pendingStop;
            while (self && !token.isCancelled()) {
                co_await self->refresh(token);
                if (!self || token.isCancelled()) co_return;
                co_await clock->sleep(kMonitoringPeriod, token);  // a sleep ended by the stop is no failure
            }
        });
}

void LeagueShareCoordinator::stop() {
    stopTask_ = Job<void>::start(
        [self = QPointer<LeagueShareCoordinator>(this)](CancellationToken) -> QCoro::Task<void> {
            if (self) co_await self->stopSharing();
        });
}

QCoro::Task<void> LeagueShareCoordinator::stopSharing() {
    const QPointer<LeagueShareCoordinator> self(this);
    setRunning(false);
    setStatus(LeagueShareStatus::stopped());
    focusObserver_.reset();
    // The refresh under way, if any, ends at its next step; its stream is stopped below.
    if (std::optional<Job<void>> monitoring = std::exchange(monitoringTask_, std::nullopt)) {
        monitoring->cancel();
        co_await *monitoring;
        if (!self) co_return;
    }
    co_await stopStream(StopKind::real);
    if (!self) co_return;
    failedPlan_.reset();
    setStatus(LeagueShareStatus::stopped());
}

void LeagueShareCoordinator::loseAccess() {
    setStatus(LeagueShareStatus::permissionRequired());
    setRunning(false);
    focusObserver_.reset();
    if (monitoringTask_) monitoringTask_->cancel();
    monitoringTask_.reset();
}

void LeagueShareCoordinator::addDisplaySurface(LeagueShareDisplaySurface& surface) {
    fanout_.addSurface(surface);
}

void LeagueShareCoordinator::removeDisplaySurface(LeagueShareDisplaySurface& surface) {
    fanout_.removeSurface(surface);
}

void LeagueShareCoordinator::setStatus(LeagueShareStatus status) {
    if (status == status_) return;
    status_ = std::move(status);
    emit statusChanged();
}

void LeagueShareCoordinator::setRunning(bool running) {
    if (running == isRunning_) return;
    isRunning_ = running;
    emit isRunningChanged();
}

void LeagueShareCoordinator::setSourceFocused(bool focused) {
    if (focused == isSourceFocused_) return;
    isSourceFocused_ = focused;
    emit isSourceFocusedChanged();
}

void LeagueShareCoordinator::setSourceUpdating(bool updating) {
    if (updating == isSourceUpdating_) return;
    isSourceUpdating_ = updating;
    emit isSourceUpdatingChanged();
}

void LeagueShareCoordinator::updateSourceFocus() {
    if (!applied_) {
        setSourceFocused(true);
        return;
    }
    const std::optional<RunningApplication> front = environment_.workspace.frontmostApplication();
    setSourceFocused(front && front->processIdentifier == applied_->processID);
}

void LeagueShareCoordinator::updateAspectRatio(QSizeF sourceSize) {
    if (!(sourceSize.width() > 0) || !(sourceSize.height() > 0)) return;
    const double ratio = sourceSize.width() / sourceSize.height();
    if (!isLeagueShareRatioChange(sourceAspectRatio_, ratio)) return;
    sourceAspectRatio_ = ratio;
    emit sourceAspectRatioChanged();
}

}  // namespace kestrum

#include "platform/linux/pulse/PulseLeagueShareAudioRoute.h"

#include <QCoroFuture>
#include <QtConcurrent/QtConcurrentRun>

namespace kestrum {

namespace {

// The worker's jobs are made outside the coroutines: GCC destroys the captures of a lambda that is a
// temporary of a co_await expression twice.
QFuture<Result<std::shared_ptr<PulseProcessSoundRoute>>> opening(QThreadPool& worker, std::int32_t processId,
                                                                 std::chrono::milliseconds timeout) {
    return QtConcurrent::run(&worker, [processId, timeout] {
        const PulseProcessSoundRoute::Names names{
            QByteArray(PulseLeagueShareAudioRoute::kSinkName),
            QString::fromUtf8(PulseLeagueShareAudioRoute::kSinkDescription)};
        return PulseProcessSoundRoute::open(processId, names, timeout);
    });
}

// A sink the server could not be told to remove goes with the next start, which replaces it.
QFuture<void> closing(QThreadPool& worker, std::shared_ptr<PulseProcessSoundRoute> route) {
    return QtConcurrent::run(&worker, [route = std::move(route)] { (void)route->close(); });
}

}  // namespace

PulseLeagueShareAudioRoute::PulseLeagueShareAudioRoute(std::chrono::milliseconds connectTimeout)
    : connectTimeout_(connectTimeout), state_(std::make_shared<State>()) {
    state_->worker.setMaxThreadCount(1);
    state_->worker.setObjectName(QStringLiteral("com.kestrum.share-audio"));
}

PulseLeagueShareAudioRoute::~PulseLeagueShareAudioRoute() {
    state_->adapterGone = true;
    state_->worker.waitForDone();
    if (state_->route) (void)state_->route->close();
    state_->route.reset();
}

QCoro::Task<Status> PulseLeagueShareAudioRoute::start(std::int32_t processId) {
    const std::shared_ptr<State> state = state_;
    const std::uint64_t request = ++state->request;
    co_await close(state);
    const QFuture<Result<std::shared_ptr<PulseProcessSoundRoute>>> job =
        opening(state->worker, processId, connectTimeout_);
    Result<std::shared_ptr<PulseProcessSoundRoute>> opened = co_await job;
    if (!opened.ok()) co_return opened.error();
    if (state->adapterGone || request != state->request) {
        // Overtaken by a later start or stop: this route never runs.
        const QFuture<void> discarding = closing(state->worker, std::move(opened).value());
        co_await discarding;
        co_return PulseMainLoop::makeError(
            QStringLiteral("League Share's sound route was stopped before it started."));
    }
    state->route = std::move(opened).value();
    co_return Status::success();
}

QCoro::Task<> PulseLeagueShareAudioRoute::stop() {
    const std::shared_ptr<State> state = state_;
    ++state->request;
    co_await close(state);
}

QCoro::Task<> PulseLeagueShareAudioRoute::close(std::shared_ptr<State> state) {
    std::shared_ptr<PulseProcessSoundRoute> route = std::move(state->route);
    state->route.reset();
    if (!route) co_return;
    const QFuture<void> job = closing(state->worker, std::move(route));
    co_await job;
}

}  // namespace kestrum

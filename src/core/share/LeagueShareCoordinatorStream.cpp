// The coordinator's refresh and its stream: the source choice, the new stream or the new configuration,
// the stops, and the sound route that goes with the stream.
#include "base/log/CaptureLog.h"
#include "core/share/LeagueShareCoordinator.h"

namespace kestrum {

namespace {

LeagueShareStatus sharingStatus(LeagueShareSource::Kind kind) {
    return kind == LeagueShareSource::Kind::game ? LeagueShareStatus::sharingGame()
                                                 : LeagueShareStatus::sharingClient();
}

}  // namespace

QCoro::Task<void> LeagueShareCoordinator::refresh(CancellationToken token) {
    const QPointer<LeagueShareCoordinator> self(this);
    if (!environment_.screenCaptureAccess.preflight()) {
        loseAccess();
        co_await stopStream(StopKind::real);
        co_return;
    }
    const Result<ShareableContentSnapshot> content = environment_.shareableContent.currentContent(true, true);
    if (!content.ok()) co_return;  // the next refresh asks again

    std::optional<LeagueShareSource> source = chooseLeagueShareSource(content.value());
    if (!source) {
        // Also how a stream that ended by itself is noticed: on this desktop a window stream ends only
        // with its window, which then is no longer listed.
        if (stream_) co_await stopStream(StopKind::real);
        if (!self || token.isCancelled()) co_return;
        failedPlan_.reset();  // a source that comes back is tried afresh
        setStatus(LeagueShareStatus::waiting());
        co_return;
    }
    updateAspectRatio(source->window.frame.size());

    const LeagueShareStreamPlan plan = planFor(*source);
    switch (decideLeagueShareStreamAction(applied_, plan)) {
        case LeagueShareStreamAction::keep:
            setStatus(sharingStatus(source->kind));
            break;
        case LeagueShareStreamAction::updateConfiguration:
            co_await reconfigureStream(source->kind, plan);
            break;
        case LeagueShareStreamAction::replaceStream:
            // A start that failed is tried again only once something it was made from changed.
            if (failedPlan_ &&
                decideLeagueShareStreamAction(failedPlan_, plan) == LeagueShareStreamAction::keep) {
                break;
            }
            co_await startStream(std::move(*source), plan, token);
            break;
    }
}

LeagueShareStreamPlan LeagueShareCoordinator::planFor(const LeagueShareSource& source) const {
    LeagueShareStreamPlan plan;
    plan.windowID = source.window.windowID;
    plan.processID = source.window.owningApplication ? source.window.owningApplication->processID : 0;
    plan.windowSize = source.window.frame.size();
    plan.resolution = environment_.settings.resolution();
    plan.frameRate = environment_.settings.frameRate();
    plan.includesAudio = environment_.settings.includesAudio();
    return plan;
}

QCoro::Task<void> LeagueShareCoordinator::startStream(LeagueShareSource source, LeagueShareStreamPlan plan,
                                                      CancellationToken token) {
    const QPointer<LeagueShareCoordinator> self(this);
    if (stream_) {
        co_await stopStream(StopKind::restart);
        if (!self || token.isCancelled()) co_return;
    }
    std::unique_ptr<WindowStream> stream =
        environment_.windowStreams.makeWindowStream(source.window, leagueShareConfiguration(plan));
    const std::uint64_t streamNumber = fanout_.beginStream();
    auto output =
        std::make_unique<LeagueShareStreamOutput>(fanout_, streamNumber, [this, streamNumber](bool updating) {
            // Posted to the main thread; the coordinator outlives its queue's deliveries (it drains the queue
            // before its QObject part goes), and a stream replaced meanwhile is ignored there.
            QMetaObject::invokeMethod(
                this,
                [this, streamNumber, updating] {
                    if (fanout_.isCurrent(streamNumber)) setSourceUpdating(updating);
                },
                Qt::QueuedConnection);
        });
    // The stream belongs to this coordinator and tells its end on the main thread, so `this` is alive.
    stream->setEndHandler(
        [this, streamNumber](const Error& reason) { handleStreamEnd(streamNumber, reason); });
    Status status = stream->addStreamOutput(*output, CaptureOutputType::screen, outputQueue_);
    stream_ = std::move(stream);
    streamOutput_ = std::move(output);
    if (status.ok()) {
        status = co_await stream_->startCapture();
        if (!self) co_return;
    }
    if (!status.ok()) {
        // The stream that never ran is taken down as by a real stop; the status tells why.
        const QString description = status.error().description;
        co_await stopStream(StopKind::real);
        if (!self) co_return;
        failedPlan_ = plan;
        logCaptureError(QStringLiteral("League Share could not start: ") + description);
        setStatus(LeagueShareStatus::failed(description));
        co_return;
    }
    applied_ = plan;
    failedPlan_.reset();
    if (token.isCancelled()) co_return;  // the stop under way ends this stream
    updateSourceFocus();
    setStatus(sharingStatus(source.kind));
    if (plan.includesAudio) co_await startAudioRoute(plan.processID);
}

void LeagueShareCoordinator::handleStreamEnd(std::uint64_t streamNumber, const Error& reason) {
    if (!fanout_.isCurrent(streamNumber)) return;  // a stream already stopped or replaced
    logCaptureError(QStringLiteral("League Share's stream ended: ") + reason.description);
    // Taken down after the stream's own call has returned: a stream is not stopped inside its handler.
    QMetaObject::invokeMethod(
        this,
        [this, streamNumber] {
            if (!fanout_.isCurrent(streamNumber)) return;
            streamEndTask_ = Job<void>::start(
                [self = QPointer<LeagueShareCoordinator>(this)](CancellationToken) -> QCoro::Task<void> {
                    if (!self) co_return;
                    co_await self->stopStream(StopKind::real);
                    // A stop of the whole share meanwhile has the last word.
                    if (self && self->isRunning_) self->setStatus(LeagueShareStatus::waiting());
                });
        },
        Qt::QueuedConnection);
}

QCoro::Task<void> LeagueShareCoordinator::startAudioRoute(qint32 processID) {
    const QPointer<LeagueShareCoordinator> self(this);
    const Status routed = co_await environment_.audioRoute.start(processID);
    if (!self) co_return;
    if (routed.ok()) {
        isAudioRouted_ = true;
        co_return;
    }
    // The picture goes on without its sound.
    logCaptureError(QStringLiteral("League Share sound could not start: ") + routed.error().description);
}

QCoro::Task<void> LeagueShareCoordinator::reconfigureStream(LeagueShareSource::Kind kind,
                                                            LeagueShareStreamPlan plan) {
    const QPointer<LeagueShareCoordinator> self(this);
    const Status updated = co_await stream_->updateConfiguration(leagueShareConfiguration(plan));
    if (!self) co_return;
    if (updated.ok()) {
        applied_ = plan;
    } else {
        // The old configuration stays; the next refresh tries again.
        logCaptureError(QStringLiteral("League Share could not resize its stream: ") +
                        updated.error().description);
    }
    setStatus(sharingStatus(kind));
}

QCoro::Task<void> LeagueShareCoordinator::stopStream(StopKind kind) {
    const QPointer<LeagueShareCoordinator> self(this);
    fanout_.endStream();
    std::unique_ptr<WindowStream> stream = std::move(stream_);
    std::shared_ptr<LeagueShareStreamOutput> output = std::move(streamOutput_);
    applied_.reset();
    setSourceFocused(true);
    setSourceUpdating(false);
    if (stream) {
        static_cast<void>(co_await stream->stopCapture());  // an error only says it had ended already
        if (!self) co_return;
        stream.reset();
    }
    // The output goes once the queue has run the deliveries queued before the stop.
    if (output) outputQueue_.async([output = std::move(output)] {});
    if (std::exchange(isAudioRouted_, false)) {
        co_await environment_.audioRoute.stop();
        if (!self) co_return;
    }
    fanout_.flush(kind == StopKind::real);
}

}  // namespace kestrum

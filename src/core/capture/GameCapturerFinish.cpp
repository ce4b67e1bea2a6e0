// The end of a capture: the streams stopped, the movie finalised and handed to the save path.
#include "base/log/CaptureLog.h"
#include "core/capture/CaptureLogText.h"
#include "core/capture/GameCapturer.h"

#include <QCoroFuture>

namespace kestrum {

QCoro::Task<void> GameCapturer::stopStreams() {
    auto stopVideo = stream_->stopCapture();
    const Status videoStopped = co_await std::move(stopVideo);
    if (!videoStopped.ok()) {
        logCaptureInfo(QStringLiteral("Capture source ended before stop completed: ") +
                       videoStopped.error().description);
    }
    if (!audioStream_) co_return;
    auto stopAudio = audioStream_->stopCapture();
    const Status audioStopped = co_await std::move(stopAudio);
    if (!audioStopped.ok()) {
        logCaptureInfo(QStringLiteral("Audio capture ended before stop completed: ") +
                       audioStopped.error().description);
    }
}

QCoro::Task<void> GameCapturer::finishCapture(std::optional<RecordingMetadata> metadata,
                                              std::vector<RecordingEvent> events,
                                              std::vector<RecordingScoreboardSnapshot> scoreboard) {
    if (!stream_ || !assetWriter_ || !tempPath_) co_return;
    const ReferenceDate date = recordingStartedAt_.value_or(ReferenceDate::now());
    stopFocusTracking();
    writeQueue_.sync([this] { isStopping_ = true; });
    auto stop = stopStreams();
    co_await std::move(stop);

    bool finishDue = false;
    writeQueue_.sync(
        [&] { finishDue = assetWriter_->status() == MovieWriterStatus::writing && isSessionStarted_; });
    if (finishDue) {
        // The inputs are not marked finished first: finishing drains them.
        auto finishing = assetWriter_->finishWriting();
        co_await std::move(finishing);
    } else if (assetWriter_->status() == MovieWriterStatus::writing) {
        assetWriter_->cancelWriting();
        logCaptureError(
            QStringLiteral("Recording finalization skipped because no video session was started."));
    }

    if (assetWriter_->status() != MovieWriterStatus::completed) {
        logCaptureError(QStringLiteral("Recording finalization failed: ") +
                        describeWriterFailure(*assetWriter_));
        resetCaptureState(true);
        co_return;
    }
    logCaptureInfo(QStringLiteral("Recording container finalized successfully."));
    const QString path = *tempPath_;
    resetCaptureState(false);
    auto save = environment_.savePath.saveRecording(path, date, std::move(metadata), std::move(events),
                                                    std::move(scoreboard));
    co_await std::move(save);
}

}  // namespace kestrum

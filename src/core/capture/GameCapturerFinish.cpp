// The end of a capture: the streams stopped, the movie finalised and handed to the save path.
#include "base/log/CaptureLog.h"
#include "core/capture/CaptureLogText.h"
#include "core/capture/GameCapturer.h"

#include <QCoroFuture>
#include <QStringList>

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

QStringList GameCapturer::trackSummaryLines() {
    const QString windowCounters = stream_->counters().description();
    std::optional<QString> systemAudioCounters;
    std::optional<QString> microphoneCounters;
    if (audioStream_) {
        systemAudioCounters = audioStream_->counters(CaptureOutputType::audio).description();
        microphoneCounters = audioStream_->counters(CaptureOutputType::microphone).description();
    }
    QStringList lines;
    // The tallies and the inputs belong to writeQueue; the streams have stopped, so they no longer move.
    writeQueue_.sync([&] {
        QString video = QStringLiteral("video: ") + videoTally_.description(QStringLiteral("frames"));
        if (privacyFramesWritten_ > 0)
            video += QStringLiteral(", privacy frames %1").arg(privacyFramesWritten_);
        lines << trackSummaryLine(video, videoInput_.get(), QStringLiteral("window stream"), windowCounters);
        const auto addAudio = [&](const QString& name, const RecordingAudioTrack& track,
                                  const std::optional<QString>& counters) {
            // A source that was off has neither an input nor samples: it gets no line.
            if (!track.input() && track.tally().received() == 0) return;
            lines << trackSummaryLine(
                name + QStringLiteral(": ") + track.tally().description(QStringLiteral("buffers")),
                track.input(), QStringLiteral("audio stream"), counters);
        };
        addAudio(QStringLiteral("system audio"), systemAudioTrack_, systemAudioCounters);
        addAudio(QStringLiteral("microphone"), microphoneTrack_, microphoneCounters);
    });
    return lines;
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
    // After the finish, so that the writer's own count of what it discarded is complete; logged after the
    // outcome, which they explain.
    const QStringList summaries = trackSummaryLines();
    const auto logSummaries = [&summaries] {
        for (const QString& line : summaries) logCaptureInfo(line);
    };

    if (assetWriter_->status() != MovieWriterStatus::completed) {
        logCaptureError(QStringLiteral("Recording finalization failed: ") +
                        describeWriterFailure(*assetWriter_));
        logSummaries();
        resetCaptureState(true);
        co_return;
    }
    logCaptureInfo(QStringLiteral("Recording container finalized successfully."));
    logSummaries();
    const QString path = *tempPath_;
    resetCaptureState(false);
    auto save = environment_.savePath.saveRecording(path, date, std::move(metadata), std::move(events),
                                                    std::move(scoreboard));
    co_await std::move(save);
}

}  // namespace kestrum

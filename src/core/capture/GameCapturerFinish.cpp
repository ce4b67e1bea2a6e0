// The end of a capture: the streams stopped, the movie finalised and handed to the save path.
#include "base/async/Detached.h"
#include "base/log/CaptureLog.h"
#include "core/capture/CaptureLogText.h"
#include "core/capture/GameCapturer.h"
#include "core/recording/RecordingRecovery.h"

#include <QCoroFuture>
#include <QStringList>

namespace kestrum {

QCoro::Task<std::optional<QString>> GameCapturer::stopStreams() {
    auto stopVideo = stream_->stopCapture();
    const Status videoStopped = co_await std::move(stopVideo);
    if (!videoStopped.ok()) {
        logCaptureInfo(QStringLiteral("Capture source ended before stop completed: ") +
                       videoStopped.error().description);
    }
    if (!audioStream_) co_return std::nullopt;
    auto stopAudio = audioStream_->stopCapture();
    const Status audioStopped = co_await std::move(stopAudio);
    if (audioStopped.ok()) co_return std::nullopt;
    logCaptureInfo(QStringLiteral("Audio capture ended before stop completed: ") +
                   audioStopped.error().description);
    co_return audioStopped.error().description;
}

QStringList GameCapturer::trackSummaryLines(const std::optional<QString>& audioEndedEarly) {
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
            QString line = trackSummaryLine(
                name + QStringLiteral(": ") + track.tally().description(QStringLiteral("buffers")),
                track.input(), QStringLiteral("audio stream"), counters);
            // The track ends where the stream did, short of the picture.
            if (audioEndedEarly) line += QStringLiteral("; ended before the stop: ") + *audioEndedEarly;
            lines << line;
        };
        addAudio(QStringLiteral("system audio"), systemAudioTrack_, systemAudioCounters);
        addAudio(QStringLiteral("microphone"), microphoneTrack_, microphoneCounters);
    });
    return lines;
}

QCoro::Task<bool> GameCapturer::finalizeMovie() {
    if (environment_.finalizationDelay > Clock::Duration::zero()) {
        auto pause = environment_.clock.sleep(environment_.finalizationDelay, CancellationToken());
        co_await std::move(pause);
    }
    bool sessionStarted = false;
    bool finishDue = false;
    writeQueue_.sync([&] {
        sessionStarted = isSessionStarted_;
        finishDue = assetWriter_->status() == MovieWriterStatus::writing && isSessionStarted_;
    });
    if (finishDue) {
        // The inputs are not marked finished first: finishing drains them.
        auto finishing = assetWriter_->finishWriting();
        co_await std::move(finishing);
    } else if (assetWriter_->status() == MovieWriterStatus::writing) {
        assetWriter_->cancelWriting();
        logCaptureError(
            QStringLiteral("Recording finalization skipped because no video session was started."));
    }
    co_return sessionStarted;
}

QCoro::Task<void> GameCapturer::salvageCutShortMovie(QString path) {
    // A named future: GCC 12 destroys the captures of a temporary lambda inside co_await twice.
    QFuture<Result<RecoveredMovie>> rebuilding =
        detached([recovery = &environment_.movieRecovery, path] { return recovery->recover(path); });
    const Result<RecoveredMovie> rebuilt = co_await rebuilding;
    if (rebuilt.ok()) {
        logCaptureInfo(QStringLiteral("The recording was cut short by that failure; the %1 seconds written "
                                      "before it are saved.")
                           .arg(QString::number(rebuilt.value().heldSeconds, 'f', 1)));
    } else {
        logCaptureError(RecordingRecovery::unplayableLine(rebuilt.error().description));
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
    const std::optional<QString> audioEndedEarly = co_await std::move(stop);
    auto finalizing = finalizeMovie();
    const bool sessionStarted = co_await std::move(finalizing);
    // After the finish, so that the writer's own count of what it discarded is complete; logged after the
    // outcome, which they explain.
    const QStringList summaries = trackSummaryLines(audioEndedEarly);
    const MovieWriterStatus status = assetWriter_->status();
    if (status == MovieWriterStatus::completed) {
        logCaptureInfo(QStringLiteral("Recording container finalized successfully."));
    } else {
        logCaptureError(QStringLiteral("Recording finalization failed: ") +
                        describeWriterFailure(*assetWriter_));
    }
    for (const QString& line : summaries) logCaptureInfo(line);
    // A writer that failed after it had written something keeps what it wrote; without a session
    // nothing was recorded.
    if (status != MovieWriterStatus::completed && (status != MovieWriterStatus::failed || !sessionStarted)) {
        resetCaptureState(true);
        co_return;
    }
    const QString path = *tempPath_;
    InProgressRecording recording = std::exchange(recording_, {});
    resetCaptureState(false);
    if (status != MovieWriterStatus::completed) {
        auto salvage = salvageCutShortMovie(path);
        co_await std::move(salvage);
    }
    auto save = environment_.savePath.saveRecording(path, date, std::move(metadata), std::move(events),
                                                    std::move(scoreboard));
    co_await std::move(save);
    recording.finish();
}

}  // namespace kestrum

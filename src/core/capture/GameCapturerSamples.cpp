// The capturer's work on writeQueue: the stream samples, the focus changes and the privacy screen.
#include "base/log/CaptureLog.h"
#include "core/capture/CaptureLogText.h"
#include "core/capture/GameCapturer.h"
#include "core/recording/StandardOutput.h"

#include <chrono>

namespace kestrum {

using namespace std::chrono_literals;

namespace {

constexpr auto kUnfocusedFrameInterval = 400ms;

bool isReady(const std::shared_ptr<MovieWriterInput>& input) {
    return input && input->isReadyForMoreMediaData();
}

}  // namespace

void GameCapturer::didOutputSample(CaptureSample& sample, CaptureOutputType type) {
    std::optional<RecordingSampleFate> dropped;
    if (isStopping_) {
        dropped = RecordingSampleFate::afterStop;
    } else if (!sample.dataIsReady) {
        dropped = RecordingSampleFate::dataNotReady;
    }
    switch (type) {
        case CaptureOutputType::microphone:
            if (dropped) return microphoneTrack_.countDropped(*dropped);
            return microphoneTrack_.handleBuffer(sample.audio, isSessionStarted_);
        case CaptureOutputType::audio:
            if (dropped) return systemAudioTrack_.countDropped(*dropped);
            return systemAudioTrack_.handleBuffer(sample.audio, isSessionStarted_);
        case CaptureOutputType::screen:
            if (dropped) return videoTally_.count(*dropped);
            return handleScreenSample(sample);
    }
}

void GameCapturer::handleScreenSample(const CaptureSample& sample) {
    if (!sample.imageBuffer) return videoTally_.count(RecordingSampleFate::withoutPicture);
    // While the game is away its pictures are not even kept: the privacy screen veils the last one seen
    // while the game was in front.
    if (!isGameFocused_) return videoTally_.count(RecordingSampleFate::whileUnfocused);
    lastSeenFrame_ = sample.imageBuffer;
    const HostTimeNs timeNs = sample.presentationTimeNs;
    if (timeNs <= lastVideoSampleTimeNs_) return videoTally_.count(RecordingSampleFate::notLater);
    if (!firstVideoFrameDate_) {
        // The date the frame was captured, not the date it arrived here.
        const double ageSeconds = hostTimeToSeconds(hostTimeNow() - timeNs);
        firstVideoFrameDate_ = ReferenceDate{ReferenceDate::now().secondsSince2001 - ageSeconds};
    }
    if (!isSessionStarted_) {
        assetWriter_->startSession(timeNs);
        isSessionStarted_ = true;
        printStandardOutputLine(
            QStringLiteral("⏳ [GameCapturer] Match recording session timeline starting at relative ") +
            secondsText(hostTimeToSeconds(timeNs)) + QStringLiteral("s."));
    }
    if (!isReady(videoInput_)) return videoTally_.count(RecordingSampleFate::notReady);
    if (videoInput_->append(sample.imageBuffer, timeNs)) {
        lastVideoSampleTimeNs_ = timeNs;
        return videoTally_.count(RecordingSampleFate::written);
    }
    videoTally_.count(RecordingSampleFate::refused);
    const int status = assetWriter_ ? static_cast<int>(assetWriter_->status()) : -1;
    const std::optional<Error> error = assetWriter_ ? assetWriter_->error() : std::nullopt;
    logCaptureError(QStringLiteral("Video frame rejected: writerStatus=") + QString::number(status) +
                    QStringLiteral(", error=") + (error ? error->description : QStringLiteral("none")) +
                    QLatin1Char('.'));
}

void GameCapturer::handleFocusChange(bool focused) {
    isGameFocused_ = focused;
    if (focused) {
        unfocusedFrameTimer_.reset();
        return;
    }
    appendUnfocusedFrame();
    startUnfocusedFrameTimer();
}

void GameCapturer::startUnfocusedFrameTimer() {
    if (unfocusedFrameTimer_) return;
    unfocusedFrameTimer_ = writeQueue_.scheduleTimer(kUnfocusedFrameInterval, kUnfocusedFrameInterval,
                                                     [this] { appendUnfocusedFrame(); });
}

void GameCapturer::appendUnfocusedFrame() {
    if (!lastSeenFrame_) return;
    std::shared_ptr<const PixelBuffer> frame = privacyFrameRenderer_.makeFrame(*lastSeenFrame_);
    if (!frame || !isReady(videoInput_)) return;
    const HostTimeNs timeNs = hostTimeNow();
    if (timeNs <= lastVideoSampleTimeNs_) return;
    if (!isSessionStarted_) {
        assetWriter_->startSession(timeNs);
        isSessionStarted_ = true;
    }
    if (!videoInput_->append(std::move(frame), timeNs)) return;
    lastVideoSampleTimeNs_ = timeNs;
    ++privacyFramesWritten_;
    logCaptureInfo(QStringLiteral("League is unfocused; appended the recording privacy screen."));
}

}  // namespace kestrum

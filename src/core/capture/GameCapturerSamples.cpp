// The capturer's work on writeQueue: the stream samples, the focus changes and the privacy screen.
#include "base/log/CaptureLog.h"
#include "core/capture/AudioRetiming.h"
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
    if (isStopping_ || !sample.dataIsReady) return;
    switch (type) {
        case CaptureOutputType::microphone:
            handleMicrophoneSample(sample);
            return;
        case CaptureOutputType::audio:
            handleSystemAudioSample(sample);
            return;
        case CaptureOutputType::screen:
            handleScreenSample(sample);
            return;
    }
}

void GameCapturer::handleScreenSample(const CaptureSample& sample) {
    if (!sample.imageBuffer) return;
    // While the game is away its pictures are not even kept: the privacy screen veils the last one seen
    // while the game was in front.
    if (!isGameFocused_) return;
    lastSeenFrame_ = sample.imageBuffer;
    const HostTimeNs timeNs = sample.presentationTimeNs;
    if (timeNs <= lastVideoSampleTimeNs_) return;
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
    if (!isReady(videoInput_)) return;
    if (videoInput_->append(sample.imageBuffer, timeNs)) {
        lastVideoSampleTimeNs_ = timeNs;
        return;
    }
    const int status = assetWriter_ ? static_cast<int>(assetWriter_->status()) : -1;
    const std::optional<Error> error = assetWriter_ ? assetWriter_->error() : std::nullopt;
    logCaptureError(QStringLiteral("Video frame rejected: writerStatus=") + QString::number(status) +
                    QStringLiteral(", error=") + (error ? error->description : QStringLiteral("none")) +
                    QLatin1Char('.'));
}

void GameCapturer::handleSystemAudioSample(CaptureSample& sample) {
    // Sound before the first frame never reaches the file: the movie starts with its picture.
    if (!isSessionStarted_ || !isReady(systemAudioInput_)) return;
    (void)systemAudioProcessor_.processSampleBuffer(sample.audio, false, systemAudioVolume_, 0.0);
    systemAudioInput_->append(std::move(sample.audio));
}

void GameCapturer::handleMicrophoneSample(CaptureSample& sample) {
    if (!isSessionStarted_ || !isReady(microphoneInput_)) return;
    (void)microphoneAudioProcessor_.processSampleBuffer(sample.audio, false, microphoneVolume_, 0.0);
    std::optional<AudioSampleBuffer> retimed = retimedToHostClock(std::move(sample.audio), hostTimeNow());
    if (retimed) microphoneInput_->append(std::move(*retimed));
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
    logCaptureInfo(QStringLiteral("League is unfocused; appended the recording privacy screen."));
}

}  // namespace kestrum

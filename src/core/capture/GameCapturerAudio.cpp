// The capturer's audio stream: the system's sound and the microphone of the display that shows the game.
#include "base/log/CaptureLog.h"
#include "core/capture/GameCapturer.h"

namespace kestrum {

namespace {

double overlapArea(const QRectF& display, const QRectF& window) {
    const QRectF overlap = display.intersected(window);
    return overlap.isEmpty() ? 0.0 : overlap.width() * overlap.height();
}

// The display that shows most of the window; of equal ones the first listed.
std::optional<ShareableDisplay> displayShowingMost(const std::vector<ShareableDisplay>& displays,
                                                   const QRectF& windowFrame) {
    std::optional<ShareableDisplay> best;
    double bestArea = 0;
    for (const ShareableDisplay& display : displays) {
        const double area = overlapArea(display.frame, windowFrame);
        if (!best || area > bestArea) {
            best = display;
            bestArea = area;
        }
    }
    return best;
}

QString trueFalse(bool value) {
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

}  // namespace

Result<std::unique_ptr<AudioStream>> GameCapturer::makeAudioStream(const ShareableWindow& window,
                                                                   bool systemAudio, bool microphone) {
    Result<ShareableContentSnapshot> content = environment_.shareableContent.currentContent(false, true);
    if (!content.ok()) return content.error();
    const std::optional<ShareableDisplay> display =
        displayShowingMost(content.value().displays, window.frame);
    if (!display) return std::unique_ptr<AudioStream>();
    AudioStreamConfiguration configuration;
    configuration.capturesAudio = systemAudio;
    configuration.excludesCurrentProcessAudio = true;
    configuration.captureMicrophone = microphone;
    return environment_.audioStreams.makeAudioStream(*display, configuration);
}

QCoro::Task<void> GameCapturer::startAudioCapture(const ShareableWindow& window, bool systemAudio,
                                                  bool microphone) {
    const auto fail = [](const Error& error) {
        logCaptureError(QStringLiteral("Audio capture could not start; continuing video-only: ") +
                        error.description);
    };
    Result<std::unique_ptr<AudioStream>> made = makeAudioStream(window, systemAudio, microphone);
    if (!made.ok()) co_return fail(made.error());
    std::unique_ptr<AudioStream> stream = std::move(made).value();
    if (!stream) {
        logCaptureError(QStringLiteral("No display was available for system audio capture."));
        co_return;
    }
    if (systemAudio) {
        const Status added = stream->addStreamOutput(*this, CaptureOutputType::audio, writeQueue_);
        if (!added.ok()) co_return fail(added.error());
    }
    if (microphone) {
        const Status added = stream->addStreamOutput(*this, CaptureOutputType::microphone, writeQueue_);
        if (!added.ok()) co_return fail(added.error());
    }
    auto start = stream->startCapture();
    const Status started = co_await std::move(start);
    if (!started.ok()) co_return fail(started.error());
    audioStream_ = std::move(stream);
    logCaptureInfo(QStringLiteral("Audio capture started (system: ") + trueFalse(systemAudio) +
                   QStringLiteral(", microphone: ") + trueFalse(microphone) + QStringLiteral(")."));
}

}  // namespace kestrum

#include "core/capture/GameCapturer.h"

#include "base/log/CaptureLog.h"
#include "core/capture/CaptureLogText.h"
#include "core/capture/GameWindowSearch.h"
#include "core/capture/RecordingCaptureSetup.h"
#include "core/recording/StandardOutput.h"

#include <QFile>

#include <chrono>

namespace kestrum {

using namespace std::chrono_literals;

namespace {

constexpr int kGameWindowAttempts = 120;
constexpr auto kGameWindowDelay = 500ms;
constexpr int kFirstFrameDatePolls = 40;
constexpr auto kFirstFrameDatePollInterval = 50ms;

}  // namespace

GameCapturer::GameCapturer(GameCapturerEnvironment environment)
    : environment_(std::move(environment)), focusMonitor_(environment_.workspace) {}

GameCapturer::~GameCapturer() {
    lifetimeToken_.cancel();
    focusMonitor_.stop();
    writeQueue_.sync([this] {
        isStopping_ = true;
        unfocusedFrameTimer_.reset();
    });
    // Streams stop synchronously when destroyed; after that nothing new reaches writeQueue.
    stream_.reset();
    audioStream_.reset();
    writeQueue_.sync([] {});
}

QCoro::Task<std::optional<ReferenceDate>> GameCapturer::startCapture() {
    writeQueue_.sync([this] {
        lastVideoSampleTimeNs_ = 0;
        firstVideoFrameDate_.reset();
    });
    recordingStartedAt_ = ReferenceDate::now();
    // The volumes are read here with the rest and reach the audio tracks with their inputs.
    const RecordingCaptureSettings settings =
        readRecordingCaptureSettings(environment_.defaults, environment_.microphoneAccess);

    if (!environment_.screenCaptureAccess.preflight()) {
        logCaptureError(QStringLiteral("Screen Recording access is unavailable; capture was not started."));
        co_return std::nullopt;
    }
    auto search =
        waitForGameWindow({environment_.shareableContent, environment_.workspace, environment_.clock},
                          kGameWindowAttempts, kGameWindowDelay, lifetimeToken_);
    Result<std::optional<ShareableWindow>> window = co_await std::move(search);
    if (!window.ok()) co_return failInitialization(window.error().description);
    if (!window.value()) {
        logCaptureError(QStringLiteral(
            "League game process was detected, but its capture window did not become available."));
        co_return std::nullopt;
    }
    const ShareableWindow& found = *window.value();
    if (found.owningApplication) gameProcessID_ = found.owningApplication->processID;
    logCaptureInfo(selectedCaptureWindowLine(found));

    Result<RecordingCaptureSetup> setup = prepareCaptureSetup(
        found, settings.resolution, settings.frameRate, settings.systemAudio, settings.microphone,
        {environment_.windowStreams, environment_.movieWriters, environment_.inProgressFolder});
    if (!setup.ok()) co_return failInitialization(setup.error().description);
    auto started = startWithSetup(std::move(setup).value(), settings);
    co_return co_await std::move(started);
}

std::optional<ReferenceDate> GameCapturer::failInitialization(const QString& description) {
    printStandardOutputLine(QStringLiteral("❌ [GameCapturer] Initialization failed: ") + description);
    logCaptureError(QStringLiteral("Capture initialization failed: ") + description);
    resetCaptureState(true);
    return std::nullopt;
}

QCoro::Task<std::optional<ReferenceDate>> GameCapturer::startWithSetup(
    RecordingCaptureSetup setup, const RecordingCaptureSettings& settings) {
    tempPath_ = setup.outputPath;
    claimRecording(setup.outputPath);
    assetWriter_ = std::move(setup.writer);
    videoInput_ = setup.videoInput;
    writeQueue_.sync([&] {
        systemAudioTrack_.prepare(setup.systemAudioInput, settings.systemAudioVolume);
        microphoneTrack_.prepare(setup.microphoneInput, settings.microphoneVolume);
        videoTally_.reset();
        privacyFramesWritten_ = 0;
    });

    if (!assetWriter_->startWriting()) {
        const std::optional<Error> error = assetWriter_->error();
        const QString description = error ? error->description : QStringLiteral("Unknown writer error");
        printStandardOutputLine(QStringLiteral("❌ [GameCapturer] AVAssetWriter could not start: ") +
                                description);
        logCaptureError(QStringLiteral("AVAssetWriter could not start: ") + description);
        resetCaptureState(true);
        co_return std::nullopt;
    }
    auto streamStart = startVideoStream(setup);
    const Status streamStarted = co_await std::move(streamStart);
    if (!streamStarted.ok()) co_return failInitialization(streamStarted.error().description);

    startFocusTracking();
    const QString size = QString::number(setup.width) + QLatin1Char('x') + QString::number(setup.height);
    printStandardOutputLine(QStringLiteral("🔴 [GameCapturer] Capturing League window at ") + size +
                            QStringLiteral(". Awaiting initial frame to map timeline..."));
    logCaptureInfo(QStringLiteral("Capturing League window at ") + size + QStringLiteral(", ") +
                   QString::number(rawValue(settings.frameRate)) + QStringLiteral(" FPS, ") +
                   displayText(settings.resolution) + QLatin1Char('.'));
    if (settings.systemAudio || settings.microphone) {
        auto audio = startAudioCapture(setup.window, settings.systemAudio, settings.microphone);
        co_await std::move(audio);
    }
    auto firstFrame = waitForFirstVideoFrameDate();
    co_return co_await std::move(firstFrame);
}

void GameCapturer::claimRecording(const QString& moviePath) {
    recording_ = InProgressRecording::claim(moviePath);
    if (!recording_.isOwned()) {
        logCaptureError(QStringLiteral("The recording in progress could not be locked: ") +
                        recording_.lockPath());
    }
    Result<std::shared_ptr<RecordingTelemetryJournal>> journal = RecordingTelemetryJournal::create(
        recording_.telemetryJournalPath(), recordingStartedAt_.value_or(ReferenceDate::now()));
    if (journal.ok()) {
        telemetryJournal_ = std::move(journal).value();
    } else {
        logCaptureError(
            QStringLiteral("Telemetry journal unavailable; a crash would lose this game's events: ") +
            journal.error().description);
    }
}

QCoro::Task<Status> GameCapturer::startVideoStream(const RecordingCaptureSetup& setup) {
    stream_ = environment_.windowStreams.makeWindowStream(setup.window, setup.streamConfiguration);
    const Status added = stream_->addStreamOutput(*this, CaptureOutputType::screen, writeQueue_);
    if (!added.ok()) co_return added;
    auto start = stream_->startCapture();
    co_return co_await std::move(start);
}

void GameCapturer::startFocusTracking() {
    stopFocusTracking();
    writeQueue_.async([this] {
        isGameFocused_ = true;
        privacyFrameRenderer_.setAnimationPhase(0);
    });
    if (!gameProcessID_) return;
    focusMonitor_.start(*gameProcessID_, [this](bool focused) {
        writeQueue_.async([this, focused] { handleFocusChange(focused); });
    });
}

void GameCapturer::stopFocusTracking() {
    focusMonitor_.stop();
    writeQueue_.async([this] {
        unfocusedFrameTimer_.reset();
        isGameFocused_ = true;
    });
}

QCoro::Task<std::optional<ReferenceDate>> GameCapturer::waitForFirstVideoFrameDate() {
    for (int polls = 0; polls < kFirstFrameDatePolls; ++polls) {
        std::optional<ReferenceDate> date;
        writeQueue_.sync([&] { date = firstVideoFrameDate_; });
        if (date) co_return date;
        // A failed sleep only shortens the wait.
        auto sleep = environment_.clock.sleep(kFirstFrameDatePollInterval, CancellationToken());
        co_await std::move(sleep);
    }
    logCaptureError(QStringLiteral("The first video timestamp was unavailable; using the current time."));
    co_return ReferenceDate::now();
}

void GameCapturer::resetCaptureState(bool removeFile) {
    const std::optional<QString> path = std::exchange(tempPath_, std::nullopt);
    stream_.reset();
    audioStream_.reset();
    stopFocusTracking();
    // The writer and inputs are read on writeQueue: they are let go there, after whatever it still holds.
    std::unique_ptr<MovieWriter> writer;
    writeQueue_.sync([&] {
        writer = std::move(assetWriter_);
        videoInput_.reset();
        systemAudioTrack_.release();
        microphoneTrack_.release();
        lastSeenFrame_.reset();
        firstVideoFrameDate_.reset();
        isSessionStarted_ = false;
        isStopping_ = false;
        lastVideoSampleTimeNs_ = 0;
    });
    writer.reset();
    gameProcessID_.reset();
    recordingStartedAt_.reset();
    if (telemetryJournal_) telemetryJournal_->close();
    telemetryJournal_.reset();
    // A recording being kept has been taken out of recording_ by its finish; one left here is discarded.
    InProgressRecording recording = std::exchange(recording_, {});
    if (!removeFile) return;
    recording.discard();
    if (path) QFile::remove(*path);
}

}  // namespace kestrum

#pragma once

#include "base/async/CancellationToken.h"
#include "base/async/Clock.h"
#include "base/async/SerialQueue.h"
#include "core/capture/LeagueGameFocusMonitor.h"
#include "core/capture/RecordingCaptureSettings.h"
#include "core/capture/audio/RecordingAudioTrack.h"
#include "core/capture/audio/RecordingSampleTally.h"
#include "core/capture/privacy/RecordingPrivacyFrameRenderer.h"
#include "core/recording/InProgressRecording.h"
#include "core/recording/RecordingCapturer.h"
#include "core/recording/RecordingSavePath.h"
#include "core/settings/UserDefaults.h"
#include "media/MovieRecovery.h"
#include "media/MovieWriterFactory.h"
#include "platform/ports/AudioStream.h"
#include "platform/ports/MicrophoneAccess.h"
#include "platform/ports/ScreenCaptureAccess.h"
#include "platform/ports/ShareableContent.h"
#include "platform/ports/WindowStream.h"
#include "platform/ports/Workspace.h"

#include <QStringList>

#include <memory>
#include <optional>

namespace kestrum {

struct RecordingCaptureSetup;

// What the capturer reaches the world through. All must outlive the capturer.
struct GameCapturerEnvironment {
    Workspace& workspace;
    ShareableContent& shareableContent;
    WindowStreamFactory& windowStreams;
    AudioStreamFactory& audioStreams;
    const ScreenCaptureAccess& screenCaptureAccess;
    const MicrophoneAccess& microphoneAccess;
    MovieWriterFactory& movieWriters;
    // Rebuilds a movie whose writer failed (a full disk) from its journal.
    const MovieRecovery& movieRecovery;
    RecordingSavePath& savePath;
    const UserDefaults& defaults;
    Clock& clock;
    // Where in-progress movies are written (RecordingSavePath::inProgressFolderPath() in the product).
    QString inProgressFolder;
    // A pause between the stop of the streams and the finalisation of the movie: zero in the product.
    // End-to-end tests lengthen a finalisation with it, to quit while one runs.
    Clock::Duration finalizationDelay = Clock::Duration::zero();
};

// The capture pipeline of one game at a time: finds the game's window, streams it into a movie on one
// monotonic host-clock timeline, replaces the picture with the privacy screen while the game is not in
// front, records the system sound and microphone on their own tracks, and hands the finished movie to
// the save path.
//
// Threads. The main thread runs `startCapture`, `finishCapture` and the focus notices. `writeQueue`
// ("com.kestrum.capture.queue") runs every sample, the focus changes and the privacy-frame timer, and
// alone touches the fields marked "writeQueue" below. The writer and the video input are set on the main
// thread before a stream starts, the audio tracks take their inputs and volumes inside a synchronous
// block on `writeQueue` then, and all are cleared only inside such a block after the streams stopped:
// those blocks are the handovers, and no lock is used.
//
// At the stop one line per track tells the capture log what became of the stream's samples (written,
// or dropped and why), what the writer input refused or discarded, and the stream's own counters.
//
// Crash safety: each recording is an InProgressRecording, claimed (locked) before its movie exists and
// held until it is saved, with the writer's movie journal and a telemetry journal beside the movie. A
// writer that fails while writing (a full disk) no longer costs the movie: what it wrote is rebuilt
// from the journal and saved as a recording cut short, with its document.
class GameCapturer final : public RecordingCapturer, private CaptureStreamOutput {
  public:
    explicit GameCapturer(GameCapturerEnvironment environment);
    ~GameCapturer() override;
    GameCapturer(const GameCapturer&) = delete;
    GameCapturer& operator=(const GameCapturer&) = delete;

    QCoro::Task<std::optional<ReferenceDate>> startCapture() override;
    QCoro::Task<void> finishCapture(std::optional<RecordingMetadata> metadata,
                                    std::vector<RecordingEvent> events,
                                    std::vector<RecordingScoreboardSnapshot> scoreboard) override;
    std::shared_ptr<RecordingTelemetryJournal> telemetryJournal() const override { return telemetryJournal_; }

    // Forgets the running capture; deletes the in-progress file when `removeFile`. Main thread.
    void resetCaptureState(bool removeFile);

    // The serial queue of all capture work, for tests that need to wait for what it already holds.
    SerialQueue& writeQueue() { return writeQueue_; }

  private:
    void didOutputSample(CaptureSample& sample, CaptureOutputType type) override;

    // Main thread: the steps of the start.
    QCoro::Task<std::optional<ReferenceDate>> startWithSetup(RecordingCaptureSetup setup,
                                                             const RecordingCaptureSettings& settings);
    std::optional<ReferenceDate> failInitialization(const QString& description);
    QCoro::Task<Status> startVideoStream(const RecordingCaptureSetup& setup);
    void startFocusTracking();
    void stopFocusTracking();
    QCoro::Task<std::optional<ReferenceDate>> waitForFirstVideoFrameDate();

    // Main thread: the audio stream; failures are logged and never stop the recording.
    QCoro::Task<void> startAudioCapture(const ShareableWindow& window, bool systemAudio, bool microphone);
    Result<std::unique_ptr<AudioStream>> makeAudioStream(const ShareableWindow& window, bool systemAudio,
                                                         bool microphone);

    // writeQueue: the samples and the privacy screen.
    void handleScreenSample(const CaptureSample& sample);
    void handleFocusChange(bool focused);
    void startUnfocusedFrameTimer();
    void appendUnfocusedFrame();

    // Main thread: the in-progress files of a new recording; their failures are logged and never stop it.
    void claimRecording(const QString& moviePath);

    // Main thread: the end of a capture.
    // Gives why the audio stream had ended by itself before the stop (a lost sound server), if it had.
    QCoro::Task<std::optional<QString>> stopStreams();
    // Finalises the movie when its session started, else cancels the writer; gives whether a session
    // had started.
    QCoro::Task<bool> finalizeMovie();
    // Rebuilds the movie of a writer that failed from its journal, and says so in the capture log.
    QCoro::Task<void> salvageCutShortMovie(QString path);
    // One line per track for the capture log, once the streams have stopped; an audio stream that ended
    // before the stop says so on its tracks' lines.
    QStringList trackSummaryLines(const std::optional<QString>& audioEndedEarly);

    GameCapturerEnvironment environment_;
    CancellationToken lifetimeToken_;  // cancels the window search when the capturer goes away

    // Main thread.
    std::unique_ptr<WindowStream> stream_;
    std::unique_ptr<AudioStream> audioStream_;
    std::optional<qint32> gameProcessID_;
    std::optional<QString> tempPath_;
    std::optional<ReferenceDate> recordingStartedAt_;
    InProgressRecording recording_;
    std::shared_ptr<RecordingTelemetryJournal> telemetryJournal_;
    LeagueGameFocusMonitor focusMonitor_;

    // Set on the main thread before the streams start; read on writeQueue (see the class comment).
    std::unique_ptr<MovieWriter> assetWriter_;
    std::shared_ptr<MovieWriterInput> videoInput_;

    // writeQueue.
    std::optional<SerialQueueTimer> unfocusedFrameTimer_;
    std::shared_ptr<const PixelBuffer> lastSeenFrame_;
    bool isGameFocused_ = true;
    bool isSessionStarted_ = false;
    bool isStopping_ = false;
    HostTimeNs lastVideoSampleTimeNs_ = 0;
    std::optional<ReferenceDate> firstVideoFrameDate_;
    RecordingPrivacyFrameRenderer privacyFrameRenderer_;
    RecordingAudioTrack systemAudioTrack_{RecordingAudioTiming::asStamped, environment_.clock};
    RecordingAudioTrack microphoneTrack_{RecordingAudioTiming::atArrival, environment_.clock};
    RecordingSampleTally videoTally_;
    std::int64_t privacyFramesWritten_ = 0;

    // Last member, so it is destroyed first: its destruction runs what it still holds while every field
    // above is alive, then joins its thread.
    SerialQueue writeQueue_{QStringLiteral("com.kestrum.capture.queue")};
};

}  // namespace kestrum

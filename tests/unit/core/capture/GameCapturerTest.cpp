#include "CapturerRig.h"
#include "ScriptedMovieWriter.h"
#include "base/async/ManualClock.h"
#include "core/settings/SettingsKeys.h"
#include "core/telemetry/RecordingTelemetryJournalCodec.h"
#include "support/CapturedLog.h"

#include <QFile>

#include <gtest/gtest.h>

#include <chrono>

namespace kestrum::test {
namespace {

using namespace std::chrono_literals;

AudioSampleBuffer stereoFloat(HostTimeNs timeNs, int frames = 480) {
    return AudioSampleBuffer(
        {}, timeNs, frames,
        {std::vector<std::uint8_t>(static_cast<std::size_t>(frames) * 2 * sizeof(float))});
}

bool deliverAudio(FakeAudioStream& stream, CaptureOutputType type, HostTimeNs timeNs) {
    CaptureSample sample;
    sample.presentationTimeNs = timeNs;
    sample.audio = stereoFloat(timeNs);
    return stream.core.deliver(std::move(sample), type);
}

// The capturer with a scripted writer on the real clock: the pipeline's decisions without encoding.
class GameCapturerSteps : public testing::Test {
  public:
    ScriptedMovieWriter& writer() { return *writers_.last; }
    RecordingInput& input(std::size_t index) { return *writer().inputs.at(index); }
    QStringList linesAfterDrain() {
        rig_.drainWriteQueue();
        waitForCaptureLogWrites();
        return log_.lines();
    }

    CapturedLog log_;
    ScriptedMovieWriterFactory writers_;
    CapturerRig rig_{writers_, Clock::system()};
};

TEST_F(GameCapturerSteps, firstFrameStartsTheSessionAndDatesTheMovie) {
    auto job = rig_.start();
    ASSERT_NE(rig_.stream(), nullptr);
    const HostTimeNs framePts = hostTimeNow() - 200'000'000;
    ASSERT_TRUE(rig_.stream()->deliverFrame(framePts));
    const std::optional<ReferenceDate> date = rig_.awaitStart(job);
    ASSERT_TRUE(date);
    EXPECT_NEAR(date->secondsSince2001, ReferenceDate::now().secondsSince2001 - 0.2, 0.1);
    EXPECT_EQ(writer().sessionStartNs, framePts);
    EXPECT_EQ(rig_.stream()->configuration(), (WindowStreamConfiguration{640, 360, 30, true}));
    EXPECT_EQ(linesAfterDrain(),
              (QStringList{QStringLiteral(
                               "Selected League capture window: id=77, title=League of Legends (TM) Client, "
                               "owner=League of Legends.exe, pid=4242, title=(100.0, 100.0, 640.0, 360.0), "
                               "onScreen=true."),
                           QStringLiteral("Capturing League window at 640x360, 30 FPS, 720p."),
                           QStringLiteral("Audio capture started (system: true, microphone: false).")}));
}

TEST_F(GameCapturerSteps, frameWithAnEqualTimeIsDroppedButVeiledWhenFocusLeaves) {
    auto job = rig_.start();
    const HostTimeNs pts = hostTimeNow();
    rig_.stream()->deliverFrame(pts, 0xFF0000FFu);  // red, appended
    rig_.stream()->deliverFrame(pts, 0xFF00FF00u);  // green, same time: dropped, yet the last seen
    rig_.awaitStart(job);
    rig_.drainWriteQueue();
    ASSERT_EQ(input(0).videoTimesNs.size(), 1u);
    rig_.focusElsewhere();
    rig_.drainWriteQueue();
    ASSERT_EQ(input(0).videoTimesNs.size(), 2u);
    const PixelBuffer& privacy = *input(0).lastFrame;
    const std::uint8_t* corner = privacy.data() + 4 * 4 + 4 * privacy.bytesPerRow();  // BGRA at (4, 4)
    EXPECT_GT(corner[1], 20);  // a tenth of the green shows through the veil
    EXPECT_LT(corner[2], 10);  // no red
    rig_.focusGame();
    rig_.finish();
}

TEST_F(GameCapturerSteps, soundBeforeTheFirstFrameIsDroppedAndMicrophoneRetimed) {
    rig_.defaults.setBool(true, SettingsKeys::recordMicrophone);
    rig_.microphoneAccess.setStatus(MicrophoneAccess::Status::authorized);
    auto job = rig_.start();
    rig_.stream()->deliverFrame(hostTimeNow());
    rig_.awaitStart(job);
    FakeAudioStream& audio = *rig_.audio();
    ASSERT_EQ(audio.configuration().captureMicrophone, true);
    rig_.drainWriteQueue();
    // The frame above started the session; sound from now on counts.
    const HostTimeNs systemPts = hostTimeNow();
    const HostTimeNs before = hostTimeNow();
    ASSERT_TRUE(deliverAudio(audio, CaptureOutputType::audio, systemPts));
    ASSERT_TRUE(deliverAudio(audio, CaptureOutputType::microphone, 5));  // a device clock's stamp
    rig_.drainWriteQueue();
    ASSERT_EQ(writer().inputs.size(), 3u);
    EXPECT_EQ(input(1).audioTimesNs, std::vector<HostTimeNs>{systemPts});
    ASSERT_EQ(input(2).audioTimesNs.size(), 1u);
    EXPECT_GE(input(2).audioTimesNs[0], before);
    EXPECT_LE(input(2).audioTimesNs[0], hostTimeNow());
    rig_.finish();
}

TEST_F(GameCapturerSteps, aSecondLossOfFocusAddsOnePrivacyFrameAndKeepsOneTimer) {
    auto job = rig_.start();
    rig_.stream()->deliverFrame(hostTimeNow());
    rig_.awaitStart(job);
    rig_.drainWriteQueue();
    ASSERT_EQ(input(0).videoTimesNs.size(), 1u);
    const HostTimeNs firstNoticeNs = hostTimeNow();
    rig_.focusElsewhere();
    rig_.focusElsewhere();
    rig_.drainWriteQueue();
    EXPECT_EQ(input(0).videoTimesNs.size(), 3u);  // one privacy frame for each notice
    processEventsFor(1000);
    rig_.focusGame();
    rig_.drainWriteQueue();
    const HostTimeNs focusBackNs = hostTimeNow();
    // One timer fires at most once every 0.4 s from the first notice, a second one would double that; a
    // busy machine only makes it fire less often, never more.
    const auto timerFrames = static_cast<std::int64_t>(input(0).videoTimesNs.size()) - 3;
    EXPECT_GE(timerFrames, 1);
    EXPECT_LE(timerFrames, (focusBackNs - firstNoticeNs) / 400'000'000);
    processEventsFor(500);
    rig_.drainWriteQueue();
    EXPECT_EQ(static_cast<std::int64_t>(input(0).videoTimesNs.size()), 3 + timerFrames)
        << "the timer outlived the focus";
    rig_.finish();
}

TEST_F(GameCapturerSteps, theStopLogsOneLinePerTrackWithTheFateOfEverySample) {
    rig_.defaults.setBool(true, SettingsKeys::recordMicrophone);
    rig_.microphoneAccess.setStatus(MicrophoneAccess::Status::authorized);
    auto job = rig_.start();
    FakeWindowStream& video = *rig_.stream();
    FakeAudioStream& audio = *rig_.audio();
    ASSERT_TRUE(deliverAudio(audio, CaptureOutputType::audio, hostTimeNow()));  // before the session
    const HostTimeNs firstNs = hostTimeNow();
    video.deliverFrame(firstNs);
    video.deliverFrame(firstNs);  // not later than the last
    rig_.awaitStart(job);
    rig_.drainWriteQueue();
    ASSERT_TRUE(deliverAudio(audio, CaptureOutputType::audio, hostTimeNow()));
    input(2).ready = false;
    ASSERT_TRUE(deliverAudio(audio, CaptureOutputType::microphone, hostTimeNow()));
    rig_.focusElsewhere();
    rig_.drainWriteQueue();
    video.deliverFrame(hostTimeNow());  // while unfocused
    rig_.drainWriteQueue();
    rig_.focusGame();
    CaptureSample notReady;
    notReady.dataIsReady = false;
    video.core.deliver(std::move(notReady), CaptureOutputType::screen);
    input(0).acceptsAppends = false;
    video.deliverFrame(hostTimeNow());  // refused
    rig_.drainWriteQueue();
    input(0).discarded = 2;
    input(1).refused = 3;
    video.scriptedCounters = {6, 0, 1, 0};
    audio.scriptedCounters[CaptureOutputType::audio] = {2, 0, 0, 0, 1};
    audio.scriptedCounters[CaptureOutputType::microphone] = {1, 1, 20, 0, std::nullopt};
    const qsizetype privacyFrames = static_cast<qsizetype>(input(0).videoTimesNs.size()) - 2;
    rig_.finish();

    const QStringList lines = linesAfterDrain();
    const qsizetype finalized = lines.indexOf(QStringLiteral("Recording container finalized successfully."));
    ASSERT_GE(finalized, 0) << lines.join('\n').toStdString();
    EXPECT_EQ(lines.mid(finalized + 1, 3),
              (QStringList{
                  QStringLiteral(
                      "video: 1 of 5 frames written (1 data not ready, 1 while unfocused, 1 not later than "
                      "the last, 1 refused), privacy frames %1; writer: 0 refused with its queue full, 2 "
                      "discarded; window stream: frames read 6, blank 0, late deadlines skipped 1, reads "
                      "failed 0")
                      .arg(privacyFrames),
                  QStringLiteral(
                      "system audio: 1 of 2 buffers written (1 before the session); writer: 3 refused with "
                      "its queue full, 0 discarded; audio stream: buffers 2, overruns 0, lost 0 ms, late 0 "
                      "ms, playback streams 1"),
                  QStringLiteral(
                      "microphone: 0 of 1 buffers written (1 not ready); writer: 0 refused with its queue "
                      "full, 0 discarded; audio stream: buffers 1, overruns 1, lost 20 ms, late 0 ms")}));
}

// A sound server lost mid-game ends the sound track early; the picture goes on, and the stop's lines of
// the sound tracks say why they are short.
TEST_F(GameCapturerSteps, anAudioStreamThatEndedByItselfIsNamedOnItsTracksLines) {
    auto job = rig_.start();
    rig_.stream()->deliverFrame(hostTimeNow());
    rig_.awaitStart(job);
    rig_.audio()->core.stopError =
        Error{QStringLiteral("Audio"), 1,
              QStringLiteral("The sound server ended the audio capture by itself."), nullptr};
    rig_.finish();
    const QStringList lines = linesAfterDrain();
    EXPECT_TRUE(lines.contains(QStringLiteral(
        "Audio capture ended before stop completed: The sound server ended the audio capture by itself.")));
    const auto systemAudio = std::find_if(lines.begin(), lines.end(), [](const QString& line) {
        return line.startsWith(QStringLiteral("system audio: "));
    });
    ASSERT_NE(systemAudio, lines.end()) << lines.join('\n').toStdString();
    EXPECT_TRUE(systemAudio->endsWith(
        QStringLiteral("; ended before the stop: The sound server ended the audio capture by itself.")))
        << systemAudio->toStdString();
    for (const QString& line : lines)
        EXPECT_FALSE(line.startsWith(QStringLiteral("video: ")) && line.contains("ended before"));
}

TEST_F(GameCapturerSteps, soundBeforeAnyFrameNeverReachesAnInput) {
    auto job = rig_.start();
    ASSERT_NE(rig_.audio(), nullptr);
    ASSERT_TRUE(deliverAudio(*rig_.audio(), CaptureOutputType::audio, hostTimeNow()));
    rig_.drainWriteQueue();
    EXPECT_TRUE(input(1).audioTimesNs.empty());
    rig_.stream()->deliverFrame(hostTimeNow());
    rig_.awaitStart(job);
    rig_.finish();
}

struct StartFailureRow {
    const char* name;
    std::function<void(CapturerRig&, ScriptedMovieWriterFactory&)> arrange;
    QString line;
};

class GameCapturerStartFailure : public GameCapturerSteps,
                                 public testing::WithParamInterface<StartFailureRow> {};

TEST_P(GameCapturerStartFailure, yieldsAbsentLogsAndLeavesNoFile) {
    GetParam().arrange(rig_, writers_);
    auto job = rig_.start();
    EXPECT_EQ(rig_.awaitStart(job), std::nullopt);
    EXPECT_TRUE(linesAfterDrain().contains(GetParam().line)) << log_.lines().join('\n').toStdString();
    EXPECT_TRUE(rig_.inProgressFiles().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Rows, GameCapturerStartFailure,
    testing::Values(
        StartFailureRow{"noScreenAccess", [](CapturerRig& rig, auto&) { rig.screenAccess.setGranted(false); },
                        QStringLiteral("Screen Recording access is unavailable; capture was not started.")},
        StartFailureRow{
            "contentUnreadable",
            [](CapturerRig& rig, auto&) { rig.content.setError(Error::withDescription("no display")); },
            QStringLiteral("Capture initialization failed: no display")},
        StartFailureRow{"writerNotCreated",
                        [](auto&, ScriptedMovieWriterFactory& writers) {
                            writers.creationFailure = Error::withDescription("read-only folder");
                        },
                        QStringLiteral("Capture initialization failed: read-only folder")},
        StartFailureRow{"writerNotStarted",
                        [](auto&, ScriptedMovieWriterFactory& writers) {
                            writers.configure = [](ScriptedMovieWriter& writer) {
                                writer.startFailure = Error::withDescription("encoder missing");
                            };
                        },
                        QStringLiteral("AVAssetWriter could not start: encoder missing")},
        StartFailureRow{"streamNotStarted",
                        [](CapturerRig& rig, auto&) {
                            rig.windowStreams.startError = Error::withDescription("window gone");
                        },
                        QStringLiteral("Capture initialization failed: window gone")}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(GameCapturerWindowSearch, givesUpAfterSixtySecondsWithoutAWindow) {
    CapturedLog log;
    ScriptedMovieWriterFactory writers;
    ManualClock clock;
    CapturerRig rig(writers, clock);
    rig.content.setContent({});
    auto job = rig.startWithoutWaiting();
    for (int step = 0; step < 200 && !job.isFinished(); ++step) {
        clock.advance(500ms);
        QCoreApplication::processEvents();
    }
    ASSERT_TRUE(job.isFinished());
    EXPECT_EQ(*job.result(), std::nullopt);
    EXPECT_EQ(rig.content.callCount(), 120);
    waitForCaptureLogWrites();
    EXPECT_EQ(log.lines(),
              QStringList{QStringLiteral(
                  "League game process was detected, but its capture window did not become available.")});
    EXPECT_EQ(writers.last, nullptr);
}

TEST_F(GameCapturerSteps, audioFailuresLeaveTheRecordingVideoOnly) {
    rig_.audioStreams.makeError = Error::withDescription("sound server gone");
    auto job = rig_.start();
    rig_.stream()->deliverFrame(hostTimeNow());
    EXPECT_TRUE(rig_.awaitStart(job));
    EXPECT_TRUE(linesAfterDrain().contains(
        QStringLiteral("Audio capture could not start; continuing video-only: sound server gone")));
    rig_.finish();
    EXPECT_EQ(rig_.savedMovies().size(), 1);
}

TEST_F(GameCapturerSteps, noDisplayMeansNoSound) {
    rig_.content.setContent({rig_.content.currentContent(true, true).value().windows, {}, {}});
    auto job = rig_.start();
    rig_.stream()->deliverFrame(hostTimeNow());
    EXPECT_TRUE(rig_.awaitStart(job));
    EXPECT_TRUE(
        linesAfterDrain().contains(QStringLiteral("No display was available for system audio capture.")));
    rig_.finish();
}

TEST_F(GameCapturerSteps, rejectedFramesAreLoggedAndTheRecordingGoesOn) {
    writers_.configure = [](ScriptedMovieWriter& writer) { writer.refuseAudio = true; };
    auto job = rig_.start();
    input(0).acceptsAppends = false;
    rig_.stream()->deliverFrame(hostTimeNow());
    rig_.awaitStart(job);
    EXPECT_TRUE(
        linesAfterDrain().contains(QStringLiteral("Video frame rejected: writerStatus=1, error=none.")));
    input(0).acceptsAppends = true;
    rig_.stream()->deliverFrame(hostTimeNow());
    rig_.drainWriteQueue();
    EXPECT_EQ(input(0).videoTimesNs.size(), 2u);
    rig_.finish();
}

TEST_F(GameCapturerSteps, aWriterThatFailedKeepsWhatItWroteAndOnlyAnEmptyRecordingGoes) {
    const Error diskFull{QStringLiteral("KestrumMovieWriter"), 3, QStringLiteral("disk full"),
                         std::make_shared<Error>(Error{QStringLiteral("POSIX"), 28,
                                                       QStringLiteral("No space left on device"), nullptr})};
    const QString failedLine = QStringLiteral(
        "Recording finalization failed: KestrumMovieWriter 3: disk full (underlying: POSIX 28: No space left "
        "on "
        "device)");
    struct Case {
        const char* name;
        bool deliversAFrame;
        Result<RecoveredMovie> rebuilt;
        QStringList expectedLines;  // in this order among the log's lines
        int savedMovies;
    };
    const std::vector<Case> cases{
        {"rebuilt from its journal",
         true,
         RecoveredMovie{12.5, false, 375, 2},
         {failedLine,
          QStringLiteral(
              "The recording was cut short by that failure; the 12.5 seconds written before it are saved."),
          QStringLiteral("Match recording saved to ")},
         1},
        {"not playable: kept as it is",
         true,
         Error::withDescription(QStringLiteral("The movie has no journal to rebuild it from.")),
         {failedLine,
          QStringLiteral(
              "An unfinished recording could not be made playable (The movie has no journal to rebuild "
              "it from.); it is kept as it is."),
          QStringLiteral("Match recording saved to ")},
         1},
        {"nothing recorded: no session was started",
         false,
         RecoveredMovie{},
         {QStringLiteral("Recording finalization skipped because no video session was started."),
          QStringLiteral("Recording finalization failed: Writer ended with status 4 and no error details.")},
         0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        CapturedLog log;
        ScriptedMovieWriterFactory writers;
        CapturerRig rig(writers, Clock::system());
        rig.scriptedRecovery.answer = c.rebuilt;
        writers.configure = [&](ScriptedMovieWriter& writer) { writer.finishFailure = diskFull; };
        auto job = rig.start();
        if (c.deliversAFrame) rig.stream()->deliverFrame(hostTimeNow());
        rig.awaitStart(job);
        const QString moviePath = writers.last->outputPath();
        rig.finish();
        rig.drainWriteQueue();
        waitForCaptureLogWrites();
        const QStringList lines = log.lines();
        qsizetype at = 0;
        for (const QString& expected : c.expectedLines) {
            const auto found = std::find_if(lines.begin() + at, lines.end(),
                                            [&](const QString& line) { return line.startsWith(expected); });
            ASSERT_NE(found, lines.end()) << expected.toStdString() << "\n" << lines.join('\n').toStdString();
            at = found - lines.begin() + 1;
        }
        EXPECT_EQ(rig.savedMovies().size(), c.savedMovies);
        EXPECT_EQ(rig.scriptedRecovery.asked(),
                  c.deliversAFrame ? std::vector<QString>{moviePath} : std::vector<QString>{});
        EXPECT_TRUE(rig.inProgressFiles().isEmpty()) << rig.inProgressFiles().join(' ').toStdString();
    }
}

TEST_F(GameCapturerSteps, aRecordingHoldsItsLockAndJournalUntilItIsSaved) {
    auto job = rig_.start();
    rig_.stream()->deliverFrame(hostTimeNow());
    ASSERT_TRUE(rig_.awaitStart(job));
    const QString moviePath = writer().outputPath();
    EXPECT_FALSE(InProgressRecording::claim(moviePath).isOwned()) << "the living recording is no orphan";
    const std::shared_ptr<RecordingTelemetryJournal> journal = rig_.capturer->telemetryJournal();
    ASSERT_TRUE(journal);
    EXPECT_EQ(journal->path(), moviePath + QStringLiteral(".telemetry"));
    journal->appendMetadata(RecordingMetadata{std::nullopt, "ARAM", "Jinx", std::nullopt});
    // A save that fails (the folder cannot be made) leaves the movie and its journals for the next launch.
    ASSERT_TRUE(QDir(rig_.recordingsFolder()).removeRecursively());
    ASSERT_TRUE(writeFileBytes(rig_.recordingsFolder(), "a file where the folder should be"));
    rig_.finish();
    EXPECT_EQ(rig_.capturer->telemetryJournal(), nullptr);
    EXPECT_TRUE(QFile::exists(moviePath));
    const RecordingTelemetryJournalContents journaled = decodeRecordingTelemetryJournal(
        readFileBytes(moviePath + QStringLiteral(".telemetry")).toStdString());
    ASSERT_TRUE(journaled.metadata);
    EXPECT_EQ(journaled.metadata->champion, "Jinx");
    EXPECT_TRUE(InProgressRecording::claim(moviePath).isOwned()) << "its lock is let go";
}

TEST_F(GameCapturerSteps, finishWithoutACaptureDoesNothing) {
    rig_.finish();
    EXPECT_TRUE(linesAfterDrain().isEmpty());
    EXPECT_TRUE(rig_.savedMovies().isEmpty());
}

}  // namespace
}  // namespace kestrum::test

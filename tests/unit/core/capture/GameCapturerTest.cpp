#include "CapturerRig.h"
#include "ScriptedMovieWriter.h"
#include "base/async/ManualClock.h"
#include "core/settings/SettingsKeys.h"
#include "support/CapturedLog.h"

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

TEST_F(GameCapturerSteps, failedFinalisationRemovesTheFileAndSavesNothing) {
    writers_.configure = [](ScriptedMovieWriter& writer) {
        Error failure{QStringLiteral("KestrumMovieWriter"), 3, QStringLiteral("disk full"),
                      std::make_shared<Error>(Error{QStringLiteral("POSIX"), 28,
                                                    QStringLiteral("No space left on device"), nullptr})};
        writer.finishFailure = failure;
    };
    auto job = rig_.start();
    rig_.stream()->deliverFrame(hostTimeNow());
    rig_.awaitStart(job);
    rig_.finish();
    EXPECT_TRUE(
        linesAfterDrain().contains(QStringLiteral("Recording finalization failed: KestrumMovieWriter 3: disk "
                                                  "full (underlying: POSIX 28: No space left on device)")));
    EXPECT_TRUE(rig_.inProgressFiles().isEmpty());
    EXPECT_TRUE(rig_.savedMovies().isEmpty());
}

TEST_F(GameCapturerSteps, finishWithoutACaptureDoesNothing) {
    rig_.finish();
    EXPECT_TRUE(linesAfterDrain().isEmpty());
    EXPECT_TRUE(rig_.savedMovies().isEmpty());
}

}  // namespace
}  // namespace kestrum::test

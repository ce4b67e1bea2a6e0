// Whole recordings through the real capturer and the real FFmpeg writer, fed by fake streams, read
// back by decoding and by ffprobe.
#include "../../unit/core/capture/CapturerRig.h"
#include "../media/MediaTestSupport.h"
#include "media/ffmpeg/FfmpegMovieWriterFactory.h"
#include "support/CapturedLog.h"

#include <gtest/gtest.h>

#include <QJsonArray>

#include <atomic>
#include <cmath>
#include <thread>

namespace kestrum::test {
namespace {

constexpr double kPrivacyLumaBelow = 100;  // the veil keeps a tenth of the light-grey game picture

// Feeds the rig's streams from a thread of its own, as a capture device would: light-grey frames at
// 30 a second and stereo silence in 20 ms buffers, all stamped on the host clock.
class Producer {
  public:
    Producer(FakeWindowStream& video, FakeAudioStream* audio) : video_(video), audio_(audio) {
        thread_ = std::thread([this] { run(); });
    }
    ~Producer() { stop(); }
    void stop() {
        running_ = false;
        if (thread_.joinable()) thread_.join();
    }
    HostTimeNs firstFrameNs() const { return firstFrameNs_; }

  private:
    void run() {
        HostTimeNs nextAudioNs = hostTimeNow();
        while (running_) {
            const HostTimeNs nowNs = hostTimeNow();
            if (firstFrameNs_ == 0) firstFrameNs_ = nowNs;
            video_.deliverFrame(nowNs, 0xFFE0E0E0u);
            for (; audio_ && nextAudioNs < nowNs; nextAudioNs += 20'000'000) {
                CaptureSample sample;
                sample.presentationTimeNs = nextAudioNs;
                sample.audio = AudioSampleBuffer({}, nextAudioNs, 960, {std::vector<std::uint8_t>(960 * 8)});
                audio_->core.deliver(std::move(sample), CaptureOutputType::audio);
            }
            std::this_thread::sleep_for(std::chrono::microseconds(33'333));
        }
    }

    FakeWindowStream& video_;
    FakeAudioStream* audio_;
    std::atomic<bool> running_ = true;
    std::atomic<HostTimeNs> firstFrameNs_ = 0;
    std::thread thread_;
};

class GameCapturerMovie : public testing::Test {
  public:
    void SetUp() override {
        KESTRUM_REQUIRE_MEDIA(encoderAvailable("libx265") || encoderAvailable("hevc_vaapi"),
                              "an HEVC encoder");
        // A small window keeps the encoder well ahead of real time on a busy machine: a frame the writer
        // is not ready for is dropped by design, and would make the counts below flaky.
        rig_.setGameWindowSize(320, 180);
    }
    // Seconds of movie time at host time `ns`, the first frame being time 0.
    double movieSeconds(HostTimeNs ns, const Producer& producer) const {
        return hostTimeToSeconds(ns - producer.firstFrameNs());
    }
    QString savedMovie() const {
        const QStringList movies = rig_.savedMovies();
        return movies.size() == 1 ? rig_.recordingsFolder() + QLatin1Char('/') + movies.first() : QString();
    }
    static std::vector<double> privacyFrameTimes(const std::vector<DecodedFrame>& frames) {
        std::vector<double> times;
        for (const DecodedFrame& frame : frames) {
            if (frame.meanLuma < kPrivacyLumaBelow) times.push_back(frame.seconds);
        }
        return times;
    }

    CapturedLog log_;
    ffmpeg::FfmpegMovieWriterFactory writers_;
    CapturerRig rig_{writers_, Clock::system()};
};

TEST_F(GameCapturerMovie, privacyScreenFillsExactlyTheUnfocusedSpanAtTwoAndAHalfFramesASecond) {
    auto job = rig_.start();
    ASSERT_NE(rig_.stream(), nullptr);
    Producer producer(*rig_.stream(), rig_.audio());
    ASSERT_TRUE(rig_.awaitStart(job));
    processEventsFor(1000);
    rig_.focusElsewhere();
    const HostTimeNs awayNs = hostTimeNow();
    processEventsFor(2000);
    rig_.focusGame();
    const HostTimeNs backNs = hostTimeNow();
    processEventsFor(1000);
    producer.stop();
    rig_.finish();

    const QString movie = savedMovie();
    ASSERT_FALSE(movie.isEmpty()) << log_.lines().join('\n').toStdString();
    const std::vector<double> privacy = privacyFrameTimes(decodeVideo(movie));
    const double away = movieSeconds(awayNs, producer);
    const double back = movieSeconds(backNs, producer);
    ASSERT_GE(privacy.size(), 5u);
    ASSERT_LE(privacy.size(), 6u);
    EXPECT_NEAR(privacy.front(), away, 0.1);
    EXPECT_LT(privacy.back(), back + 0.05);
    for (std::size_t i = 1; i < privacy.size(); ++i) EXPECT_NEAR(privacy[i] - privacy[i - 1], 0.4, 0.06);
    for (const DecodedFrame& frame : decodeVideo(movie)) {
        // Frames near the two switches may be of either kind: the switch and the frame race.
        if (std::abs(frame.seconds - away) < 0.1 || std::abs(frame.seconds - back) < 0.1) continue;
        const bool insideGap = frame.seconds > away && frame.seconds < back;
        EXPECT_EQ(frame.meanLuma < kPrivacyLumaBelow, insideGap) << "frame at " << frame.seconds;
    }

    const std::optional<QJsonObject> probe = probeJson(movie);
    ASSERT_TRUE(probe);
    const QJsonArray streams = (*probe)[QStringLiteral("streams")].toArray();
    ASSERT_EQ(streams.size(), 2);  // video, then system audio
    EXPECT_EQ(streams[0][QStringLiteral("codec_name")].toString(), QStringLiteral("hevc"));
    EXPECT_EQ(streams[0][QStringLiteral("width")].toInt(), 320);
    EXPECT_EQ(streams[1][QStringLiteral("codec_name")].toString(), QStringLiteral("aac"));
    waitForCaptureLogWrites();
    EXPECT_EQ(
        log_.countStartingWith(QStringLiteral("League is unfocused; appended the recording privacy screen.")),
        static_cast<int>(privacy.size()));
}

TEST_F(GameCapturerMovie, focusBackWithinTheIntervalGivesOnePrivacyFrame) {
    auto job = rig_.start();
    Producer producer(*rig_.stream(), nullptr);
    ASSERT_TRUE(rig_.awaitStart(job));
    processEventsFor(500);
    rig_.focusElsewhere();
    processEventsFor(150);
    rig_.focusGame();
    processEventsFor(700);
    producer.stop();
    rig_.finish();
    const QString movie = savedMovie();
    ASSERT_FALSE(movie.isEmpty());
    EXPECT_EQ(privacyFrameTimes(decodeVideo(movie)).size(), 1u);
}

TEST_F(GameCapturerMovie, focusLostBeforeAnyFrameEndsWithoutAMovie) {
    auto job = rig_.start();
    rig_.focusElsewhere();
    ASSERT_TRUE(rig_.awaitStart(job));  // the current time, after two seconds without a frame
    rig_.finish();
    waitForCaptureLogWrites();
    const QStringList lines = log_.lines();
    EXPECT_TRUE(
        lines.contains(QStringLiteral("The first video timestamp was unavailable; using the current time.")));
    const qsizetype skipped =
        lines.indexOf(QStringLiteral("Recording finalization skipped because no video session was started."));
    ASSERT_GE(skipped, 0);
    EXPECT_EQ(
        lines.value(skipped + 1),
        QStringLiteral("Recording finalization failed: Writer ended with status 4 and no error details."));
    EXPECT_TRUE(rig_.inProgressFiles().isEmpty());
    EXPECT_TRUE(rig_.savedMovies().isEmpty());
}

}  // namespace
}  // namespace kestrum::test

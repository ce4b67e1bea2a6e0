// The PulseAudio stream against a private pulseaudio with a null sink and a null source: a tone played
// into the sink must come back on the monitor, stamped on the host clock, buffer after buffer.
#include "AudioSampleRecorder.h"
#include "platform/linux/pulse/PulseAudioStreamClock.h"
#include "platform/linux/pulse/PulseAudioStreamFactory.h"
#include "support/DisplayServers.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QCoroTask>
#include <QDir>
#include <QLocalServer>
#include <QProcess>
#include <QTemporaryFile>

#include <algorithm>
#include <chrono>
#include <numbers>
#include <thread>

namespace kestrum::test {
namespace {

using Buffers = std::vector<AudioSampleRecorder::Received>;

// Plays one second of a 440 Hz sine at half scale into the default sink and returns once it has been
// played out. pacat inherits PULSE_SERVER from the test's server.
bool playTone() {
    QTemporaryFile raw;
    if (!raw.open()) return false;
    std::vector<float> samples(2 * 48000);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] = 0.5f * float(std::sin(2 * std::numbers::pi * 440.0 * double(i / 2) / 48000));
    }
    raw.write(reinterpret_cast<const char*>(samples.data()), qint64(samples.size() * sizeof(float)));
    raw.flush();
    QProcess pacat;
    pacat.start(QStringLiteral("pacat"),
                {QStringLiteral("--raw"), QStringLiteral("--format=float32le"),
                 QStringLiteral("--rate=48000"), QStringLiteral("--channels=2"), raw.fileName()});
    return pacat.waitForFinished(15000) && pacat.exitCode() == 0;
}

HostTimeNs endOf(const AudioSampleRecorder::Received& buffer) {
    return buffer.hostTimeNs + HostTimeNs(buffer.frameCount) * 1'000'000'000 / 48000;
}

// Float stereo at 48 kHz on the registered queue; each buffer starts where the one before it ended;
// and each ends before its output ran, give or take the clock's snap. The median lag is the delivery hop,
// not the server's or the sink's buffering, once the run is long enough that the first fragments (a
// backlog, and held back while the clock settles) are the minority.
void expectCapturedRun(const Buffers& buffers) {
    ASSERT_GT(buffers.size(), 10u);
    std::vector<HostTimeNs> lagsNs;
    for (std::size_t i = 0; i < buffers.size(); ++i) {
        const auto& buffer = buffers[i];
        ASSERT_TRUE(buffer.onQueue && buffer.wellFormed && buffer.format.isFloat()) << i;
        ASSERT_EQ(buffer.format.bitsPerChannel, 32u);
        ASSERT_EQ(buffer.format.channelsPerFrame, 2u);
        ASSERT_EQ(buffer.format.sampleRate, 48000.0);
        if (i > 0) {
            ASSERT_LE(std::llabs(buffer.hostTimeNs - endOf(buffers[i - 1])), 2'000'000) << i;
        }
        lagsNs.push_back(buffer.arrivalNs - endOf(buffer));
        ASSERT_GE(lagsNs.back(), -PulseAudioStreamClock::kSnapThresholdNs - 5'000'000) << i;
    }
    std::nth_element(lagsNs.begin(), lagsNs.begin() + lagsNs.size() / 2, lagsNs.end());
    EXPECT_GT(lagsNs[lagsNs.size() / 2], -5'000'000);
    EXPECT_LT(lagsNs[lagsNs.size() / 2], 25'000'000);
}

AudioStreamConfiguration configuration(bool system, bool microphone) {
    AudioStreamConfiguration made;
    made.capturesAudio = system;
    made.captureMicrophone = microphone;
    return made;
}

class PulseAudioStreamTest : public testing::Test {
  protected:
    void SetUp() override {
        if (!server_.start()) GTEST_SKIP() << "no private sound server: " << server_.failure().toStdString();
    }

    // A stream with the recorder as the output of each source the configuration captures.
    std::unique_ptr<AudioStream> makeStream(bool system, bool microphone) {
        auto made = PulseAudioStreamFactory().makeAudioStream({}, configuration(system, microphone));
        EXPECT_TRUE(made.ok()) << (made.ok() ? "" : made.error().description.toStdString());
        if (!made.ok()) return nullptr;
        auto stream = std::move(made).value();
        if (system) {
            EXPECT_TRUE(stream->addStreamOutput(recorder_, CaptureOutputType::audio, queue_).ok());
        }
        if (microphone) {
            EXPECT_TRUE(stream->addStreamOutput(recorder_, CaptureOutputType::microphone, queue_).ok());
        }
        return stream;
    }

    // Waits until `count` buffers have arrived; deliveries run on the queue meanwhile.
    bool waitForBuffers(std::size_t count) {
        return waitUntil([&] { return recorder_.count() >= count; }, 5000);
    }

    // The number of buffers once everything queued so far has run, and again `ms` later.
    std::pair<std::size_t, std::size_t> countsAcross(int ms) {
        queue_.sync([] {});
        const std::size_t before = recorder_.count();
        std::this_thread::sleep_for(std::chrono::milliseconds(ms));
        queue_.sync([] {});
        return {before, recorder_.count()};
    }

    PulseAudioServer server_;
    SerialQueue queue_{QStringLiteral("com.kestrum.capture.queue")};
    AudioSampleRecorder recorder_{queue_};
};

TEST_F(PulseAudioStreamTest, ToneReachesSystemAudioOnlyWithContiguousHostTimes) {
    auto stream = makeStream(true, true);
    ASSERT_TRUE(stream && QCoro::waitFor(stream->startCapture()).ok());
    ASSERT_TRUE(waitForBuffers(40));
    const HostTimeNs toneStartNs = hostTimeNow();
    ASSERT_TRUE(playTone());
    ASSERT_TRUE(QCoro::waitFor(stream->stopCapture()).ok());
    queue_.sync([] {});

    const Buffers system = recorder_.received(CaptureOutputType::audio);
    const Buffers microphone = recorder_.received(CaptureOutputType::microphone);
    expectCapturedRun(system);
    expectCapturedRun(microphone);
    const auto firstLoud =
        std::find_if(system.begin(), system.end(), [](const auto& b) { return b.rms > 0.2; });
    ASSERT_NE(firstLoud, system.end()) << "the tone never reached the monitor";
    // Nothing of the tone is stamped before pacat started, and all before it is silence.
    EXPECT_GE(firstLoud->hostTimeNs, toneStartNs - PulseAudioStreamClock::kSnapThresholdNs);
    for (const auto& buffer : system) {
        if (endOf(buffer) < toneStartNs) {
            ASSERT_LT(buffer.rms, 1e-4);
        }
    }
    EXPECT_TRUE(
        std::all_of(microphone.begin(), microphone.end(), [](const auto& b) { return b.rms < 1e-4; }));
}

TEST_F(PulseAudioStreamTest, NothingArrivesAfterStopAndARestartDeliversAgain) {
    auto stream = makeStream(true, false);
    ASSERT_TRUE(stream);
    for (int round = 0; round < 2; ++round) {
        const std::size_t from = recorder_.count();
        const HostTimeNs startNs = hostTimeNow();
        ASSERT_TRUE(QCoro::waitFor(stream->startCapture()).ok()) << round;
        ASSERT_TRUE(waitForBuffers(from + 30)) << round;
        ASSERT_TRUE(QCoro::waitFor(stream->stopCapture()).ok()) << round;
        const auto [atStop, later] = countsAcross(300);
        EXPECT_EQ(later, atStop) << round;
        // A restart anchors afresh, not where the previous round left off.
        const Buffers buffers = recorder_.received(CaptureOutputType::audio, from);
        EXPECT_GT(buffers.front().hostTimeNs, startNs - 500'000'000) << round;
        expectCapturedRun(buffers);
    }
}

TEST_F(PulseAudioStreamTest, OutputsOfTypesTheConfigurationLacksAreErrors) {
    struct Case {
        bool system, microphone;
        CaptureOutputType type;
        bool accepted;
    };
    const std::vector<Case> cases = {
        {true, false, CaptureOutputType::audio, true},
        {true, false, CaptureOutputType::microphone, false},
        {false, true, CaptureOutputType::microphone, true},
        {false, true, CaptureOutputType::audio, false},
        {true, true, CaptureOutputType::screen, false},
    };
    for (const Case& row : cases) {
        auto stream =
            PulseAudioStreamFactory().makeAudioStream({}, configuration(row.system, row.microphone));
        ASSERT_TRUE(stream.ok());
        EXPECT_EQ(stream.value()->addStreamOutput(recorder_, row.type, queue_).ok(), row.accepted)
            << row.system << row.microphone << int(row.type);
    }
}

TEST_F(PulseAudioStreamTest, DeliveryStopsWhenTheServerDies) {
    auto stream = makeStream(true, false);
    ASSERT_TRUE(stream && QCoro::waitFor(stream->startCapture()).ok());
    ASSERT_TRUE(waitForBuffers(10));
    server_.stop();
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    const auto [afterDeath, later] = countsAcross(300);
    EXPECT_EQ(later, afterDeath);
    EXPECT_FALSE(QCoro::waitFor(stream->stopCapture()).ok());
}

TEST(PulseAudioStreamUnreachable, MakingAStreamFailsWithinSecondsWhenNoServerAnswers) {
    const QString folder = QDir::tempPath() + QStringLiteral("/kestrum-silent-") + QString::number(getpid());
    QDir().mkpath(folder);
    // A socket that takes connections (the kernel's backlog does) and never answers: a hung server.
    QLocalServer silent;
    ASSERT_TRUE(silent.listen(folder + QStringLiteral("/native")));
    for (const QString& socket : {QStringLiteral("/missing"), QStringLiteral("/native")}) {
        qputenv("PULSE_SERVER", (QStringLiteral("unix:") + folder + socket).toLocal8Bit());
        const auto startedAt = std::chrono::steady_clock::now();
        const auto made = PulseAudioStreamFactory().makeAudioStream({}, configuration(true, false));
        EXPECT_LT(std::chrono::steady_clock::now() - startedAt,
                  PulseMainLoop::kConnectTimeout + std::chrono::seconds(2));
        ASSERT_FALSE(made.ok()) << socket.toStdString();
        EXPECT_FALSE(made.error().description.isEmpty());
    }
    qunsetenv("PULSE_SERVER");
    QDir(folder).removeRecursively();
}

}  // namespace
}  // namespace kestrum::test

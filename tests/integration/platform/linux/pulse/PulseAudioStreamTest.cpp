// The PulseAudio stream against a private pulseaudio with a null sink and a null source: a tone another
// process plays into the sink must come back as system sound, stamped on the host clock, buffer after
// buffer, while a tone this process plays must not.
#include "AudioSampleRecorder.h"
#include "PulseTones.h"
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

#include <pulse/simple.h>

#include <algorithm>
#include <chrono>
#include <numbers>
#include <thread>

namespace kestrum::test {
namespace {

using Buffers = std::vector<AudioSampleRecorder::Received>;

constexpr int kRate = kToneRate;

bool playTone() {
    OtherProcessTone tone;
    return tone.start(440, 1.0) && tone.finish();
}

// A tone that this process plays into the default sink, from a thread of its own.
class OwnProcessTone {
  public:
    void start(double hz, double seconds) {
        thread_ = std::thread([this, hz, seconds] {
            const pa_sample_spec format{PA_SAMPLE_FLOAT32LE, kRate, 2};
            int error = 0;
            pa_simple* stream = pa_simple_new(nullptr, "kestrum-test", PA_STREAM_PLAYBACK, nullptr,
                                              "own tone", &format, nullptr, nullptr, &error);
            if (stream == nullptr) return;
            const std::vector<float> samples = sine(hz, seconds, 0.3F);
            played_ = pa_simple_write(stream, samples.data(), samples.size() * sizeof(float), &error) == 0 &&
                      pa_simple_drain(stream, &error) == 0;
            pa_simple_free(stream);
        });
    }
    bool finish() {
        if (thread_.joinable()) thread_.join();
        return played_;
    }
    ~OwnProcessTone() { finish(); }

  private:
    std::thread thread_;
    bool played_ = false;
};

// The first channel of a contiguous run of buffers, and where on the host clock it starts.
struct Recording {
    HostTimeNs startNs = 0;
    std::vector<float> samples;

    std::size_t indexAt(HostTimeNs ns) const {
        return std::clamp<std::size_t>(
            std::size_t(std::max<HostTimeNs>(0, ns - startNs) * kRate / 1'000'000'000), 0, samples.size());
    }
    // The amplitude of the `hz` component between two host times.
    double amplitudeOf(double hz, HostTimeNs fromNs, HostTimeNs toNs) const {
        return test::amplitudeOf(samples, hz, indexAt(fromNs), indexAt(toNs));
    }
};

HostTimeNs endOf(const AudioSampleRecorder::Received& buffer) {
    return buffer.hostTimeNs + HostTimeNs(buffer.frameCount) * 1'000'000'000 / kRate;
}

Recording recordingOf(const std::vector<AudioSampleRecorder::Received>& buffers) {
    Recording recording;
    if (!buffers.empty()) recording.startNs = buffers.front().hostTimeNs;
    for (const auto& buffer : buffers) {
        recording.samples.insert(recording.samples.end(), buffer.firstChannel.begin(),
                                 buffer.firstChannel.end());
    }
    return recording;
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

AudioStreamConfiguration configuration(bool system, bool microphone, bool excludesOwnSound = true) {
    AudioStreamConfiguration made;
    made.capturesAudio = system;
    made.captureMicrophone = microphone;
    made.excludesCurrentProcessAudio = excludesOwnSound;
    return made;
}

class PulseAudioStreamTest : public testing::Test {
  protected:
    void SetUp() override {
        if (!server_.start()) GTEST_SKIP() << "no private sound server: " << server_.failure().toStdString();
    }

    // A stream with `recorder` (by default the fixture's) as the output of each source the configuration
    // captures.
    std::unique_ptr<AudioStream> makeStream(bool system, bool microphone, bool excludesOwnSound = true,
                                            AudioSampleRecorder* recorder = nullptr) {
        AudioSampleRecorder& output = recorder ? *recorder : recorder_;
        auto made = PulseAudioStreamFactory().makeAudioStream(
            {}, configuration(system, microphone, excludesOwnSound));
        EXPECT_TRUE(made.ok()) << (made.ok() ? "" : made.error().description.toStdString());
        if (!made.ok()) return nullptr;
        auto stream = std::move(made).value();
        if (system) {
            EXPECT_TRUE(stream->addStreamOutput(output, CaptureOutputType::audio, queue_).ok());
        }
        if (microphone) {
            EXPECT_TRUE(stream->addStreamOutput(output, CaptureOutputType::microphone, queue_).ok());
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

TEST_F(PulseAudioStreamTest, OurOwnSoundIsLeftOutAndAStreamStartedMidwayIsTakenIn) {
    // The same sound recorded twice: without this process's streams, and with every stream, which shows
    // that our own tone did play.
    AudioSampleRecorder everything(queue_);
    auto withoutOurs = makeStream(true, false);
    auto withOurs = makeStream(true, false, false, &everything);
    ASSERT_TRUE(withoutOurs && QCoro::waitFor(withoutOurs->startCapture()).ok());
    ASSERT_TRUE(withOurs && QCoro::waitFor(withOurs->startCapture()).ok());
    // A null sink that idled before the streams held its latency down still sleeps through the rest of
    // its current block, up to 2 s, before it mixes anything new.
    ASSERT_TRUE(waitForBuffers(110));
    OwnProcessTone ours;
    OtherProcessTone game;
    OtherProcessTone chat;
    ours.start(1000, 4.0);
    ASSERT_TRUE(game.start(440, 4.0));
    const HostTimeNs bothStartedNs = hostTimeNow();
    processEventsFor(1500);
    const HostTimeNs chatStartNs = hostTimeNow();
    ASSERT_TRUE(chat.start(660, 1.5));
    ASSERT_TRUE(chat.finish() && game.finish() && ours.finish());
    const HostTimeNs allEndedNs = hostTimeNow();
    const AudioStreamCounters counters = withoutOurs->counters(CaptureOutputType::audio);
    ASSERT_TRUE(QCoro::waitFor(withoutOurs->stopCapture()).ok());
    ASSERT_TRUE(QCoro::waitFor(withOurs->stopCapture()).ok());
    queue_.sync([] {});

    const auto buffers = recorder_.received(CaptureOutputType::audio);
    expectCapturedRun(buffers);
    const Recording recorded = recordingOf(buffers);
    const Recording reference = recordingOf(everything.received(CaptureOutputType::audio));
    // Windows a quarter second clear of each start, for the server to have switched the streams on.
    const HostTimeNs soloFromNs = bothStartedNs + 250'000'000;
    const HostTimeNs chatFromNs = chatStartNs + 250'000'000;
    const HostTimeNs chatToNs = chatStartNs + 1'250'000'000;
    struct Expectation {
        const char* what;
        const Recording& recording;
        double hz;
        HostTimeNs fromNs;
        HostTimeNs toNs;
        bool heard;
    };
    const std::vector<Expectation> expectations = {
        {"the game's tone", recorded, 440, soloFromNs, chatStartNs, true},
        {"our tone", recorded, 1000, soloFromNs, allEndedNs, false},
        {"the chat before it starts", recorded, 660, soloFromNs, chatStartNs, false},
        {"the chat once it started", recorded, 660, chatFromNs, chatToNs, true},
        {"the game's tone beside the chat", recorded, 440, chatFromNs, chatToNs, true},
        {"our tone where it is not excluded", reference, 1000, soloFromNs, chatStartNs, true},
    };
    for (const Expectation& row : expectations) {
        const double amplitude = row.recording.amplitudeOf(row.hz, row.fromNs, row.toNs);
        // Played at 0.3; a leak of ours would be far above -40 dB of that. A tone heard may still miss part
        // of its window when a loaded machine starts the other process's stream late, hence a third of it.
        if (row.heard) {
            EXPECT_GT(amplitude, 0.1) << row.what;
        } else {
            EXPECT_LT(amplitude, 0.003) << row.what;
        }
    }
    EXPECT_EQ(counters.playbackStreamsRecorded, std::optional<std::int64_t>(2));
    EXPECT_EQ(withoutOurs->counters(CaptureOutputType::audio).buffersDelivered,
              static_cast<std::int64_t>(buffers.size()));
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

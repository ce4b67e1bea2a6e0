#include "TonePlayer.h"

#include <QElapsedTimer>
#include <QThread>

#include <pulse/context.h>
#include <pulse/error.h>
#include <pulse/mainloop.h>
#include <pulse/simple.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <vector>

namespace kestrum::simulator {
namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr int kChannels = 2;
constexpr int kBlockFrames = TonePlayer::kSampleRate / 100;  // 10 ms
constexpr qint64 kBlockNs = 1'000'000'000LL * kBlockFrames / TonePlayer::kSampleRate;
// The server's buffer: long enough to ride out a busy machine's scheduling delays without running dry,
// short enough to keep the latency, and any error in its estimate, small.
constexpr int kTargetBufferMs = 200;
// The play time of the next block follows from the last one. When a measurement (now plus latency)
// stays more than this far off for a few blocks in a row, the stream ran dry or stalled and the play
// time follows the measurement; a single far-off one is a scheduling delay between the two readings.
constexpr qint64 kReanchorNs = 8'000'000;
constexpr int kReanchorBlocks = 3;
constexpr double kAmplitude = 0.4;
constexpr int kProbeTimeoutMs = 2000;

// True when a PulseAudio server accepts a connection; the probe never spawns one (a plain client would,
// where the configuration allows it).
bool serverAnswers(QString* reason) {
    pa_mainloop* loop = pa_mainloop_new();
    pa_context* context = pa_context_new(pa_mainloop_get_api(loop), "kestrum-game-simulator");
    bool ready = false;
    if (pa_context_connect(context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) >= 0) {
        QElapsedTimer waited;
        waited.start();
        while (waited.elapsed() < kProbeTimeoutMs) {
            const pa_context_state_t state = pa_context_get_state(context);
            ready = state == PA_CONTEXT_READY;
            if (ready || !PA_CONTEXT_IS_GOOD(state)) break;
            pa_mainloop_iterate(loop, 0, nullptr);
            QThread::msleep(5);
        }
    }
    if (!ready) {
        const int error = pa_context_errno(context);
        *reason = error != 0 ? QString::fromUtf8(pa_strerror(error)) : QStringLiteral("no answer");
    }
    pa_context_disconnect(context);
    pa_context_unref(context);
    pa_mainloop_free(loop);
    return ready;
}

}  // namespace

std::unique_ptr<TonePlayer> TonePlayer::start(const GameClock& clock, QString* reason) {
    if (!serverAnswers(reason)) return nullptr;
    const pa_sample_spec format{PA_SAMPLE_S16LE, kSampleRate, kChannels};
    const auto bytes =
        static_cast<std::uint32_t>(kSampleRate * kChannels * sizeof(std::int16_t) * kTargetBufferMs / 1000);
    const pa_buffer_attr buffer{static_cast<std::uint32_t>(-1), bytes, static_cast<std::uint32_t>(-1),
                                static_cast<std::uint32_t>(-1), static_cast<std::uint32_t>(-1)};
    int error = 0;
    pa_simple* stream = pa_simple_new(nullptr, "kestrum-game-simulator", PA_STREAM_PLAYBACK, nullptr,
                                      "game tone", &format, nullptr, &buffer, &error);
    if (stream == nullptr) {
        *reason = QString::fromUtf8(pa_strerror(error));
        return nullptr;
    }
    return std::unique_ptr<TonePlayer>(new TonePlayer(clock, stream));
}

TonePlayer::TonePlayer(const GameClock& clock, pa_simple* stream) : clock_(clock), stream_(stream) {
    thread_ = std::thread([this] { run(); });
}

TonePlayer::~TonePlayer() {
    stopRequested_ = true;
    thread_.join();
    pa_simple_free(stream_);
}

double TonePlayer::sampleAt(double gameSeconds) {
    if (gameSeconds < 0) return 0;
    const double intoSecond = gameSeconds - std::floor(gameSeconds);
    if (intoSecond >= kToneMs / 1000.0) return 0;
    return std::sin(2 * kPi * kToneHz * intoSecond);
}

void TonePlayer::run() {
    pthread_setname_np(pthread_self(), "game tone");
    const std::optional<qint64> endNs = clock_.endElapsedNs();
    std::vector<std::int16_t> block(static_cast<size_t>(kBlockFrames * kChannels));
    std::optional<qint64> nextPlayNs;  // when the first frame of the next block will be heard
    int blocksOff = 0;
    int error = 0;
    while (!stopRequested_) {
        const pa_usec_t latencyUs = pa_simple_get_latency(stream_, &error);
        const qint64 measuredNs = clock_.elapsedNs() + static_cast<qint64>(latencyUs) * 1000;
        blocksOff = nextPlayNs && std::abs(measuredNs - *nextPlayNs) > kReanchorNs ? blocksOff + 1 : 0;
        if (!nextPlayNs || blocksOff >= kReanchorBlocks) {
            nextPlayNs = measuredNs;
            blocksOff = 0;
        }
        for (int frame = 0; frame < kBlockFrames; ++frame) {
            const qint64 playNs = *nextPlayNs + 1'000'000'000LL * frame / kSampleRate;
            // The clock stands still after the end; its last second must not ring on.
            const bool running = !endNs || playNs < *endNs;
            const double value = running ? sampleAt(clock_.gameSecondsAt(playNs)) : 0.0;
            const auto sample = static_cast<std::int16_t>(std::lround(value * kAmplitude * 32767));
            block[static_cast<size_t>(frame * kChannels)] = sample;
            block[static_cast<size_t>(frame * kChannels + 1)] = sample;
        }
        if (pa_simple_write(stream_, block.data(), block.size() * sizeof(std::int16_t), &error) < 0) {
            std::fprintf(stderr, "kestrum-game-simulator: the tone stopped: %s\n", pa_strerror(error));
            return;
        }
        *nextPlayNs += kBlockNs;
    }
}

}  // namespace kestrum::simulator

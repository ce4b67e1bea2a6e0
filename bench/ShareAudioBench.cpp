// League Share's sound route on a private pulseaudio: the delay it adds between a game's sound entering
// the user's sink and the same sound on "Monitor of Kestrum Share". A child pacat (the game) plays tone
// bursts after silence; both monitors are recorded in this process on the host clock, and each burst's
// onset is found in both. Prints `figure <name> <value> <unit>` lines, medians over the bursts.
#include <QThread>
#include "platform/linux/pulse/PulseLeagueShareAudioRoute.h"
#include "platform/linux/pulse/PulseMainLoopLock.h"
#include "platform/linux/pulse/PulseRecordStream.h"
#include "support/DisplayServers.h"

#include <QCoreApplication>
#include <QCoroTask>
#include <QProcess>
#include <QTemporaryFile>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <numbers>
#include <optional>
#include <vector>

namespace kestrum::bench {
namespace {

constexpr pa_sample_spec kSpec{PA_SAMPLE_FLOAT32LE, 48000, 2};
constexpr int kBursts = 8;
constexpr double kLeadSeconds = 3.0;  // the sinks wake and the route's recording settles meanwhile
constexpr double kBurstSeconds = 0.2;
constexpr double kPeriodSeconds = 1.0;

// Stereo float: silence, then kBursts bursts of a 1 kHz tone, one per period.
std::vector<float> burstTrack() {
    const auto frames = static_cast<std::size_t>((kLeadSeconds + kBursts * kPeriodSeconds) * kSpec.rate);
    std::vector<float> samples(2 * frames, 0.0F);
    for (int burst = 0; burst < kBursts; ++burst) {
        const auto from = static_cast<std::size_t>((kLeadSeconds + burst * kPeriodSeconds) * kSpec.rate);
        for (std::size_t i = 0; i < std::size_t(kBurstSeconds * kSpec.rate); ++i) {
            const float value = 0.5F * float(std::sin(2 * std::numbers::pi * 1000 * double(i) / kSpec.rate));
            samples[2 * (from + i)] = value;
            samples[2 * (from + i) + 1] = value;
        }
    }
    return samples;
}

// The first channel of one source, with the host time of each fragment's first frame.
struct Capture {
    std::vector<std::pair<HostTimeNs, std::vector<float>>> fragments;

    // The host times where the sound rises above a threshold after at least half a period of quiet.
    std::vector<HostTimeNs> onsetsNs() const {
        std::vector<HostTimeNs> onsets;
        HostTimeNs lastLoudNs = 0;
        for (const auto& [startNs, samples] : fragments) {
            for (std::size_t i = 0; i < samples.size(); ++i) {
                if (std::fabs(samples[i]) < 0.1F) continue;
                const HostTimeNs atNs = startNs + HostTimeNs(i) * 1'000'000'000 / kSpec.rate;
                if (onsets.empty() || atNs - lastLoudNs > HostTimeNs(kPeriodSeconds * 5e8))
                    onsets.push_back(atNs);
                lastLoudNs = atNs;
            }
        }
        return onsets;
    }
};

std::unique_ptr<PulseRecordStream> recordInto(PulseMainLoop& loop, Capture& capture, const char* source) {
    auto stream = std::make_unique<PulseRecordStream>(
        loop, kSpec, PulseRecordStream::CaptureLatency::readableOnly,
        [&capture](PulseRecordStream::Fragment fragment) {
            std::vector<float> first(std::size_t(fragment.frameCount));
            for (std::size_t i = 0; i < first.size(); ++i) {
                std::memcpy(&first[i], fragment.bytes.data() + i * 2 * sizeof(float), sizeof(float));
            }
            capture.fragments.emplace_back(fragment.hostTimeNs, std::move(first));
        });
    const PulseMainLoopLock lock(loop);
    if (!stream->open(QByteArray("Kestrum bench ") + source, source).ok()) return nullptr;
    return stream;
}

int run() {
    test::PulseAudioServer server;
    if (!server.start()) {
        std::fprintf(stderr, "no private sound server: %s\n", qPrintable(server.failure()));
        return 1;
    }
    QTemporaryFile track;
    const std::vector<float> samples = burstTrack();
    if (!track.open()) return 1;
    track.write(reinterpret_cast<const char*>(samples.data()), qint64(samples.size() * sizeof(float)));
    track.flush();
    // The game: a shell that becomes pacat, so that its pid is known before its stream exists.
    QProcess game;
    game.start(
        QStringLiteral("sh"),
        {QStringLiteral("-c"), QStringLiteral("sleep 0.5; exec pacat --raw --format=float32le --rate=48000 "
                                              "--channels=2 --latency-msec=20 '%1'")
                                   .arg(track.fileName())});
    if (!game.waitForStarted(5000)) return 1;
    PulseLeagueShareAudioRoute route;
    const Status started = QCoro::waitFor(route.start(std::int32_t(game.processId())));
    if (!started.ok()) {
        std::fprintf(stderr, "the route did not start: %s\n", qPrintable(started.error().description));
        return 1;
    }
    auto loop = PulseMainLoop::connect(QStringLiteral("Kestrum bench"));
    if (!loop.ok()) return 1;
    Capture entering;
    Capture shared;
    auto enteringStream = recordInto(*loop.value(), entering, "kestrum_null.monitor");
    auto sharedStream = recordInto(*loop.value(), shared, "kestrum_share.monitor");
    if (!enteringStream || !sharedStream) return 1;
    // What the route drops once the game's stream settled, apart from what it dropped while starting.
    QThread::msleep(unsigned(kLeadSeconds * 1000));
    const std::int64_t droppedWhileStarting = route.route()->droppedBytes();
    const std::int64_t playedWhileStarting = route.route()->playedBytes();
    game.waitForFinished(int((kLeadSeconds + kBursts * kPeriodSeconds + 10) * 1000));
    QThread::msleep(500);
    {
        const PulseMainLoopLock lock(*loop.value());
        enteringStream->close();
        sharedStream->close();
    }
    const std::int64_t dropped = route.route()->droppedBytes() - droppedWhileStarting;
    const std::int64_t played = route.route()->playedBytes() - playedWhileStarting;
    QCoro::waitFor(route.stop());

    const std::vector<HostTimeNs> from = entering.onsetsNs();
    const std::vector<HostTimeNs> to = shared.onsetsNs();
    std::vector<double> delaysMs;
    for (const HostTimeNs onsetNs : from) {
        const auto match = std::find_if(to.begin(), to.end(), [&](HostTimeNs at) {
            return at >= onsetNs - 5'000'000 && at < onsetNs + HostTimeNs(kPeriodSeconds * 5e8);
        });
        if (match != to.end()) delaysMs.push_back(double(*match - onsetNs) / 1e6);
    }
    if (delaysMs.empty()) {
        std::fprintf(stderr, "no burst reached the share monitor (%zu entered)\n", from.size());
        return 1;
    }
    std::sort(delaysMs.begin(), delaysMs.end());
    std::printf("figure share_audio_added_latency %.1f ms\n", delaysMs[delaysMs.size() / 2]);
    std::printf("figure share_audio_added_latency_worst %.1f ms\n", delaysMs.back());
    std::printf("figure share_audio_bursts_carried %zu of %zu\n", delaysMs.size(), from.size());
    std::printf("figure share_audio_dropped_after_start %.1f %%\n",
                100.0 * double(dropped) / double(std::max<std::int64_t>(1, dropped + played)));
    return 0;
}

}  // namespace
}  // namespace kestrum::bench

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    return kestrum::bench::run();
}

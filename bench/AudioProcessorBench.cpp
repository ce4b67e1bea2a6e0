// The audio dynamics processor on the capture queue's diet: 48 kHz stereo interleaved float32 buffers of
// 480 and 1024 frames, at volume 1 (the limit rarely acts) and volume 2 (the loud half of a 0.7 sine
// clips), on one thread. Prints `figure <name> <value> <unit>` lines: the real-time factor of each
// case as the median of repeated runs, then the slowest case under the plain name.
#include "core/capture/audio/RecordingAudioDynamicsProcessor.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <numbers>
#include <string>
#include <vector>

namespace {

using namespace kestrum;

constexpr double kSampleRateHz = 48000.0;
constexpr int kChannelCount = 2;
constexpr double kAudioSecondsPerRun = 20.0;
constexpr int kRuns = 9;

// A 440 Hz sine at 0.7 of full scale, the same on both channels, cut into buffers of `framesPerBuffer`.
std::vector<AudioSampleBuffer> sineBuffers(int framesPerBuffer) {
    const int bufferCount = static_cast<int>(kAudioSecondsPerRun * kSampleRateHz) / framesPerBuffer;
    std::vector<AudioSampleBuffer> buffers;
    buffers.reserve(static_cast<std::size_t>(bufferCount));
    long frame = 0;
    for (int index = 0; index < bufferCount; ++index) {
        std::vector<float> samples;
        for (int offset = 0; offset < framesPerBuffer; ++offset, ++frame) {
            const double phase = 2.0 * std::numbers::pi * 440.0 * static_cast<double>(frame) / kSampleRateHz;
            samples.insert(samples.end(), kChannelCount, static_cast<float>(0.7 * std::sin(phase)));
        }
        std::vector<std::uint8_t> bytes(samples.size() * sizeof(float));
        std::memcpy(bytes.data(), samples.data(), bytes.size());
        buffers.emplace_back(AudioFormatDescription{}, 0, framesPerBuffer,
                             std::vector<std::vector<std::uint8_t>>{std::move(bytes)});
    }
    return buffers;
}

// Audio seconds processed per wall second; each run starts again from the pristine signal, copied
// outside the timed part, so volume 2 keeps clipping fresh samples instead of re-limiting its output.
double realtimeFactor(int framesPerBuffer, double volume, double& levelSink) {
    const std::vector<AudioSampleBuffer> pristine = sineBuffers(framesPerBuffer);
    const double audioSeconds = static_cast<double>(pristine.size()) * framesPerBuffer / kSampleRateHz;
    RecordingAudioDynamicsProcessor processor;
    std::vector<double> factors;
    for (int run = 0; run < kRuns; ++run) {
        std::vector<AudioSampleBuffer> buffers = pristine;
        const auto start = std::chrono::steady_clock::now();
        for (AudioSampleBuffer& buffer : buffers) {
            levelSink += processor.processSampleBuffer(buffer, false, volume, 0.0).level;
        }
        const double wallSeconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        factors.push_back(audioSeconds / wallSeconds);
    }
    std::sort(factors.begin(), factors.end());
    return factors[factors.size() / 2];
}

}  // namespace

int main() {
    double levelSink = 0.0;
    double slowest = 0.0;
    bool first = true;
    for (const int framesPerBuffer : {480, 1024}) {
        for (const double volume : {1.0, 2.0}) {
            const double factor = realtimeFactor(framesPerBuffer, volume, levelSink);
            const std::string name = "audio_processor_realtime_factor_" + std::to_string(framesPerBuffer) +
                                     "_frames_volume_" + std::to_string(static_cast<int>(volume));
            std::printf("figure %s %.1f x\n", name.c_str(), factor);
            slowest = first ? factor : std::min(slowest, factor);
            first = false;
        }
    }
    std::printf("figure audio_processor_realtime_factor %.1f x\n", slowest);
    // Keeps the processed levels observable so that no run can be optimised away.
    return levelSink < 0.0 ? 1 : 0;
}

#include "AudioTestBuffers.h"
#include "core/capture/audio/RecordingAudioDynamicsProcessor.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>

namespace kestrum::test {
namespace {

constexpr std::int32_t kInt32Max = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kInt32Min = std::numeric_limits<std::int32_t>::min();

const AudioFormatDescription kFloat32 = pcmFormat(kFloatFlag, 32);
const AudioFormatDescription kFloat32Planar = pcmFormat(kFloatFlag | kNonInterleavedFlag, 32);
const AudioFormatDescription kInt16 = pcmFormat(kSignedFlag, 16);
const AudioFormatDescription kInt32 = pcmFormat(kSignedFlag, 32);
const AudioFormatDescription kInt24 = pcmFormat(kSignedFlag, 24);

AudioFormatDescription notLinearPCM() {
    AudioFormatDescription format = kFloat32;
    format.formatID = 0x61616320;  // 'aac '
    return format;
}

Bytes withOddByte(Bytes bytes) {
    bytes.push_back(0xAB);
    return bytes;
}

TEST(RecordingAudioDynamicsProcessor, AppliesVolumeAndLimitInPlaceAndReportsPeakLevelAndClip) {
    struct Case {
        const char* name;
        AudioFormatDescription format;
        std::vector<Bytes> buffers;
        double volume;
        std::vector<Bytes> expectedBuffers;
        double expectedLevel;
        bool expectedClipped;
    };
    const Bytes int24 = {0xFF, 0xFF, 0x7F, 0x01, 0x00, 0x80};
    // clang-format off
    const std::vector<Case> cases = {
        {"volume 0 silences", kFloat32, {f32({0.5f, -0.9f})}, 0.0, {f32({0.0f, -0.0f})}, 0.0, false},
        {"0.99 limited, not over", kFloat32, {f32({0.99f})}, 1.0, {f32({0.98f})}, 0.9985451, false},
        {"0.6 at volume 2 clips", kFloat32, {f32({0.6f, -0.6f})}, 2.0, {f32({0.98f, -0.98f})}, 1.0, true},
        {"interleaved, peak 0.25", kFloat32, {f32({0.1f, -0.2f, 0.25f, -0.5f})}, 0.5,
                                             {f32({0.05f, -0.1f, 0.125f, -0.25f})}, 0.7993133, false},
        {"peak -40 dBFS", kFloat32, {f32({0.01f})}, 1.0, {f32({0.01f})}, 1.0 / 3.0, false},
        {"int16 -32768 below -1", kInt16, {i16({-32768})}, 1.0, {i16({-32112})}, 1.0, true},
        {"int16 half away from 0", kInt16, {i16({1, -3, 1000})}, 0.5, {i16({1, -2, 500})}, 0.3945111, false},
        {"int16 full scale not over", kInt16, {i16({32767})}, 1.0, {i16({32112})}, 1.0, false},
        {"int32", kInt32, {i32({kInt32Max, kInt32Min, 3})}, 1.0, {i32({2104533974, -2104533974, 3})},
                                                                                                 1.0, true},
        {"non-interleaved", kFloat32Planar, {f32({0.25f}), f32({-0.5f})}, 2.0, {f32({0.5f}), f32({-0.98f})},
                                                                                                 1.0, false},
        {"empty buffer skipped", kFloat32Planar, {{}, f32({0.6f})}, 2.0, {{}, f32({0.98f})}, 1.0, true},
        {"3 bytes are one sample", kInt16, {withOddByte(i16({16384}))}, 2.0, {withOddByte(i16({32112}))}, 1.0,
                                                                                                 true},
        {"not linear PCM", notLinearPCM(), {f32({0.6f})}, 2.0, {f32({0.6f})}, 0.0, false},
        {"24-bit integer", kInt24, {int24}, 2.0, {int24}, 0.0, false},
    };
    // clang-format on
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        RecordingAudioDynamicsProcessor processor;
        AudioSampleBuffer buffer = sampleBufferOf(c.format, c.buffers);
        const RecordingAudioProcessing result = processor.processSampleBuffer(buffer, false, c.volume, 0.0);
        EXPECT_EQ(buffer.buffers(), c.expectedBuffers);
        EXPECT_NEAR(result.level, c.expectedLevel, 1e-4);
        EXPECT_EQ(result.clipped, c.expectedClipped);
    }
}

TEST(RecordingAudioDynamicsProcessor, GateMovesOncePerBufferOnTheLevelBeforeTheGain) {
    struct Case {
        const char* name;
        AudioFormatDescription format;
        std::vector<Bytes> successiveBuffers;
        bool gateEnabled;
        double sensitivity;
        double volume;
        double expectedGateGain;
        std::optional<float> expectedLastSample;
    };
    const Bytes silence = f32({0.0f, 0.0f});
    const Bytes loud = f32({0.5f, -0.5f});
    // Half of the -30 dBFS threshold of sensitivity 1: the target is 0.92 * 0.5^2 + 0.08 = 0.31.
    const Bytes halfThreshold = f32({0.0158113883f, -0.0158113883f});
    // clang-format off
    const std::vector<Case> cases = {
        {"closes slowly on silence", kFloat32, {silence}, true, 0.0, 1.0, 0.908, std::nullopt},
        {"keeps closing", kFloat32, {silence, silence}, true, 0.0, 1.0, 0.8252, std::nullopt},
        {"opens fast", kFloat32, {silence, silence, loud}, true, 0.0, 1.0, 0.951056, 0.951056f * -0.5f},
        {"disabled stays open", kFloat32, {silence, silence}, false, 0.0, 1.0, 1.0, std::nullopt},
        {"above the threshold stays open", kFloat32, {loud}, true, 0.0, 1.0, 1.0, -0.5f},
        {"level taken before the volume", kFloat32, {halfThreshold}, true, 1.0, 2.0, 0.931,
                                                            static_cast<float>(-0.0158113883 * 2.0 * 0.931)},
        {"an unread width moves it on 0", kInt24, {{0xFF, 0xFF, 0x7F}}, true, 0.0, 1.0, 0.908, std::nullopt},
        {"a format that is not PCM does not", notLinearPCM(), {silence}, true, 0.0, 1.0, 1.0, std::nullopt},
    };
    // clang-format on
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        RecordingAudioDynamicsProcessor processor;
        std::optional<AudioSampleBuffer> last;
        for (const Bytes& bytes : c.successiveBuffers) {
            last = sampleBufferOf(c.format, {bytes});
            processor.processSampleBuffer(*last, c.gateEnabled, c.volume, c.sensitivity);
        }
        EXPECT_NEAR(processor.gateGain(), c.expectedGateGain, 1e-7);
        if (c.expectedLastSample) {
            EXPECT_NEAR(samplesOf<float>(last->buffers()[0]).back(), *c.expectedLastSample, 1e-7);
        }
    }
}

}  // namespace
}  // namespace kestrum::test

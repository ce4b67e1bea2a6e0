#pragma once

#include "base/media/AudioSampleBuffer.h"

#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

namespace kestrum::test {

using Bytes = std::vector<std::uint8_t>;

inline constexpr std::uint32_t kFloatFlag = AudioFormatDescription::kFlagIsFloat;
inline constexpr std::uint32_t kSignedFlag = AudioFormatDescription::kFlagIsSignedInteger;
inline constexpr std::uint32_t kNonInterleavedFlag = AudioFormatDescription::kFlagIsNonInterleaved;

inline AudioFormatDescription pcmFormat(std::uint32_t flags, std::uint32_t bits) {
    AudioFormatDescription format;
    format.formatFlags = flags;
    format.bitsPerChannel = bits;
    return format;
}

template <class Sample>
Bytes bytesOf(const std::vector<Sample>& samples) {
    Bytes bytes(samples.size() * sizeof(Sample));
    if (!bytes.empty()) std::memcpy(bytes.data(), samples.data(), bytes.size());
    return bytes;
}
inline Bytes f32(const std::vector<float>& samples) {
    return bytesOf(samples);
}
inline Bytes i16(const std::vector<std::int16_t>& samples) {
    return bytesOf(samples);
}
inline Bytes i32(const std::vector<std::int32_t>& samples) {
    return bytesOf(samples);
}

// The whole samples of a buffer; a trailing partial sample is left out.
template <class Sample>
std::vector<Sample> samplesOf(const Bytes& bytes) {
    std::vector<Sample> samples(bytes.size() / sizeof(Sample));
    if (!samples.empty()) std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(Sample));
    return samples;
}

inline AudioSampleBuffer sampleBufferOf(AudioFormatDescription format, std::vector<Bytes> buffers) {
    return AudioSampleBuffer(format, 0, 1, std::move(buffers));
}

}  // namespace kestrum::test

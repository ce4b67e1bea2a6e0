#include "core/capture/audio/AudioLevelMeasure.h"

#include <cmath>
#include <cstdint>
#include <cstring>

namespace kestrum {
namespace {

struct SquareSum {
    double sum = 0.0;
    std::size_t count = 0;
};

// Samples are read through memcpy: a buffer's bytes carry no alignment promise for the sample type.
template <class Sample>
void addSquares(const std::vector<std::uint8_t>& buffer, double scale, SquareSum& total) {
    const std::size_t count = buffer.size() / sizeof(Sample);
    const std::uint8_t* bytes = buffer.data();
    for (std::size_t index = 0; index < count; ++index) {
        Sample sample;
        std::memcpy(&sample, bytes + index * sizeof(Sample), sizeof(Sample));
        const double value = static_cast<double>(sample) / scale;
        total.sum += value * value;
    }
    total.count += count;
}

}  // namespace

PcmSampleKind pcmSampleKind(const AudioFormatDescription& format) {
    if (format.bitsPerChannel == 32 && format.isFloat()) return PcmSampleKind::float32;
    if (format.isSignedInteger() && format.bitsPerChannel == 16) return PcmSampleKind::int16;
    if (format.isSignedInteger() && format.bitsPerChannel == 32) return PcmSampleKind::int32;
    return PcmSampleKind::unsupported;
}

double measureRMS(const AudioSampleBuffer& sampleBuffer) {
    const PcmSampleKind kind = pcmSampleKind(sampleBuffer.format());
    SquareSum total;
    for (const auto& buffer : sampleBuffer.buffers()) {
        if (buffer.empty()) continue;
        if (kind == PcmSampleKind::float32) addSquares<float>(buffer, 1.0, total);
        if (kind == PcmSampleKind::int16) addSquares<std::int16_t>(buffer, 32767.0, total);
    }
    if (total.count == 0) return 0.0;
    return std::sqrt(total.sum / static_cast<double>(total.count));
}

}  // namespace kestrum

#include "core/capture/audio/RecordingAudioDynamicsProcessor.h"

#include "core/capture/audio/AudioLevelMeasure.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

namespace kestrum {
namespace {

constexpr double kOutputLimit = 0.98;
constexpr double kInt16FullScale = 32767.0;
constexpr double kInt32FullScale = 2147483647.0;
// The floor of the level meter and of the gate's threshold, a linear amplitude (-100 dBFS).
constexpr double kAmplitudeFloor = 0.00001;
constexpr double kLevelRangeDb = 60.0;
constexpr double kClosedGateGain = 0.08;
// Per-buffer smoothing of the gate: it opens fast and closes slowly.
constexpr double kGateOpeningCoefficient = 0.72;
constexpr double kGateClosingCoefficient = 0.1;

// The gain the gate heads for after a buffer of input level `rms` (linear, full scale 1). Below the
// threshold the gate closes by the square of how far the level lies under it, down to 8 per cent.
double gateTargetGain(double rms, bool gateEnabled, double gateSensitivity) {
    const double thresholdDb = gateSensitivity * 28.0 - 58.0;
    const double threshold = std::pow(10.0, thresholdDb / 20.0);
    if (!gateEnabled || !(threshold > rms)) return 1.0;
    const double denominator = threshold <= kAmplitudeFloor ? kAmplitudeFloor : threshold;
    double closeness = rms / denominator;
    if (!(closeness > 0.0)) closeness = 0.0;
    closeness = std::min(closeness, 1.0);
    return (1.0 - kClosedGateGain) * closeness * closeness + kClosedGateGain;
}

// The loudest magnitude after the gain and whether full scale was passed, over one call.
struct PeakTracker {
    double peak = 0.0;
    bool clipped = false;

    // Takes a sample after the gain, in full-scale units, and gives it limited. A NaN sample does not
    // move the peak and passes the limit unchanged.
    double limit(double sample) {
        const double magnitude = std::fabs(sample);
        peak = std::max(peak, magnitude);
        if (magnitude > 1.0) clipped = true;
        return std::min(std::max(sample, -kOutputLimit), kOutputLimit);
    }
};

// Rounds half away from zero and saturates to the type; NaN, which only a non-finite volume can bring,
// becomes silence rather than an undefined conversion.
template <class Integer>
Integer toInteger(double fullScaleValue) {
    const double rounded = std::round(fullScaleValue);
    if (std::isnan(rounded)) return 0;
    constexpr double lowest = static_cast<double>(std::numeric_limits<Integer>::min());
    constexpr double highest = static_cast<double>(std::numeric_limits<Integer>::max());
    return static_cast<Integer>(std::clamp(rounded, lowest, highest));
}

// Samples are read and written through memcpy: a buffer's bytes carry no alignment promise.
void processFloat32(std::vector<std::uint8_t>& buffer, double gain, PeakTracker& tracker) {
    const std::size_t count = buffer.size() / sizeof(float);
    std::uint8_t* bytes = buffer.data();
    for (std::size_t index = 0; index < count; ++index) {
        float sample;
        std::memcpy(&sample, bytes + index * sizeof(float), sizeof(float));
        const float output = static_cast<float>(tracker.limit(static_cast<double>(sample) * gain));
        std::memcpy(bytes + index * sizeof(float), &output, sizeof(float));
    }
}

template <class Integer>
void processInteger(std::vector<std::uint8_t>& buffer, double fullScale, double gain, PeakTracker& tracker) {
    const std::size_t count = buffer.size() / sizeof(Integer);
    std::uint8_t* bytes = buffer.data();
    for (std::size_t index = 0; index < count; ++index) {
        Integer sample;
        std::memcpy(&sample, bytes + index * sizeof(Integer), sizeof(Integer));
        const double limited = tracker.limit(static_cast<double>(sample) / fullScale * gain);
        const Integer output = toInteger<Integer>(limited * fullScale);
        std::memcpy(bytes + index * sizeof(Integer), &output, sizeof(Integer));
    }
}

// The peak on the meter's scale: dBFS shifted up by 60 and divided by 60, within 0 and 1.
double levelOfPeak(double peak) {
    const double peakDb = 20.0 * std::log10(std::max(kAmplitudeFloor, peak));
    const double level = (peakDb + kLevelRangeDb) / kLevelRangeDb;
    if (level <= 0.0) return 0.0;
    return std::min(level, 1.0);
}

}  // namespace

RecordingAudioProcessing RecordingAudioDynamicsProcessor::processSampleBuffer(AudioSampleBuffer& sampleBuffer,
                                                                              bool gateEnabled, double volume,
                                                                              double gateSensitivity) {
    if (sampleBuffer.format().formatID != AudioFormatDescription::kFormatLinearPCM) return {};

    const double target = gateTargetGain(measureRMS(sampleBuffer), gateEnabled, gateSensitivity);
    const double coefficient = target > gateGain_ ? kGateOpeningCoefficient : kGateClosingCoefficient;
    gateGain_ += (target - gateGain_) * coefficient;

    // Constant over the buffer: no ramp from the previous buffer's gain.
    const double gain = volume * gateGain_;
    const PcmSampleKind kind = pcmSampleKind(sampleBuffer.format());
    PeakTracker tracker;
    for (auto& buffer : sampleBuffer.buffers()) {
        if (buffer.empty()) continue;
        switch (kind) {
            case PcmSampleKind::float32:
                processFloat32(buffer, gain, tracker);
                break;
            case PcmSampleKind::int16:
                processInteger<std::int16_t>(buffer, kInt16FullScale, gain, tracker);
                break;
            case PcmSampleKind::int32:
                processInteger<std::int32_t>(buffer, kInt32FullScale, gain, tracker);
                break;
            case PcmSampleKind::unsupported:
                break;
        }
    }
    return {levelOfPeak(tracker.peak), tracker.clipped};
}

}  // namespace kestrum

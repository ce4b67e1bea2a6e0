#include "platform/linux/pulse/PulseAudioStreamFactory.h"

#include "platform/linux/pulse/PulseAudioStream.h"

#include <pulse/sample.h>

namespace kestrum {

Result<std::unique_ptr<AudioStream>> PulseAudioStreamFactory::makeAudioStream(
    const ShareableDisplay&, const AudioStreamConfiguration& configuration) {
    if (!configuration.capturesAudio && !configuration.captureMicrophone) {
        return PulseMainLoop::makeError(
            QStringLiteral("An audio stream needs system audio or the microphone."));
    }
    pa_sample_spec sampleSpec{PA_SAMPLE_FLOAT32LE, 0, 0};
    if (configuration.sampleRate > 0 && configuration.channelCount > 0 &&
        configuration.channelCount <= int(PA_CHANNELS_MAX)) {
        sampleSpec.rate = static_cast<std::uint32_t>(configuration.sampleRate);
        sampleSpec.channels = static_cast<std::uint8_t>(configuration.channelCount);
    }
    if (pa_sample_spec_valid(&sampleSpec) == 0) {
        return PulseMainLoop::makeError(QStringLiteral("The sound server cannot record %1 channels at %2 Hz.")
                                            .arg(configuration.channelCount)
                                            .arg(configuration.sampleRate));
    }
    Result<std::shared_ptr<PulseMainLoop>> loop =
        PulseMainLoop::connect(QStringLiteral("Kestrum"), connectTimeout_);
    if (!loop.ok()) return loop.error();
    return std::unique_ptr<AudioStream>(
        std::make_unique<PulseAudioStream>(std::move(loop).value(), configuration));
}

}  // namespace kestrum

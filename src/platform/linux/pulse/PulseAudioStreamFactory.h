#pragma once

#include "platform/linux/pulse/PulseMainLoop.h"
#include "platform/ports/AudioStream.h"

#include <chrono>

namespace kestrum {

// Makes PulseAudioStreams, each on a connection of its own to the sound server, so that a server that
// restarts between two recordings costs nothing but the recording it interrupted. Main thread.
class PulseAudioStreamFactory final : public AudioStreamFactory {
  public:
    explicit PulseAudioStreamFactory(
        std::chrono::milliseconds connectTimeout = PulseMainLoop::kConnectTimeout)
        : connectTimeout_(connectTimeout) {}

    // An Error when the configuration asks for nothing or for a format the server cannot carry, or when
    // no server answers within the connect timeout. `display` is not used (see PulseAudioStream).
    Result<std::unique_ptr<AudioStream>> makeAudioStream(
        const ShareableDisplay& display, const AudioStreamConfiguration& configuration) override;

  private:
    std::chrono::milliseconds connectTimeout_;
};

}  // namespace kestrum

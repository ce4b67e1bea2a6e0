#pragma once

#include "platform/ports/CaptureStream.h"
#include "platform/ports/ShareableContent.h"

#include <memory>

namespace kestrum {

// What an audio stream captures: the system's sound (`capturesAudio`, without this application's own
// sound when `excludesCurrentProcessAudio`), the microphone (`captureMicrophone`), both as PCM at
// `sampleRate` with `channelCount` channels.
struct AudioStreamConfiguration {
    bool capturesAudio = true;
    bool excludesCurrentProcessAudio = true;
    bool captureMicrophone = false;
    int sampleRate = 48000;  // Hz
    int channelCount = 2;

    friend bool operator==(const AudioStreamConfiguration&, const AudioStreamConfiguration&) = default;
};

// A stream of the sound heard on a display and of the microphone. It delivers samples of type `audio`
// (system sound) and `microphone`, each buffer stamped with the host time at which its first frame was
// captured; buffers of one source follow each other without gaps or overlaps in host time, apart from
// real dropouts of the source. Otherwise the contract of CaptureStream.
class AudioStream : public CaptureStream {};

// Makes audio streams. Main thread; a stream is made stopped, with no outputs.
class AudioStreamFactory {
  public:
    virtual ~AudioStreamFactory() = default;
    // A stream of the sound of `display` (where the system routes sound per display; on Linux the
    // default output), or an Error when the sound server cannot be reached.
    virtual Result<std::unique_ptr<AudioStream>> makeAudioStream(
        const ShareableDisplay& display, const AudioStreamConfiguration& configuration) = 0;
};

}  // namespace kestrum

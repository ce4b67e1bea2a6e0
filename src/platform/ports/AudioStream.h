#pragma once

#include "platform/ports/CaptureStream.h"
#include "platform/ports/ShareableContent.h"

#include <cstdint>
#include <memory>
#include <optional>

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

// What one source of an audio stream did since the stream's latest start, for the capture log at the
// stop. Sound lost before it reached the stream's output is counted here; what the receiver then does
// with the buffers is its own tally.
struct AudioStreamCounters {
    std::int64_t buffersDelivered = 0;
    std::int64_t overruns = 0;  // times the sound server threw captured sound away without saying how much
    std::int64_t lostMs = 0;    // sound the server reported missing
    std::int64_t lateMs = 0;    // sound that arrived after its place in a mix had been delivered
    // Playback streams of applications mixed into the source during the run; absent for a source that
    // is not a mix of applications (the microphone).
    std::optional<std::int64_t> playbackStreamsRecorded;

    // "buffers 2950, overruns 0, lost 0 ms, late 0 ms, playback streams 2"
    QString description() const {
        QString text = QStringLiteral("buffers %1, overruns %2, lost %3 ms, late %4 ms")
                           .arg(buffersDelivered)
                           .arg(overruns)
                           .arg(lostMs)
                           .arg(lateMs);
        if (playbackStreamsRecorded)
            text += QStringLiteral(", playback streams %1").arg(*playbackStreamsRecorded);
        return text;
    }

    friend bool operator==(const AudioStreamCounters&, const AudioStreamCounters&) = default;
};

// A stream of the system's sound and of the microphone. It delivers samples of type `audio` (system
// sound) and `microphone`, each buffer stamped with the host time at which its first frame was
// captured; buffers of one source follow each other without gaps or overlaps in host time, apart from
// real dropouts of the source. System sound keeps flowing, as silence, while nothing plays. Otherwise
// the contract of CaptureStream.
class AudioStream : public CaptureStream {
  public:
    // What the source of `type` did while running, or in its latest run once stopped; zeros before the
    // first start and for a type the stream does not capture. Main thread.
    virtual AudioStreamCounters counters(CaptureOutputType type) const = 0;
};

// Makes audio streams. Main thread; a stream is made stopped, with no outputs.
class AudioStreamFactory {
  public:
    virtual ~AudioStreamFactory() = default;
    // A stream of the sound of `display` (where the system routes sound per display; on Linux the sound
    // of every output), or an Error when the sound server cannot be reached.
    virtual Result<std::unique_ptr<AudioStream>> makeAudioStream(
        const ShareableDisplay& display, const AudioStreamConfiguration& configuration) = 0;
};

}  // namespace kestrum

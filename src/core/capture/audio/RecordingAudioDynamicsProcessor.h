#pragma once

#include "base/media/AudioSampleBuffer.h"
#include "core/capture/audio/RecordingAudioProcessing.h"

namespace kestrum {

// The user's volume and a hard safety limit, applied in place to each PCM buffer of one audio source
// before the buffer goes to its writer input; there is one instance per source (system sound,
// microphone). It also carries a noise gate whose smoothed gain persists from buffer to buffer for the
// life of the instance, across recordings. The capture path passes the gate closed off (disabled,
// sensitivity 0), so in practice `gateGain` stays 1.0 and only the volume and the limit act.
//
// Threads: every call runs on the capture queue, which serialises `gateGain`; there is no lock.
class RecordingAudioDynamicsProcessor {
  public:
    // The gate's smoothed gain, a linear factor: 1.0 open, 0.08 fully closed.
    double gateGain() const { return gateGain_; }

    // For linear PCM in 32-bit float, 16-bit or 32-bit signed integer, interleaved or not: multiplies
    // every sample by `volume` times the updated gate gain, limits it to +-0.98 of full scale and writes
    // it back over the original bytes. Empty buffers are skipped; a trailing partial sample stays as it
    // is. Any other PCM width leaves the samples alone (the gate still moves, on a level of 0); a format
    // that is not linear PCM changes nothing and gives level 0, not clipped.
    // `volume` is a linear factor; `gateSensitivity` runs from 0 (threshold -58 dBFS) to 1 (-30 dBFS).
    RecordingAudioProcessing processSampleBuffer(AudioSampleBuffer& sampleBuffer, bool gateEnabled,
                                                 double volume, double gateSensitivity);

  private:
    double gateGain_ = 1.0;
};

}  // namespace kestrum

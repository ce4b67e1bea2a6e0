#pragma once

#include "base/common/HostTime.h"

#include <cstdint>

namespace kestrum::ffmpeg {

// Places stamped PCM buffers on a track's sample axis, whose frame 0 is the session start. The first
// buffer lands at its own host time (silence fills the start of the track); later buffers continue
// where the previous one ended as long as their stamp agrees within the snap threshold, so stamp jitter
// never opens holes or overlaps and the sample count, not the jittery stamps, drives the timing. A stamp
// further off re-anchors the axis: a gap is filled with silence, an overlap is cut from the new buffer.
// Audio before the session start never reaches the track. Plain arithmetic, used on the audio encoder
// thread.
class AudioTimeline {
  public:
    struct Placement {
        bool dropped = false;                  // nothing of the buffer reaches the track
        std::int64_t skipInputFrames = 0;      // frames cut from the front of the buffer
        std::int64_t silenceOutputFrames = 0;  // silence written before the buffer
    };

    static constexpr HostTimeNs kDefaultSnapThresholdNs = 40'000'000;

    AudioTimeline(int outputSampleRate, HostTimeNs snapThresholdNs = kDefaultSnapThresholdNs);

    // `nextOutputFrame` is where the next sample would land (everything placed so far, in output
    // frames). The buffer's frames are at `inputSampleRate`; the track runs at the output rate.
    Placement place(HostTimeNs sessionStartNs, HostTimeNs bufferHostTimeNs, std::int64_t frameCount,
                    double inputSampleRate, std::int64_t nextOutputFrame);

  private:
    int outputSampleRate_;
    std::int64_t snapThresholdFrames_;
    bool placedAny_ = false;
};

}  // namespace kestrum::ffmpeg

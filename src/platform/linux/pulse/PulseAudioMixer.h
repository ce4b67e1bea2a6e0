#pragma once

#include "base/common/HostTime.h"

#include <cstdint>
#include <map>
#include <vector>

namespace kestrum {

// Mixes the stamped float PCM of several inputs (the playback streams of applications, each recorded on
// its own) into one run of blocks on a host-time grid: block k covers `blockFrames` frames from the
// origin plus k blocks, and the blocks follow each other without gaps or overlaps.
//
// An input's fragment lands where its stamp says, summed with the others. Consecutive fragments of one
// input that agree with each other within `snapNs` are laid end to end, so that stamp rounding never
// leaves a one-frame gap or doubles a frame; a fragment further off is placed at its stamp.
//
// A block is handed out once its end has passed and each input that is live for it has delivered
// through its end, so that a busy thread that reads late still loses nothing. An input is live for a
// block when its sound reached to within `idleAfterNs` before the block's start; an input that went
// quiet (corked, paused, idle) therefore holds back at most the blocks just after its last sound, and
// no block waits longer than `maxWaitNs` after its end: nothing blocks the mix. Whatever an input has
// not delivered is silence. Sound that arrives for a block already handed out, or further than
// `horizonNs` ahead of the oldest block not handed out, is dropped and counted.
//
// Plain arithmetic for one thread (the sound server's loop thread).
class PulseAudioMixer {
  public:
    struct Settings {
        int sampleRateHz = 48000;
        int channelCount = 2;
        std::int64_t blockFrames = 960;
        HostTimeNs maxWaitNs = 500'000'000;
        HostTimeNs idleAfterNs = 250'000'000;
        HostTimeNs snapNs = 2'000'000;
        HostTimeNs horizonNs = 4'000'000'000;
    };

    struct Block {
        HostTimeNs hostTimeNs = 0;   // of the first frame
        std::vector<float> samples;  // blockFrames frames, interleaved
    };

    explicit PulseAudioMixer(Settings settings);

    // Forgets every input and all sound, and starts the grid at `originNs`.
    void start(HostTimeNs originNs);
    // Input `inputID` will deliver sound from `hostTimeNs` on: it is live from there, as if it had
    // delivered up to that point, so that the blocks wait for its first fragments (which a new recording
    // hands over only once its clock has settled) instead of going out without them.
    void expect(int inputID, HostTimeNs hostTimeNs);
    // Adds `frameCount` interleaved frames of input `inputID`, the first captured at `hostTimeNs`.
    void add(int inputID, HostTimeNs hostTimeNs, const float* samples, std::int64_t frameCount);
    // The input is gone: it holds back no block from now on.
    void remove(int inputID);
    // The blocks ready at `nowNs`, in order.
    std::vector<Block> takeReadyBlocks(HostTimeNs nowNs);

    // Frames dropped since the start because they came too late or too far ahead.
    std::int64_t droppedFrames() const { return droppedFrames_; }

  private:
    // The grid position of host time `ns`, in frames from the origin, rounded to the nearest.
    std::int64_t frameAt(HostTimeNs ns) const;
    // The host time of grid position `frame`, exact to the nanosecond below.
    HostTimeNs hostTimeAt(std::int64_t frame) const;
    std::int64_t framesIn(HostTimeNs ns) const;
    bool isBlockReady(std::int64_t startFrame, HostTimeNs nowNs) const;
    Block takeBlock();

    const Settings settings_;
    const std::int64_t horizonFrames_;
    HostTimeNs originNs_ = 0;
    std::int64_t takenFrames_ = 0;             // the grid position of the oldest frame not handed out
    std::vector<float> ring_;                  // horizonFrames_ frames; frame f at (f mod horizonFrames_)
    std::map<int, std::int64_t> nextFrameOf_;  // per input, where its next frame lands
    std::int64_t droppedFrames_ = 0;
};

}  // namespace kestrum

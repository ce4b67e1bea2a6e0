#pragma once

#include "base/common/HostTime.h"
#include "base/media/AudioSampleBuffer.h"
#include "base/media/PixelBuffer.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace kestrum::test {

// A game-like picture: a gradient that scrolls with `index`, a moving bright block and per-frame noise,
// so that an encoder needs real bits for it. `flash` makes the whole frame white.
std::shared_ptr<const PixelBuffer> makeFrame(int width, int height, int index, bool flash = false);

// The amplitude of a test signal at a time on the session axis (seconds).
using Signal = std::function<double(double seconds)>;

// A 1 kHz tone of amplitude 0.5 for the first `beepSeconds` of every second, silence otherwise.
Signal beepEverySecond(double beepSeconds = 0.1);

// `frameCount` PCM frames of `signal` in `format` (every channel the same), the first frame at
// `firstFrameHostTimeNs`; `sessionStartNs` maps host time to the signal's seconds.
AudioSampleBuffer makeAudio(const AudioFormatDescription& format, HostTimeNs firstFrameHostTimeNs,
                            int frameCount, HostTimeNs sessionStartNs, const Signal& signal);

}  // namespace kestrum::test

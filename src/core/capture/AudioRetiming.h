#pragma once

#include "base/common/HostTime.h"
#include "base/media/AudioSampleBuffer.h"

#include <optional>

namespace kestrum {

// The buffer re-stamped as if its first frame had been captured at `nowHostTimeNs` (its arrival on the
// host clock): the microphone's own stamps come from a device clock that drifts from the host clock, so
// its buffers are placed by their arrival. A buffer with no frames is returned as it came; absent when
// the shifted time would not be representable.
std::optional<AudioSampleBuffer> retimedToHostClock(AudioSampleBuffer buffer, HostTimeNs nowHostTimeNs);

}  // namespace kestrum

#include "core/capture/AudioRetiming.h"

#include <limits>

namespace kestrum {

std::optional<AudioSampleBuffer> retimedToHostClock(AudioSampleBuffer buffer, HostTimeNs nowHostTimeNs) {
    if (buffer.frameCount() <= 0) return buffer;
    if (nowHostTimeNs < 0) return std::nullopt;
    return AudioSampleBuffer(buffer.format(), nowHostTimeNs, buffer.frameCount(),
                             std::move(buffer.buffers()));
}

}  // namespace kestrum

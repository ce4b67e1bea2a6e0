#pragma once

#include "base/common/HostTime.h"
#include "base/media/AudioFormatDescription.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace kestrum {

// A run of PCM frames stamped on the host clock. Interleaved audio has one buffer holding every channel;
// non-interleaved audio has one buffer per channel. The buffers are writable in place: the capture path
// applies the volume to them on its own thread before handing the buffer to a writer input, which then
// takes it by move. Owned by one thread at a time.
class AudioSampleBuffer {
  public:
    AudioSampleBuffer() = default;
    AudioSampleBuffer(AudioFormatDescription format, HostTimeNs firstFrameHostTimeNs, int frameCount,
                      std::vector<std::vector<std::uint8_t>> buffers)
        : format_(format),
          hostTimeNs_(firstFrameHostTimeNs),
          frameCount_(frameCount),
          buffers_(std::move(buffers)) {}

    const AudioFormatDescription& format() const { return format_; }
    // Host time of the first frame, CLOCK_MONOTONIC ns.
    HostTimeNs hostTimeNs() const { return hostTimeNs_; }
    int frameCount() const { return frameCount_; }
    std::vector<std::vector<std::uint8_t>>& buffers() { return buffers_; }
    const std::vector<std::vector<std::uint8_t>>& buffers() const { return buffers_; }

    // True when the format is linear PCM of a width the writer converts (16/32-bit integer, 32-bit
    // float) and every buffer holds `frameCount` frames of its layout.
    bool isWellFormed() const {
        if (format_.formatID != AudioFormatDescription::kFormatLinearPCM || frameCount_ <= 0) return false;
        if (format_.channelsPerFrame == 0 || format_.sampleRate <= 0) return false;
        const bool knownWidth =
            format_.isFloat()
                ? format_.bitsPerChannel == 32
                : format_.isSignedInteger() && (format_.bitsPerChannel == 16 || format_.bitsPerChannel == 32);
        if (!knownWidth) return false;
        const std::size_t expectedBuffers = format_.isNonInterleaved() ? format_.channelsPerFrame : 1;
        const std::size_t channelsPerBuffer = format_.isNonInterleaved() ? 1 : format_.channelsPerFrame;
        const std::size_t bytesNeeded = static_cast<std::size_t>(frameCount_) * channelsPerBuffer *
                                        static_cast<std::size_t>(format_.bytesPerSample());
        if (buffers_.size() != expectedBuffers) return false;
        for (const auto& buffer : buffers_) {
            if (buffer.size() < bytesNeeded) return false;
        }
        return true;
    }

  private:
    AudioFormatDescription format_;
    HostTimeNs hostTimeNs_ = 0;
    int frameCount_ = 0;
    std::vector<std::vector<std::uint8_t>> buffers_;
};

}  // namespace kestrum

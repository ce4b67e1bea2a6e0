#pragma once

#include "base/common/HostTime.h"
#include "base/media/AudioSampleBuffer.h"
#include "base/media/PixelBuffer.h"

#include <cstdint>
#include <memory>

namespace kestrum {

enum class MovieMediaType { video, audio };

// One track of a movie under writing. The capture thread calls `isReadyForMoreMediaData` and `append`;
// neither ever blocks: behind each input is a bounded queue drained by the input's own encoder thread,
// and a full queue makes the input not ready. An append the input cannot take (queue full, writer not
// writing, session not started, wrong media type) gives false and drops the sample. Every member is
// safe to call from any thread.
class MovieWriterInput {
  public:
    virtual ~MovieWriterInput() = default;

    virtual MovieMediaType mediaType() const = 0;
    // True while the writer is writing, its session has started and the queue has room.
    virtual bool isReadyForMoreMediaData() const = 0;
    // Real-time inputs keep a shallow queue so that a stalled encoder shows up as drops at once; an
    // offline producer may turn it off to get a deeper queue. Set before the first append.
    virtual void setExpectsMediaDataInRealTime(bool expectsRealTime) = 0;
    virtual bool expectsMediaDataInRealTime() const = 0;

    // Video inputs: a frame shown from `presentationHostTimeNs` (host clock) on. Frames before the
    // session start, or not later than the previous frame, are taken but never reach the file.
    virtual bool append(std::shared_ptr<const PixelBuffer> frame, HostTimeNs presentationHostTimeNs) = 0;
    // Audio inputs: a buffer of PCM frames; the part before the session start never reaches the file.
    virtual bool append(AudioSampleBuffer buffer) = 0;

    // Samples refused because the queue was full, since the input was made.
    virtual std::uint64_t refusedSampleCount() const = 0;
    // Samples taken by `append` of which nothing reached the file, since the input was made: wholly
    // before the session start, a frame not later than the previous one, a buffer wholly overlapping
    // sound already written, or still queued when the writer failed or was cancelled.
    virtual std::uint64_t discardedSampleCount() const = 0;
};

}  // namespace kestrum

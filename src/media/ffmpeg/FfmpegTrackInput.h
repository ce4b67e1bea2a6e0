#pragma once

#include "base/common/Result.h"
#include "media/MovieWriterInput.h"

#include <memory>

namespace kestrum::ffmpeg {

class FfmpegMuxer;

// A writer input as the FFmpeg writer drives it: opened (encoder and track) before the header is
// written, started (its encoder thread), asked to finish (drain, flush, end its stream) or stopped at
// once. All four run on the writer's owning thread.
class FfmpegTrackInput : public MovieWriterInput {
  public:
    virtual Status open(std::shared_ptr<FfmpegMuxer> muxer) = 0;
    virtual void start() = 0;
    // The encoder thread drains what is queued, flushes the encoder and ends the stream on the muxer.
    virtual void requestFinish() = 0;
    // Drops what is queued and joins the encoder thread; appends are refused from then on.
    virtual void stop() = 0;
};

}  // namespace kestrum::ffmpeg

#pragma once

#include "base/media/PixelBuffer.h"

extern "C" {
#include <libavutil/frame.h>
}

struct SwsContext;

namespace kestrum::ffmpeg {

// Brings a BGRA picture into an encoder's software frame (YUV 4:2:0 planar or NV12), with the BT.601
// limited-range matrix the encoder context is tagged with.
//
// A picture of the frame's size, the usual case, goes through libyuv's vector code, about seven times
// faster than libswscale's generic path for the same matrix; that is the difference between the encoder
// thread keeping up at 1080p60 on two cores or not. Any other size is scaled by libswscale, whose context
// is cached per source size. Encoder thread only.
class VideoFrameConverter {
  public:
    VideoFrameConverter() = default;
    ~VideoFrameConverter();
    VideoFrameConverter(const VideoFrameConverter&) = delete;
    VideoFrameConverter& operator=(const VideoFrameConverter&) = delete;

    // False when the frame's format is neither of the two or libswscale refuses the sizes.
    bool convert(const PixelBuffer& source, AVFrame& target);

  private:
    bool scale(const PixelBuffer& source, AVFrame& target);

    SwsContext* scaler_ = nullptr;  // owned
};

}  // namespace kestrum::ffmpeg

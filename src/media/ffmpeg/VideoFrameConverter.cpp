#include "media/ffmpeg/VideoFrameConverter.h"

extern "C" {
#include <libswscale/swscale.h>
}

#include <libyuv/convert_from_argb.h>

namespace kestrum::ffmpeg {

VideoFrameConverter::~VideoFrameConverter() {
    sws_freeContext(scaler_);
}

bool VideoFrameConverter::convert(const PixelBuffer& source, AVFrame& target) {
    if (source.width() != target.width || source.height() != target.height) return scale(source, target);
    // libyuv names formats by the 32-bit word, so its ARGB is BGRA in memory.
    switch (target.format) {
        case AV_PIX_FMT_YUV420P:
            return libyuv::ARGBToI420(source.data(), source.bytesPerRow(), target.data[0], target.linesize[0],
                                      target.data[1], target.linesize[1], target.data[2], target.linesize[2],
                                      source.width(), source.height()) == 0;
        case AV_PIX_FMT_NV12:
            return libyuv::ARGBToNV12(source.data(), source.bytesPerRow(), target.data[0], target.linesize[0],
                                      target.data[1], target.linesize[1], source.width(),
                                      source.height()) == 0;
        default:
            return false;
    }
}

bool VideoFrameConverter::scale(const PixelBuffer& source, AVFrame& target) {
    // The fast bilinear filter: a picture of another size is a passing state (a window being resized),
    // not worth bicubic's cost on the capture machine's cores.
    scaler_ = sws_getCachedContext(scaler_, source.width(), source.height(), AV_PIX_FMT_BGRA, target.width,
                                   target.height, static_cast<AVPixelFormat>(target.format),
                                   SWS_FAST_BILINEAR, nullptr, nullptr, nullptr);
    if (scaler_ == nullptr) return false;
    const std::uint8_t* planes[1] = {source.data()};
    const int strides[1] = {source.bytesPerRow()};
    return sws_scale(scaler_, planes, strides, 0, source.height(), target.data, target.linesize) ==
           target.height;
}

}  // namespace kestrum::ffmpeg

#pragma once

#include "base/common/Result.h"
#include "media/VideoOutputSettings.h"
#include "media/ffmpeg/FfmpegPointers.h"

#include <QString>

#include <optional>
#include <string>
#include <vector>

namespace kestrum::ffmpeg {

// An opened video encoder and what its input frames must look like.
struct OpenedVideoEncoder {
    CodecContextPtr context;
    // The layout libswscale converts BGRA into: the encoder's own pixel format, or the software
    // layout of its hardware frames.
    AVPixelFormat softwareFormat = AV_PIX_FMT_NONE;
    // True when converted frames are uploaded into `context->hw_frames_ctx` before encoding.
    bool uploadsToHardware = false;
    QString encoderName;
};

struct EncoderOption {
    std::string key;
    std::string value;
};

// Every encoder runs in this time base, fine enough for any capture rate with variable frame timing.
inline constexpr AVRational kVideoEncoderTimeBase{1, 90000};

// Every encoder but libx265 (whose workers lower themselves) is opened on a thread of this name whose
// nice value is this much above the caller's; the threads the encoder starts inherit both.
inline constexpr const char* kEncoderThreadName = "kestrum-encoder";
inline constexpr int kEncoderNiceIncrement = 5;

// Opens the best available encoder for the settings: VAAPI, then NVENC, then libx265/libx264. A
// hardware encoder that fails to open falls through to the next; the choice is logged once per
// process and codec, and the first encoder that opened is tried first next time. The caller waits
// for the opening thread.
Result<OpenedVideoEncoder> openVideoEncoder(const VideoOutputSettings& settings, bool globalHeader);

// The encoder that opened first for `codec` in this process, if any did.
std::optional<std::string> chosenVideoEncoder(VideoCodec codec);

// True when at least the software encoder of `codec` is built into libavcodec.
bool hasVideoEncoder(VideoCodec codec);

// The software fallback's name ("libx265" or "libx264"), its private options, and the rate control
// limits shared by every encoder. The benchmark runs the ffmpeg program with exactly these.
std::string softwareEncoderName(VideoCodec codec);
std::vector<EncoderOption> softwareEncoderOptions(const VideoOutputSettings& settings);
std::int64_t maximumBitRate(const VideoOutputSettings& settings);
int rateControlBufferBits(const VideoOutputSettings& settings);

}  // namespace kestrum::ffmpeg

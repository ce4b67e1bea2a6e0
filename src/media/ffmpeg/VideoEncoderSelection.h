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

// Every encoder is opened on a thread of this name whose nice value is this much above the caller's;
// the threads the encoder starts inherit both. Five steps give a thread a third of the scheduler weight
// of one at the caller's value (335 against 1024): where a capture thread and an encoder thread share a
// core, the capture thread wins the wake-ups and three quarters of the time, and the encoder, whose
// threads fill both cores, still keeps a quarter of each core against busy threads of the caller's
// value, enough to catch up from its queue. Ten steps (weight 110) would leave it under a tenth and
// let it fall behind for good whenever other work at the caller's value keeps both cores busy. With the
// kernel's autogroups, a game in another session weighs against Kestrum as a whole: there the value only
// orders Kestrum's own threads, which is all this is for.
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

#include "media/ffmpeg/VideoEncoderSelection.h"

#include "base/log/CaptureLog.h"
#include "media/ffmpeg/FfmpegError.h"
#include "media/ffmpeg/LowerPriorityThread.h"

extern "C" {
#include <libavutil/hwcontext.h>
#include <libavutil/opt.h>
}

#include <map>
#include <mutex>

namespace kestrum::ffmpeg {

namespace {

enum class EncoderKind { vaapi, nvenc, software };

struct Candidate {
    EncoderKind kind;
    std::string name;
};

std::vector<Candidate> candidatesFor(VideoCodec codec) {
    const bool hevc = codec == VideoCodec::hevc;
    return {{EncoderKind::vaapi, hevc ? "hevc_vaapi" : "h264_vaapi"},
            {EncoderKind::nvenc, hevc ? "hevc_nvenc" : "h264_nvenc"},
            {EncoderKind::software, softwareEncoderName(codec)}};
}

// Per codec, the name of the encoder that opened first in this process, and whether it was logged.
struct ChoiceMemory {
    std::mutex mutex;
    std::map<VideoCodec, std::string> chosen;  // guarded by mutex
};

ChoiceMemory& choiceMemory() {
    static ChoiceMemory memory;
    return memory;
}

const char* codecLabel(VideoCodec codec) {
    return codec == VideoCodec::hevc ? "HEVC" : "H.264";
}

void applyRateControl(AVCodecContext& context, const VideoOutputSettings& settings, bool globalHeader) {
    context.width = settings.width;
    context.height = settings.height;
    context.time_base = kVideoEncoderTimeBase;
    context.framerate = AVRational{settings.expectedFrameRate, 1};
    context.bit_rate = settings.averageBitRate;
    context.rc_max_rate = maximumBitRate(settings);
    context.rc_buffer_size = rateControlBufferBits(settings);
    context.gop_size = settings.maxKeyFrameInterval;
    context.max_b_frames = 0;
    context.thread_count = 0;  // as many as the encoder finds useful, like the ffmpeg program's "auto"
    // The frames are converted from the screen's sRGB with the BT.601 matrix in limited range; said so in
    // the stream, players do not guess the HD matrix and shift the colours.
    context.colorspace = AVCOL_SPC_SMPTE170M;
    context.color_range = AVCOL_RANGE_MPEG;
    context.color_primaries = AVCOL_PRI_BT709;
    context.color_trc = AVCOL_TRC_IEC61966_2_1;
    if (settings.codec == VideoCodec::h264 && settings.h264HighAutoLevel)
        context.profile = FF_PROFILE_H264_HIGH;
    if (globalHeader) context.flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
}

void setOptions(AVCodecContext& context, const std::vector<EncoderOption>& options) {
    for (const EncoderOption& option : options) {
        av_opt_set(context.priv_data, option.key.c_str(), option.value.c_str(), 0);
    }
}

// Hardware frames for VAAPI: NV12 surfaces of the output size on the default render node.
int attachVaapiFrames(AVCodecContext& context) {
    AVBufferRef* device = nullptr;
    int result = av_hwdevice_ctx_create(&device, AV_HWDEVICE_TYPE_VAAPI, nullptr, nullptr, 0);
    if (result < 0) return result;
    BufferRefPtr deviceRef(device);
    BufferRefPtr frames(av_hwframe_ctx_alloc(device));
    if (!frames) return AVERROR(ENOMEM);
    auto* framesContext = reinterpret_cast<AVHWFramesContext*>(frames->data);
    framesContext->format = AV_PIX_FMT_VAAPI;
    framesContext->sw_format = AV_PIX_FMT_NV12;
    framesContext->width = context.width;
    framesContext->height = context.height;
    framesContext->initial_pool_size = 16;
    result = av_hwframe_ctx_init(frames.get());
    if (result < 0) return result;
    context.pix_fmt = AV_PIX_FMT_VAAPI;
    context.hw_frames_ctx = av_buffer_ref(frames.get());
    return context.hw_frames_ctx != nullptr ? 0 : AVERROR(ENOMEM);
}

Result<OpenedVideoEncoder> tryOpen(const Candidate& candidate, const VideoOutputSettings& settings,
                                   bool globalHeader) {
    const AVCodec* codec = avcodec_find_encoder_by_name(candidate.name.c_str());
    const QString name = QString::fromStdString(candidate.name);
    if (codec == nullptr) return ffmpegError(AVERROR_ENCODER_NOT_FOUND, QStringLiteral("No encoder ") + name);
    CodecContextPtr context(avcodec_alloc_context3(codec));
    if (!context) return ffmpegError(AVERROR(ENOMEM), QStringLiteral("Could not allocate ") + name);
    applyRateControl(*context, settings, globalHeader);
    OpenedVideoEncoder opened;
    opened.encoderName = name;
    switch (candidate.kind) {
        case EncoderKind::vaapi: {
            const int result = attachVaapiFrames(*context);
            if (result < 0) return ffmpegError(result, QStringLiteral("No VAAPI device for ") + name);
            setOptions(*context, {{"rc_mode", "VBR"}});
            opened.softwareFormat = AV_PIX_FMT_NV12;
            opened.uploadsToHardware = true;
            break;
        }
        case EncoderKind::nvenc:
            context->pix_fmt = AV_PIX_FMT_YUV420P;
            setOptions(*context, {{"preset", "p4"}, {"rc", "vbr"}, {"forced-idr", "1"}});
            opened.softwareFormat = AV_PIX_FMT_YUV420P;
            break;
        case EncoderKind::software:
            context->pix_fmt = AV_PIX_FMT_YUV420P;
            setOptions(*context, softwareEncoderOptions(settings));
            opened.softwareFormat = AV_PIX_FMT_YUV420P;
            break;
    }
    const int result = avcodec_open2(context.get(), codec, nullptr);
    if (result < 0) return ffmpegError(result, QStringLiteral("Could not open ") + name);
    opened.context = std::move(context);
    return opened;
}

// The candidates in order, starting from the one that opened before in this process.
std::vector<Candidate> orderedCandidates(VideoCodec codec) {
    std::vector<Candidate> candidates = candidatesFor(codec);
    ChoiceMemory& memory = choiceMemory();
    std::lock_guard lock(memory.mutex);
    const auto chosen = memory.chosen.find(codec);
    if (chosen == memory.chosen.end()) return candidates;
    for (std::size_t index = 0; index < candidates.size(); ++index) {
        if (candidates[index].name == chosen->second) {
            return {candidates.begin() + static_cast<std::ptrdiff_t>(index), candidates.end()};
        }
    }
    return candidates;
}

void rememberChoice(VideoCodec codec, const std::string& name) {
    ChoiceMemory& memory = choiceMemory();
    std::lock_guard lock(memory.mutex);
    const auto [entry, inserted] = memory.chosen.insert_or_assign(codec, name);
    (void)entry;
    if (!inserted) return;
    logCaptureInfo(QStringLiteral("Video encoder for %1: %2.")
                       .arg(QString::fromLatin1(codecLabel(codec)), QString::fromStdString(name)));
}

// x264 and x265 start their worker and lookahead threads while opening: opened from a lowered thread,
// they run below the capture threads, which then keep their deadlines while the encoder warms up (its
// first frames cost the most) and the encoder catches up from its queue. x265's pool workers lower
// themselves by another 10 on top; its other threads keep ours. The hardware encoders do
// their work off the processor, and the few threads their drivers start are better lowered too.
Result<OpenedVideoEncoder> openCandidate(const Candidate& candidate, const VideoOutputSettings& settings,
                                         bool globalHeader) {
    return runOnLowerPriorityThread(kEncoderThreadName, kEncoderNiceIncrement,
                                    [&] { return tryOpen(candidate, settings, globalHeader); });
}

}  // namespace

Result<OpenedVideoEncoder> openVideoEncoder(const VideoOutputSettings& settings, bool globalHeader) {
    std::optional<Error> lastError;
    for (const Candidate& candidate : orderedCandidates(settings.codec)) {
        Result<OpenedVideoEncoder> opened = openCandidate(candidate, settings, globalHeader);
        if (opened.ok()) {
            rememberChoice(settings.codec, candidate.name);
            return opened;
        }
        lastError = opened.error();
    }
    Error error =
        writerError(WriterErrorCode::noEncoder,
                    QStringLiteral("No %1 encoder could be opened").arg(codecLabel(settings.codec)));
    return lastError ? withUnderlying(std::move(error), *lastError) : error;
}

std::optional<std::string> chosenVideoEncoder(VideoCodec codec) {
    ChoiceMemory& memory = choiceMemory();
    std::lock_guard lock(memory.mutex);
    const auto chosen = memory.chosen.find(codec);
    if (chosen == memory.chosen.end()) return std::nullopt;
    return chosen->second;
}

bool hasVideoEncoder(VideoCodec codec) {
    return avcodec_find_encoder_by_name(softwareEncoderName(codec).c_str()) != nullptr;
}

std::string softwareEncoderName(VideoCodec codec) {
    return codec == VideoCodec::hevc ? "libx265" : "libx264";
}

std::vector<EncoderOption> softwareEncoderOptions(const VideoOutputSettings& settings) {
    // Presets measured on two cores with grainy 30 fps content: x265 "ultrafast" encodes 720p at about
    // 1.3 CPU seconds per second (real time with a margin only when the cores are free), "superfast"
    // needs about twice that and cannot keep up, so HEVC takes the fastest. x264 at 1080p costs 0.5 CPU
    // seconds per second at "superfast" and 0.7 at "veryfast"; "superfast" keeps native sizes above
    // 1080p within two cores while keeping CABAC, which "ultrafast" gives up.
    // Key frames forced for the 2-second rule must be IDR frames so that the file can be cut there.
    if (settings.codec == VideoCodec::hevc) {
        return {{"preset", "ultrafast"}, {"forced-idr", "1"}, {"x265-params", "log-level=error"}};
    }
    return {{"preset", "superfast"}, {"profile", "high"}, {"forced-idr", "1"}};
}

std::int64_t maximumBitRate(const VideoOutputSettings& settings) {
    return static_cast<std::int64_t>(settings.averageBitRate) * 2;
}

int rateControlBufferBits(const VideoOutputSettings& settings) {
    return settings.averageBitRate * 2;
}

}  // namespace kestrum::ffmpeg

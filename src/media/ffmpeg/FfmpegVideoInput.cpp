#include "media/ffmpeg/FfmpegVideoInput.h"

#include "media/ffmpeg/FfmpegError.h"
#include "media/ffmpeg/FfmpegMuxer.h"

extern "C" {
#include <libavutil/hwcontext.h>
#include <libavutil/mathematics.h>
}

#include <pthread.h>

#include <algorithm>

namespace kestrum::ffmpeg {

namespace {

constexpr std::int64_t kMinimumRealTimeQueueFrames = 4;
constexpr std::int64_t kOfflineQueueFrames = 16;
// The real-time queue holds 1/kRealTimeQueueFractionOfSecond seconds of frames. The encoder's start (its
// threads, the first key frame, the first touch of its buffers) has kept a 1080p60 x264 encoder from
// taking frames for up to 150 ms on two cores.
constexpr std::int64_t kRealTimeQueueFractionOfSecond = 5;
constexpr unsigned kHevcTag = MKTAG('h', 'v', 'c', '1');
constexpr unsigned kAvcTag = MKTAG('a', 'v', 'c', '1');

std::int64_t nsToTicks(HostTimeNs ns) {
    return av_rescale_q(ns, AVRational{1, 1'000'000'000}, kVideoEncoderTimeBase);
}

}  // namespace

std::int64_t videoInputQueueFrames(bool expectsRealTime, int expectedFrameRate) {
    if (!expectsRealTime) return kOfflineQueueFrames;
    const std::int64_t framesInWindow =
        (expectedFrameRate + kRealTimeQueueFractionOfSecond - 1) / kRealTimeQueueFractionOfSecond;
    return std::max(kMinimumRealTimeQueueFrames, framesInWindow);
}

FfmpegVideoInput::FfmpegVideoInput(VideoOutputSettings settings, std::shared_ptr<WriterState> state)
    : settings_(settings),
      state_(std::move(state)),
      queue_(videoInputQueueFrames(true, settings_.expectedFrameRate)) {}

FfmpegVideoInput::~FfmpegVideoInput() {
    stop();
}

bool FfmpegVideoInput::isReadyForMoreMediaData() const {
    return started_.load() && state_->isWriting() && state_->sessionStart().has_value() && queue_.hasRoom();
}

void FfmpegVideoInput::setExpectsMediaDataInRealTime(bool expectsRealTime) {
    realTime_.store(expectsRealTime);
    queue_.setCapacity(videoInputQueueFrames(expectsRealTime, settings_.expectedFrameRate));
}

bool FfmpegVideoInput::append(std::shared_ptr<const PixelBuffer> frame, HostTimeNs presentationHostTimeNs) {
    if (!frame || !frame->isValid()) return false;
    if (!started_.load() || !state_->isWriting() || !state_->sessionStart()) return false;
    if (queue_.tryPush(WorkItem{std::move(frame), presentationHostTimeNs}, 1)) return true;
    refused_.fetch_add(1);
    return false;
}

bool FfmpegVideoInput::append(AudioSampleBuffer /*buffer*/) {
    return false;
}

Status FfmpegVideoInput::open(std::shared_ptr<FfmpegMuxer> muxer) {
    Result<OpenedVideoEncoder> opened = openVideoEncoder(settings_, muxer->wantsGlobalHeader());
    if (!opened.ok()) return opened.error();
    encoder_ = std::move(opened).value();
    const unsigned tag = settings_.codec == VideoCodec::hevc ? kHevcTag : kAvcTag;
    Result<int> index = muxer->addStream(*encoder_.context, tag);
    if (!index.ok()) return index.error();
    streamIndex_ = index.value();
    muxer_ = std::move(muxer);
    softwareFrame_.reset(av_frame_alloc());
    hardwareFrame_.reset(av_frame_alloc());
    if (!softwareFrame_ || !hardwareFrame_)
        return ffmpegError(AVERROR(ENOMEM), QStringLiteral("Out of memory"));
    softwareFrame_->format = encoder_.softwareFormat;
    softwareFrame_->width = settings_.width;
    softwareFrame_->height = settings_.height;
    const int result = av_frame_get_buffer(softwareFrame_.get(), 0);
    if (result < 0) return ffmpegError(result, QStringLiteral("Could not allocate a video frame"));
    return {};
}

void FfmpegVideoInput::start() {
    thread_ = std::thread([this] {
        pthread_setname_np(pthread_self(), "kestrum-video");
        run();
    });
    started_.store(true);
}

void FfmpegVideoInput::requestFinish() {
    queue_.pushControl(WorkItem{});
}

void FfmpegVideoInput::stop() {
    started_.store(false);
    discarded_.fetch_add(queue_.close());
    if (thread_.joinable()) thread_.join();
}

void FfmpegVideoInput::run() {
    while (auto item = queue_.pop()) {
        if (!item->frame) {
            finishStream();
            return;
        }
        if (!state_->isWriting() || !encode(*item)) discarded_.fetch_add(1);
    }
}

bool FfmpegVideoInput::encode(const WorkItem& item) {
    const std::optional<HostTimeNs> sessionStart = state_->sessionStart();
    if (!sessionStart || item.hostTimeNs < *sessionStart) return false;
    const std::int64_t pts = nsToTicks(item.hostTimeNs - *sessionStart);
    if (encodedAnyFrame_ && pts <= lastPts_) return false;
    if (!convert(*item.frame, pts)) return false;
    AVFrame* frame = softwareFrame_.get();
    if (encoder_.uploadsToHardware) {
        av_frame_unref(hardwareFrame_.get());
        int result = av_hwframe_get_buffer(encoder_.context->hw_frames_ctx, hardwareFrame_.get(), 0);
        if (result >= 0) result = av_hwframe_transfer_data(hardwareFrame_.get(), frame, 0);
        if (result < 0) {
            state_->fail(ffmpegError(result, QStringLiteral("Could not upload a video frame")));
            return false;
        }
        av_frame_copy_props(hardwareFrame_.get(), frame);
        frame = hardwareFrame_.get();
    }
    const std::int64_t keyIntervalTicks =
        static_cast<std::int64_t>(settings_.maxKeyFrameIntervalDurationSeconds * kVideoEncoderTimeBase.den);
    const bool keyDue = !encodedAnyFrame_ || (keyIntervalTicks > 0 && pts - lastKeyPts_ >= keyIntervalTicks);
    frame->pict_type = keyDue ? AV_PICTURE_TYPE_I : AV_PICTURE_TYPE_NONE;
    if (keyDue) lastKeyPts_ = pts;
    lastPts_ = pts;
    encodedAnyFrame_ = true;
    return send(frame);
}

bool FfmpegVideoInput::convert(const PixelBuffer& source, std::int64_t pts) {
    AVFrame* frame = softwareFrame_.get();
    int result = av_frame_make_writable(frame);
    if (result < 0) {
        state_->fail(ffmpegError(result, QStringLiteral("Could not allocate a video frame")));
        return false;
    }
    if (!converter_.convert(source, *frame)) {
        state_->fail(ffmpegError(AVERROR(EINVAL), QStringLiteral("Could not convert a video frame")));
        return false;
    }
    frame->pts = pts;
    return true;
}

bool FfmpegVideoInput::send(AVFrame* frame) {
    int result = avcodec_send_frame(encoder_.context.get(), frame);
    while (result >= 0) {
        PacketPtr packet(av_packet_alloc());
        if (!packet) {
            result = AVERROR(ENOMEM);
            break;
        }
        result = avcodec_receive_packet(encoder_.context.get(), packet.get());
        if (result == AVERROR(EAGAIN) || result == AVERROR_EOF) return true;
        if (result >= 0) forward(std::move(packet));
    }
    state_->fail(ffmpegError(result, QStringLiteral("Could not encode a video frame")));
    return false;
}

void FfmpegVideoInput::forward(PacketPtr packet) {
    if ((packet->flags & AV_PKT_FLAG_KEY) != 0 && packet->pts > lastKeyPts_) lastKeyPts_ = packet->pts;
    if (pending_) {
        pending_->duration = packet->dts - pending_->dts;
        muxer_->submit(std::move(pending_), streamIndex_, kVideoEncoderTimeBase);
    }
    pending_ = std::move(packet);
}

void FfmpegVideoInput::finishStream() {
    if (state_->isWriting() && !encodedAnyFrame_) {
        state_->fail(
            writerError(WriterErrorCode::noVideoFrames,
                        QStringLiteral("The video track received no frames before the writing finished")));
    }
    if (state_->isWriting() && send(nullptr) && pending_) {
        // The last frame is shown for one nominal frame interval.
        pending_->duration = kVideoEncoderTimeBase.den / std::max(1, settings_.expectedFrameRate);
        muxer_->submit(std::move(pending_), streamIndex_, kVideoEncoderTimeBase);
    }
    muxer_->endStream(streamIndex_);
}

}  // namespace kestrum::ffmpeg

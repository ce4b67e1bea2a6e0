#include "media/ffmpeg/FfmpegAudioInput.h"

#include "media/ffmpeg/FfmpegError.h"
#include "media/ffmpeg/FfmpegMuxer.h"

#include <pthread.h>
#include <cmath>

namespace kestrum::ffmpeg {

namespace {

// Queued audio ahead of the encoder, in seconds of the track's rate.
constexpr std::int64_t kRealTimeQueueSeconds = 1;
constexpr std::int64_t kOfflineQueueSeconds = 4;
constexpr int kSilenceChunkFrames = 4096;

AVSampleFormat sampleFormatOf(const AudioFormatDescription& format) {
    const bool planar = format.isNonInterleaved();
    if (format.isFloat()) return planar ? AV_SAMPLE_FMT_FLTP : AV_SAMPLE_FMT_FLT;
    if (format.bitsPerChannel == 16) return planar ? AV_SAMPLE_FMT_S16P : AV_SAMPLE_FMT_S16;
    return planar ? AV_SAMPLE_FMT_S32P : AV_SAMPLE_FMT_S32;
}

}  // namespace

FfmpegAudioInput::FfmpegAudioInput(AudioOutputSettings settings, std::shared_ptr<WriterState> state)
    : settings_(settings),
      state_(std::move(state)),
      queue_(kRealTimeQueueSeconds * settings.sampleRate),
      timeline_(settings.sampleRate) {}

FfmpegAudioInput::~FfmpegAudioInput() {
    stop();
}

bool FfmpegAudioInput::isReadyForMoreMediaData() const {
    return started_.load() && state_->isWriting() && state_->sessionStart().has_value() && queue_.hasRoom();
}

void FfmpegAudioInput::setExpectsMediaDataInRealTime(bool expectsRealTime) {
    realTime_.store(expectsRealTime);
    queue_.setCapacity((expectsRealTime ? kRealTimeQueueSeconds : kOfflineQueueSeconds) *
                       settings_.sampleRate);
}

bool FfmpegAudioInput::append(std::shared_ptr<const PixelBuffer> /*frame*/, HostTimeNs /*hostTimeNs*/) {
    return false;
}

bool FfmpegAudioInput::append(AudioSampleBuffer buffer) {
    if (!buffer.isWellFormed()) return false;
    if (!started_.load() || !state_->isWriting() || !state_->sessionStart()) return false;
    const std::int64_t cost = buffer.frameCount();
    if (queue_.tryPush(WorkItem{std::move(buffer), false}, cost)) return true;
    refused_.fetch_add(1);
    return false;
}

Status FfmpegAudioInput::open(std::shared_ptr<FfmpegMuxer> muxer) {
    const AVCodec* codec = avcodec_find_encoder(AV_CODEC_ID_AAC);
    if (codec == nullptr) {
        return withUnderlying(writerError(WriterErrorCode::noEncoder, QStringLiteral("No AAC encoder")),
                              ffmpegError(AVERROR_ENCODER_NOT_FOUND, QStringLiteral("aac")));
    }
    encoder_.reset(avcodec_alloc_context3(codec));
    if (!encoder_) return ffmpegError(AVERROR(ENOMEM), QStringLiteral("Could not allocate the AAC encoder"));
    encoder_->sample_fmt = AV_SAMPLE_FMT_FLTP;
    encoder_->sample_rate = settings_.sampleRate;
    av_channel_layout_default(&encoder_->ch_layout, settings_.channelCount);
    encoder_->bit_rate = settings_.bitRate;
    encoder_->time_base = AVRational{1, settings_.sampleRate};
    if (muxer->wantsGlobalHeader()) encoder_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    int result = avcodec_open2(encoder_.get(), codec, nullptr);
    if (result < 0) return ffmpegError(result, QStringLiteral("Could not open the AAC encoder"));
    Result<int> index = muxer->addStream(*encoder_, 0);
    if (!index.ok()) return index.error();
    streamIndex_ = index.value();
    muxer_ = std::move(muxer);
    frame_.reset(av_frame_alloc());
    fifo_.reset(av_audio_fifo_alloc(AV_SAMPLE_FMT_FLTP, settings_.channelCount, settings_.sampleRate));
    if (!frame_ || !fifo_) return ffmpegError(AVERROR(ENOMEM), QStringLiteral("Out of memory"));
    frame_->format = AV_SAMPLE_FMT_FLTP;
    frame_->sample_rate = settings_.sampleRate;
    frame_->nb_samples = encoder_->frame_size;
    av_channel_layout_copy(&frame_->ch_layout, &encoder_->ch_layout);
    result = av_frame_get_buffer(frame_.get(), 0);
    if (result < 0) return ffmpegError(result, QStringLiteral("Could not allocate an audio frame"));
    return {};
}

void FfmpegAudioInput::start() {
    thread_ = std::thread([this] {
        pthread_setname_np(pthread_self(), "kestrum-audio");
        run();
    });
    started_.store(true);
}

void FfmpegAudioInput::requestFinish() {
    queue_.pushControl(WorkItem{AudioSampleBuffer(), true});
}

void FfmpegAudioInput::stop() {
    started_.store(false);
    discarded_.fetch_add(queue_.close());
    if (thread_.joinable()) thread_.join();
}

void FfmpegAudioInput::run() {
    while (auto item = queue_.pop()) {
        if (item->endOfStream) {
            finishStream();
            return;
        }
        if (!state_->isWriting() || !process(item->buffer)) discarded_.fetch_add(1);
    }
}

bool FfmpegAudioInput::process(const AudioSampleBuffer& buffer) {
    const std::optional<HostTimeNs> sessionStart = state_->sessionStart();
    if (!sessionStart || !configureResampler(buffer.format())) return false;
    const AudioTimeline::Placement placement =
        timeline_.place(*sessionStart, buffer.hostTimeNs(), buffer.frameCount(), buffer.format().sampleRate,
                        nextOutputFrame());
    if (placement.dropped) return false;
    if (!writeSilence(placement.silenceOutputFrames)) return false;
    if (!convertInto(buffer, placement.skipInputFrames)) return false;
    // A failure to encode what was queued is the writer's failure, reported by its status; the buffer
    // itself reached the track.
    encodeQueued(false);
    return true;
}

bool FfmpegAudioInput::configureResampler(const AudioFormatDescription& format) {
    if (resampler_ && resamplerFormat_ == format) return true;
    AVChannelLayout inputLayout{};
    av_channel_layout_default(&inputLayout, static_cast<int>(format.channelsPerFrame));
    SwrContext* resampler = nullptr;
    int result = swr_alloc_set_opts2(&resampler, &encoder_->ch_layout, AV_SAMPLE_FMT_FLTP,
                                     settings_.sampleRate, &inputLayout, sampleFormatOf(format),
                                     static_cast<int>(std::lround(format.sampleRate)), 0, nullptr);
    av_channel_layout_uninit(&inputLayout);
    SwrContextPtr owned(resampler);
    if (result >= 0) result = swr_init(resampler);
    if (result < 0) {
        state_->fail(ffmpegError(result, QStringLiteral("Could not convert the audio format")));
        return false;
    }
    resampler_ = std::move(owned);
    resamplerFormat_ = format;
    return true;
}

std::int64_t FfmpegAudioInput::nextOutputFrame() const {
    const std::int64_t delayed = resampler_ ? swr_get_delay(resampler_.get(), settings_.sampleRate) : 0;
    return fifoStartFrame_ + av_audio_fifo_size(fifo_.get()) + delayed;
}

bool FfmpegAudioInput::writeSilence(std::int64_t frames) {
    if (frames <= 0) return true;
    std::vector<float> zeros(kSilenceChunkFrames, 0.0F);
    std::vector<void*> planes(static_cast<std::size_t>(settings_.channelCount), zeros.data());
    while (frames > 0) {
        const int chunk = static_cast<int>(std::min<std::int64_t>(frames, kSilenceChunkFrames));
        if (av_audio_fifo_write(fifo_.get(), planes.data(), chunk) < chunk) {
            state_->fail(ffmpegError(AVERROR(ENOMEM), QStringLiteral("Could not queue audio")));
            return false;
        }
        frames -= chunk;
        if (!encodeQueued(false)) return false;
    }
    return true;
}

bool FfmpegAudioInput::convertInto(const AudioSampleBuffer& buffer, std::int64_t skipFrames) {
    const AudioFormatDescription& format = buffer.format();
    const int inputFrames = buffer.frameCount() - static_cast<int>(skipFrames);
    std::vector<const std::uint8_t*> inputs;
    if (format.isNonInterleaved()) {
        for (const auto& plane : buffer.buffers())
            inputs.push_back(plane.data() + skipFrames * format.bytesPerSample());
    } else {
        inputs.push_back(buffer.buffers().front().data() +
                         skipFrames * format.bytesPerSample() *
                             static_cast<std::int64_t>(format.channelsPerFrame));
    }
    const int capacity = swr_get_out_samples(resampler_.get(), inputFrames);
    scratch_.resize(static_cast<std::size_t>(settings_.channelCount));
    std::vector<std::uint8_t*> outputs;
    for (auto& plane : scratch_) {
        plane.resize(static_cast<std::size_t>(std::max(capacity, 1)));
        outputs.push_back(reinterpret_cast<std::uint8_t*>(plane.data()));
    }
    const int converted = swr_convert(resampler_.get(), outputs.data(), capacity, inputs.data(), inputFrames);
    if (converted < 0) {
        state_->fail(ffmpegError(converted, QStringLiteral("Could not convert audio")));
        return false;
    }
    std::vector<void*> planes(outputs.begin(), outputs.end());
    if (av_audio_fifo_write(fifo_.get(), planes.data(), converted) < converted) {
        state_->fail(ffmpegError(AVERROR(ENOMEM), QStringLiteral("Could not queue audio")));
        return false;
    }
    return true;
}

bool FfmpegAudioInput::encodeQueued(bool includePartialFrame) {
    const int frameSize = encoder_->frame_size;
    while (true) {
        const int queued = av_audio_fifo_size(fifo_.get());
        if (queued == 0 || (queued < frameSize && !includePartialFrame)) return true;
        const int count = std::min(queued, frameSize);
        frame_->nb_samples = frameSize;
        const int result = av_frame_make_writable(frame_.get());
        if (result < 0) {
            state_->fail(ffmpegError(result, QStringLiteral("Could not allocate an audio frame")));
            return false;
        }
        frame_->nb_samples = count;
        av_audio_fifo_read(fifo_.get(), reinterpret_cast<void**>(frame_->data), count);
        frame_->pts = fifoStartFrame_;
        fifoStartFrame_ += count;
        if (!send(frame_.get())) return false;
    }
}

bool FfmpegAudioInput::send(AVFrame* frame) {
    int result = avcodec_send_frame(encoder_.get(), frame);
    while (result >= 0) {
        PacketPtr packet(av_packet_alloc());
        if (!packet) {
            result = AVERROR(ENOMEM);
            break;
        }
        result = avcodec_receive_packet(encoder_.get(), packet.get());
        if (result == AVERROR(EAGAIN) || result == AVERROR_EOF) return true;
        if (result >= 0) muxer_->submit(std::move(packet), streamIndex_, encoder_->time_base);
    }
    state_->fail(ffmpegError(result, QStringLiteral("Could not encode audio")));
    return false;
}

void FfmpegAudioInput::finishStream() {
    if (state_->isWriting() && resampler_) {
        // What the resampler still holds belongs at the end of the track.
        const int capacity = swr_get_out_samples(resampler_.get(), 0);
        if (capacity > 0) {
            std::vector<std::uint8_t*> outputs;
            for (auto& plane : scratch_) {
                plane.resize(static_cast<std::size_t>(capacity));
                outputs.push_back(reinterpret_cast<std::uint8_t*>(plane.data()));
            }
            const int drained = swr_convert(resampler_.get(), outputs.data(), capacity, nullptr, 0);
            std::vector<void*> planes(outputs.begin(), outputs.end());
            if (drained > 0) av_audio_fifo_write(fifo_.get(), planes.data(), drained);
        }
    }
    if (state_->isWriting() && encodeQueued(true)) send(nullptr);
    muxer_->endStream(streamIndex_);
}

}  // namespace kestrum::ffmpeg

#include "media/ffmpeg/FfmpegMovieWriter.h"

#include "media/ffmpeg/FfmpegAudioInput.h"
#include "media/ffmpeg/FfmpegError.h"
#include "media/ffmpeg/FfmpegVideoInput.h"
#include "media/ffmpeg/VideoEncoderSelection.h"

extern "C" {
#include <libavcodec/avcodec.h>
}

namespace kestrum::ffmpeg {

namespace {

constexpr int kMaxDimension = 16384;
constexpr std::size_t kMaxAudioInputs = 4;

bool isSupported(const VideoOutputSettings& settings) {
    return settings.width >= 2 && settings.height >= 2 && settings.width % 2 == 0 &&
           settings.height % 2 == 0 && settings.width <= kMaxDimension && settings.height <= kMaxDimension &&
           settings.averageBitRate > 0 && settings.expectedFrameRate > 0 && hasVideoEncoder(settings.codec);
}

bool isSupported(const AudioOutputSettings& settings) {
    return settings.codec == AudioCodec::aac && settings.sampleRate >= 8000 && settings.sampleRate <= 96000 &&
           settings.channelCount >= 1 && settings.channelCount <= 2 && settings.bitRate > 0 &&
           avcodec_find_encoder(AV_CODEC_ID_AAC) != nullptr;
}

}  // namespace

Result<std::unique_ptr<MovieWriter>> FfmpegMovieWriter::create(const QString& path, CrashSafety crashSafety) {
    auto state = std::make_shared<WriterState>();
    Result<std::shared_ptr<FfmpegMuxer>> muxer = FfmpegMuxer::create(path, state, crashSafety);
    if (!muxer.ok()) return muxer.error();
    return std::unique_ptr<MovieWriter>(
        new FfmpegMovieWriter(path, std::move(state), std::move(muxer).value()));
}

FfmpegMovieWriter::FfmpegMovieWriter(QString path, std::shared_ptr<WriterState> state,
                                     std::shared_ptr<FfmpegMuxer> muxer)
    : path_(std::move(path)), state_(std::move(state)), muxer_(std::move(muxer)) {}

FfmpegMovieWriter::~FfmpegMovieWriter() {
    // A writer dropped while writing stops as a cancel would; a finish in flight is waited for.
    if (endMarkersSent_) {
        muxer_->join();
    } else {
        state_->cancel();
    }
    stopThreads();
    completeFinish();
}

bool FfmpegMovieWriter::canAddInput(const MovieInputSettings& settings) const {
    if (state_->status() != MovieWriterStatus::unknown) return false;
    if (const auto* video = std::get_if<VideoOutputSettings>(&settings)) {
        return !hasVideoInput_ && isSupported(*video);
    }
    const std::size_t audioInputs = inputs_.size() - (hasVideoInput_ ? 1 : 0);
    return audioInputs < kMaxAudioInputs && isSupported(std::get<AudioOutputSettings>(settings));
}

std::shared_ptr<MovieWriterInput> FfmpegMovieWriter::addInput(const MovieInputSettings& settings) {
    if (!canAddInput(settings)) return nullptr;
    std::shared_ptr<FfmpegTrackInput> input;
    if (const auto* video = std::get_if<VideoOutputSettings>(&settings)) {
        input = std::make_shared<FfmpegVideoInput>(*video, state_);
        hasVideoInput_ = true;
    } else {
        input = std::make_shared<FfmpegAudioInput>(std::get<AudioOutputSettings>(settings), state_);
    }
    inputs_.push_back(input);
    return input;
}

bool FfmpegMovieWriter::startWriting() {
    if (state_->status() != MovieWriterStatus::unknown) return false;
    for (const auto& input : inputs_) {
        const Status opened = input->open(muxer_);
        if (!opened.ok()) return failStart(opened.error());
    }
    const Status header = muxer_->open();
    if (!header.ok()) return failStart(header.error());
    state_->beginWriting();
    muxer_->whenFinished([this] { completeFinish(); });
    for (const auto& input : inputs_) input->start();
    return true;
}

bool FfmpegMovieWriter::failStart(const Error& error) {
    state_->fail(error);
    return false;
}

QFuture<void> FfmpegMovieWriter::finishWriting() {
    if (finishRequested_) return finishFuture_;
    finishRequested_ = true;
    {
        std::lock_guard lock(finishMutex_);
        finishPromise_.emplace();
        finishPromise_->start();
        finishFuture_ = finishPromise_->future();
    }
    if (!state_->isWriting()) {
        completeFinish();
        return finishFuture_;
    }
    endMarkersSent_ = true;
    for (const auto& input : inputs_) input->requestFinish();
    if (inputs_.empty()) muxer_->endStream(0);  // a movie without tracks still gets its trailer
    return finishFuture_;
}

void FfmpegMovieWriter::cancelWriting() {
    if (!state_->cancel()) return;
    stopThreads();
    completeFinish();
}

void FfmpegMovieWriter::stopThreads() {
    for (const auto& input : inputs_) input->stop();
    muxer_->cancel();
}

void FfmpegMovieWriter::completeFinish() {
    std::lock_guard lock(finishMutex_);
    if (!finishPromise_) return;
    finishPromise_->finish();
    finishPromise_.reset();
}

}  // namespace kestrum::ffmpeg

#include "media/ffmpeg/FfmpegMuxer.h"

#include "media/ffmpeg/FfmpegError.h"

#include <QFileInfo>

#include <pthread.h>
#include <limits>

namespace kestrum::ffmpeg {

Result<std::shared_ptr<FfmpegMuxer>> FfmpegMuxer::create(const QString& path,
                                                         std::shared_ptr<WriterState> state) {
    const QFileInfo folder(QFileInfo(path).absolutePath());
    if (!folder.isDir()) {
        return writerError(
            WriterErrorCode::invalidOutputLocation,
            QStringLiteral("The folder of the movie does not exist: %1").arg(folder.filePath()));
    }
    AVFormatContext* context = nullptr;
    const QByteArray encodedPath = QFile::encodeName(path);
    const int result = avformat_alloc_output_context2(&context, nullptr, "mov", encodedPath.constData());
    if (result < 0 || context == nullptr) {
        return ffmpegError(result < 0 ? result : AVERROR_MUXER_NOT_FOUND,
                           QStringLiteral("Could not create the QuickTime muxer"));
    }
    return std::shared_ptr<FfmpegMuxer>(new FfmpegMuxer(path, std::move(state), context));
}

FfmpegMuxer::FfmpegMuxer(QString path, std::shared_ptr<WriterState> state, AVFormatContext* context)
    : path_(std::move(path)),
      state_(std::move(state)),
      context_(context),
      queue_(std::numeric_limits<std::int64_t>::max()) {}

FfmpegMuxer::~FfmpegMuxer() {
    cancel();
    avformat_free_context(context_);
}

bool FfmpegMuxer::wantsGlobalHeader() const {
    return (context_->oformat->flags & AVFMT_GLOBALHEADER) != 0;
}

Result<int> FfmpegMuxer::addStream(const AVCodecContext& encoder, unsigned codecTag) {
    AVStream* stream = avformat_new_stream(context_, nullptr);
    if (stream == nullptr) return ffmpegError(AVERROR(ENOMEM), QStringLiteral("Could not add a movie track"));
    const int result = avcodec_parameters_from_context(stream->codecpar, &encoder);
    if (result < 0) return ffmpegError(result, QStringLiteral("Could not describe a movie track"));
    stream->codecpar->codec_tag = codecTag;
    stream->time_base = encoder.time_base;
    return stream->index;
}

Status FfmpegMuxer::open() {
    const QByteArray encodedPath = QFile::encodeName(path_);
    int result = avio_open(&context_->pb, encodedPath.constData(), AVIO_FLAG_WRITE);
    if (result < 0) return ffmpegError(result, QStringLiteral("Could not open the movie file"));
    result = avformat_write_header(context_, nullptr);
    if (result < 0) {
        closeFile();
        return ffmpegError(result, QStringLiteral("Could not write the movie header"));
    }
    thread_ = std::thread([this] {
        pthread_setname_np(pthread_self(), "kestrum-mux");
        run();
    });
    return {};
}

void FfmpegMuxer::submit(PacketPtr packet, int streamIndex, AVRational encoderTimeBase) {
    queue_.pushControl(Entry{std::move(packet), streamIndex, encoderTimeBase});
}

void FfmpegMuxer::endStream(int streamIndex) {
    queue_.pushControl(Entry{nullptr, streamIndex, {1, 1}});
}

void FfmpegMuxer::whenFinished(std::function<void()> done) {
    done_ = std::move(done);
}

void FfmpegMuxer::run() {
    while (auto entry = queue_.pop()) {
        if (entry->packet) {
            write(*entry);
            continue;
        }
        if (++endedStreams_ < static_cast<int>(context_->nb_streams)) continue;
        finalize();
        if (done_) done_();
        return;
    }
}

void FfmpegMuxer::write(Entry& entry) {
    if (!state_->isWriting()) return;  // after a failure or a cancel every write is a no-op
    AVPacket* packet = entry.packet.get();
    const AVStream* stream = context_->streams[entry.streamIndex];
    av_packet_rescale_ts(packet, entry.encoderTimeBase, stream->time_base);
    packet->stream_index = entry.streamIndex;
    int result = av_interleaved_write_frame(context_, packet);
    if (result >= 0 && context_->pb->error < 0) result = context_->pb->error;
    if (result < 0) state_->fail(ffmpegError(result, QStringLiteral("Could not write to the movie file")));
}

void FfmpegMuxer::finalize() {
    if (state_->isWriting()) {
        int result = av_write_trailer(context_);
        if (result >= 0 && context_->pb->error < 0) result = context_->pb->error;
        if (result >= 0) {
            avio_flush(context_->pb);
            result = context_->pb->error;
        }
        if (result < 0)
            state_->fail(ffmpegError(result, QStringLiteral("Could not finalise the movie file")));
    }
    closeFile();
    if (state_->isWriting()) state_->complete();
}

void FfmpegMuxer::closeFile() {
    if (context_->pb == nullptr) return;
    const int result = avio_closep(&context_->pb);
    if (result < 0) state_->fail(ffmpegError(result, QStringLiteral("Could not close the movie file")));
}

void FfmpegMuxer::cancel() {
    queue_.close();
    join();
    closeFile();
}

void FfmpegMuxer::join() {
    if (thread_.joinable()) thread_.join();
}

}  // namespace kestrum::ffmpeg

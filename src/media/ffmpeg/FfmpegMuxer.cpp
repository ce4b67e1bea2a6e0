#include "media/ffmpeg/FfmpegMuxer.h"

#include "base/log/CaptureLog.h"
#include "media/ffmpeg/FfmpegError.h"
#include "media/ffmpeg/JournaledStream.h"

#include <QFileInfo>

#include <pthread.h>
#include <algorithm>
#include <limits>

namespace kestrum::ffmpeg {

using Clock = std::chrono::steady_clock;

Result<std::shared_ptr<FfmpegMuxer>> FfmpegMuxer::create(const QString& path,
                                                         std::shared_ptr<WriterState> state,
                                                         CrashSafety crashSafety) {
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
    // The packets reach the "mov" muxer through av_write_frame, already in file order, and FFmpeg 5.1's
    // muxer writes each one's bytes at once (it buffers only when fragmenting): libavformat's own
    // interleaving queue, whose window this is (10 s by default), never holds a packet. It gets the same
    // window all the same, so that av_interleaved_write_frame could never bring the 10 seconds back.
    context->max_interleave_delta = kInterleaveWindowUs;
    return std::shared_ptr<FfmpegMuxer>(new FfmpegMuxer(path, std::move(state), context, crashSafety));
}

FfmpegMuxer::FfmpegMuxer(QString path, std::shared_ptr<WriterState> state, AVFormatContext* context,
                         CrashSafety crashSafety)
    : path_(std::move(path)),
      state_(std::move(state)),
      journaled_(crashSafety == CrashSafety::journaled),
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
    Result<std::unique_ptr<MovieFileOutput>> output = MovieFileOutput::create(path_);
    if (!output.ok()) return output.error();
    output_ = std::move(output).value();
    context_->pb = output_->io();
    context_->flags |= AVFMT_FLAG_CUSTOM_IO;
    const int result = avformat_write_header(context_, nullptr);
    if (result < 0) {
        closeFile();
        return ffmpegError(result, QStringLiteral("Could not write the movie header"));
    }
    if (journaled_) {
        const Status synced = output_->sync();
        if (!synced.ok()) {
            closeFile();
            return synced;
        }
        openJournal();
        (void)journal_.commit(0);
    }
    interleaver_.emplace(static_cast<int>(context_->nb_streams), kInterleaveWindowUs);
    lastSync_ = Clock::now();
    thread_ = std::thread([this] {
        pthread_setname_np(pthread_self(), "kestrum-mux");
        run();
    });
    return {};
}

void FfmpegMuxer::openJournal() {
    // The streams as the header fixed them: the muxer may have settled fields while writing it.
    Status opened = journal_.create(path_);
    for (unsigned index = 0; opened.ok() && index < context_->nb_streams; ++index)
        opened = journal_.addTrack(journalTrackOf(*context_->streams[index]));
    if (opened.ok()) return;
    journal_.close();
    journalFailureLogged_ = true;
    logCaptureError(
        QStringLiteral("Movie journal unavailable; this recording cannot be recovered after a crash: ") +
        opened.error().description);
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
    while (true) {
        std::optional<Entry> entry;
        const auto waited = queue_.popFor(timeUntilSync(), entry);
        if (waited == BoundedWorkQueue<Entry>::Wait::closed) return;
        if (waited == BoundedWorkQueue<Entry>::Wait::item && accept(std::move(*entry))) {
            finalize();
            if (done_) done_();
            return;
        }
        if (timeUntilSync() == std::chrono::nanoseconds::zero()) sync();
    }
}

bool FfmpegMuxer::accept(Entry entry) {
    // A movie without tracks ends at its first end marker.
    if (context_->nb_streams == 0) return true;
    if (!entry.packet) {
        interleaver_->endStream(entry.streamIndex);
    } else {
        const AVStream* stream = context_->streams[entry.streamIndex];
        av_packet_rescale_ts(entry.packet.get(), entry.encoderTimeBase, stream->time_base);
        const std::int64_t dtsUs =
            av_rescale_q(entry.packet->dts, stream->time_base, AVRational{1, AV_TIME_BASE});
        const int streamIndex = entry.streamIndex;
        interleaver_->push(streamIndex, dtsUs, std::move(entry));
    }
    writeReadyPackets();
    return interleaver_->allStreamsEnded();
}

void FfmpegMuxer::writeReadyPackets() {
    while (std::optional<Entry> ready = interleaver_->pop()) write(*ready);
}

void FfmpegMuxer::write(Entry& entry) {
    if (!state_->isWriting()) return;  // after a failure or a cancel every write is a no-op
    AVPacket* packet = entry.packet.get();
    packet->stream_index = entry.streamIndex;
    // Noted as given: a rebuild hands the muxer the same values, and it derives the same index from them.
    MovieJournalPacket noted;
    noted.track = static_cast<std::uint8_t>(entry.streamIndex);
    noted.isKeyFrame = (packet->flags & AV_PKT_FLAG_KEY) != 0;
    noted.fileOffset = avio_tell(context_->pb);
    noted.pts = packet->pts;
    noted.dts = packet->dts;
    noted.duration = packet->duration;
    int result = av_write_frame(context_, packet);
    if (result >= 0 && context_->pb->error < 0) result = context_->pb->error;
    if (result < 0) return fail(result, QStringLiteral("Could not write to the movie file"));
    noted.size = static_cast<std::uint32_t>(avio_tell(context_->pb) - noted.fileOffset);
    if (noted.size > 0) journal_.note(noted);
    hasUnsyncedWrites_ = journaled_;
}

void FfmpegMuxer::fail(int averror, const QString& what) {
    state_->fail(ffmpegError(averror, what));
    // What the file already holds stays recoverable: the journal takes the packets the file reached.
    if (output_) (void)journal_.commit(output_->writtenEnd());
}

std::chrono::nanoseconds FfmpegMuxer::timeUntilSync() const {
    if (!hasUnsyncedWrites_) return kSyncInterval;
    const auto due = lastSync_ + kSyncInterval;
    const auto now = Clock::now();
    return due > now ? std::chrono::duration_cast<std::chrono::nanoseconds>(due - now)
                     : std::chrono::nanoseconds::zero();
}

void FfmpegMuxer::sync() {
    lastSync_ = Clock::now();
    if (!hasUnsyncedWrites_ || !output_ || !state_->isWriting()) return;
    hasUnsyncedWrites_ = false;
    const Status synced = output_->sync();
    // A disk that cannot keep what was written has failed the movie, as a failed write would.
    if (!synced.ok()) return fail(synced.error().code, QStringLiteral("Could not write to the movie file"));
    const Status committed = journal_.commit(output_->writtenEnd());
    if (!committed.ok() && !journalFailureLogged_) {
        journalFailureLogged_ = true;
        logCaptureError(
            QStringLiteral(
                "Movie journal could not be written; a crash would lose the rest of this recording: ") +
            committed.error().description);
    }
}

void FfmpegMuxer::finalize() {
    if (state_->isWriting() && journaled_) {
        // Everything is durable and journaled before the index is written: a failure while writing it
        // (a full disk) still leaves a movie that can be rebuilt.
        hasUnsyncedWrites_ = true;
        sync();
    }
    if (state_->isWriting()) {
        int result = av_write_trailer(context_);
        if (result >= 0 && context_->pb->error < 0) result = context_->pb->error;
        if (result >= 0 && journaled_) {
            const Status synced = output_->sync();
            if (!synced.ok()) result = synced.error().code;
        }
        if (result < 0) fail(result, QStringLiteral("Could not finalise the movie file"));
    }
    closeFile();
    if (state_->isWriting()) state_->complete();
}

void FfmpegMuxer::closeFile() {
    journal_.close();
    if (!output_) return;
    const Status closed = output_->close();
    output_.reset();
    context_->pb = nullptr;
    if (!closed.ok()) state_->fail(closed.error());
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

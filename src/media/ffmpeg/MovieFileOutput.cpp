#include "media/ffmpeg/MovieFileOutput.h"

#include "base/files/DurableAppendFile.h"
#include "media/ffmpeg/FfmpegError.h"

extern "C" {
#include <libavutil/mem.h>
}

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <algorithm>
#include <cerrno>

namespace kestrum::ffmpeg {

namespace {

// The size of libavformat's own file buffer.
constexpr int kBufferBytes = 32768;

}  // namespace

Result<std::unique_ptr<MovieFileOutput>> MovieFileOutput::create(const QString& path) {
    const QByteArray encoded = QFile::encodeName(path);
    const int fd = ::open(encoded.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0) return ffmpegError(AVERROR(errno), QStringLiteral("Could not open the movie file"));
    syncFolderOf(path);
    std::unique_ptr<MovieFileOutput> output(new MovieFileOutput(path, fd));
    auto* buffer = static_cast<unsigned char*>(av_malloc(kBufferBytes));
    if (buffer != nullptr) {
        output->io_ = avio_alloc_context(buffer, kBufferBytes, 1, output.get(), nullptr,
                                         &MovieFileOutput::writePacket, &MovieFileOutput::seek);
    }
    if (output->io_ == nullptr) {
        av_free(buffer);
        return ffmpegError(AVERROR(ENOMEM), QStringLiteral("Could not open the movie file"));
    }
    return output;
}

MovieFileOutput::~MovieFileOutput() {
    (void)close();
}

int MovieFileOutput::writePacket(void* opaque, std::uint8_t* buffer, int size) {
    auto* self = static_cast<MovieFileOutput*>(opaque);
    int done = 0;
    while (done < size) {
        const ssize_t written = ::write(self->fd_, buffer + done, static_cast<std::size_t>(size - done));
        if (written < 0) {
            if (errno == EINTR) continue;
            return AVERROR(errno);
        }
        done += static_cast<int>(written);
        self->position_ += written;
        self->writtenEnd_ = std::max(self->writtenEnd_, self->position_);
    }
    return done;
}

std::int64_t MovieFileOutput::seek(void* opaque, std::int64_t offset, int whence) {
    auto* self = static_cast<MovieFileOutput*>(opaque);
    if (whence == AVSEEK_SIZE) {
        struct stat status {};
        if (::fstat(self->fd_, &status) != 0) return AVERROR(errno);
        return status.st_size;
    }
    const off_t position = ::lseek(self->fd_, static_cast<off_t>(offset), whence & ~AVSEEK_FORCE);
    if (position < 0) return AVERROR(errno);
    self->position_ = position;
    return position;
}

Status MovieFileOutput::sync() {
    avio_flush(io_);
    if (io_->error < 0) return ffmpegError(io_->error, QStringLiteral("Could not write to the movie file"));
    if (syncFileData(fd_) != 0)
        return ffmpegError(AVERROR(errno), QStringLiteral("Could not sync the movie file"));
    return Status::success();
}

Status MovieFileOutput::close() {
    if (fd_ < 0) return Status::success();
    Status status;
    if (io_ != nullptr) {
        avio_flush(io_);
        if (io_->error < 0)
            status = ffmpegError(io_->error, QStringLiteral("Could not close the movie file"));
        av_freep(&io_->buffer);  // the context may have replaced the buffer it was given
        avio_context_free(&io_);
    }
    if (::close(fd_) != 0 && status.ok())
        status = ffmpegError(AVERROR(errno), QStringLiteral("Could not close the movie file"));
    fd_ = -1;
    return status;
}

}  // namespace kestrum::ffmpeg

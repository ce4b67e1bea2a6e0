#include "media/ffmpeg/RecoveryFileOutput.h"

#include "media/ffmpeg/FfmpegError.h"

extern "C" {
#include <libavutil/mem.h>
}

#include <QFile>

#include <fcntl.h>
#include <unistd.h>
#include <algorithm>
#include <cerrno>

namespace kestrum::ffmpeg {

namespace {

constexpr int kBufferBytes = 65536;

}  // namespace

Result<std::unique_ptr<RecoveryFileOutput>> RecoveryFileOutput::rehearsal() {
    std::unique_ptr<RecoveryFileOutput> output(new RecoveryFileOutput(QString(), -1));
    const Status attached = output->attachContext();
    if (!attached.ok()) return attached.error();
    return output;
}

Result<std::unique_ptr<RecoveryFileOutput>> RecoveryFileOutput::over(const QString& path) {
    const QByteArray encoded = QFile::encodeName(path);
    const int fd = ::open(encoded.constData(), O_WRONLY | O_CLOEXEC);
    if (fd < 0) return ffmpegError(AVERROR(errno), QStringLiteral("Could not open the movie file"));
    std::unique_ptr<RecoveryFileOutput> output(new RecoveryFileOutput(path, fd));
    const Status attached = output->attachContext();
    if (!attached.ok()) return attached.error();
    return output;
}

Status RecoveryFileOutput::attachContext() {
    auto* buffer = static_cast<unsigned char*>(av_malloc(kBufferBytes));
    if (buffer != nullptr) {
        io_ = avio_alloc_context(buffer, kBufferBytes, 1, this, nullptr, &RecoveryFileOutput::writePacket,
                                 &RecoveryFileOutput::seek);
    }
    if (io_ == nullptr) {
        av_free(buffer);
        return ffmpegError(AVERROR(ENOMEM), QStringLiteral("Out of memory"));
    }
    return Status::success();
}

RecoveryFileOutput::~RecoveryFileOutput() {
    if (io_ != nullptr) {
        av_freep(&io_->buffer);
        avio_context_free(&io_);
    }
    if (fd_ >= 0) ::close(fd_);
}

void RecoveryFileOutput::setMode(Mode mode) {
    avio_flush(io_);
    mode_ = mode;
}

int RecoveryFileOutput::writePacket(void* opaque, std::uint8_t* buffer, int size) {
    auto* self = static_cast<RecoveryFileOutput*>(opaque);
    if (self->position_ < static_cast<std::int64_t>(kHeaderBytes)) {
        const auto at = static_cast<std::size_t>(self->position_);
        const std::size_t count = std::min<std::size_t>(static_cast<std::size_t>(size), kHeaderBytes - at);
        if (self->header_.size() < at + count) self->header_.resize(at + count);
        self->header_.replace(at, count, reinterpret_cast<const char*>(buffer), count);
    }
    if (self->mode_ == Mode::keep && self->fd_ >= 0) {
        int done = 0;
        while (done < size) {
            const ssize_t written = ::pwrite(self->fd_, buffer + done, static_cast<std::size_t>(size - done),
                                             static_cast<off_t>(self->position_ + done));
            if (written < 0) {
                if (errno == EINTR) continue;
                if (self->writeError_ == 0) self->writeError_ = AVERROR(errno);
                return AVERROR(errno);
            }
            done += static_cast<int>(written);
        }
    }
    self->position_ += size;
    self->end_ = std::max(self->end_, self->position_);
    return size;
}

std::int64_t RecoveryFileOutput::seek(void* opaque, std::int64_t offset, int whence) {
    auto* self = static_cast<RecoveryFileOutput*>(opaque);
    switch (whence & ~AVSEEK_FORCE) {
        case AVSEEK_SIZE:
            return self->end_;
        case SEEK_SET:
            self->position_ = offset;
            break;
        case SEEK_CUR:
            self->position_ += offset;
            break;
        case SEEK_END:
            self->position_ = self->end_ + offset;
            break;
        default:
            return AVERROR(EINVAL);
    }
    return self->position_;
}

Status RecoveryFileOutput::finish(std::int64_t endPosition) {
    avio_flush(io_);
    if (io_->error < 0) return ffmpegError(io_->error, QStringLiteral("Could not write the movie's index"));
    if (fd_ < 0) return Status::success();
    if (::ftruncate(fd_, static_cast<off_t>(endPosition)) != 0 || ::fdatasync(fd_) != 0)
        return ffmpegError(AVERROR(errno), QStringLiteral("Could not write the movie's index"));
    return Status::success();
}

}  // namespace kestrum::ffmpeg

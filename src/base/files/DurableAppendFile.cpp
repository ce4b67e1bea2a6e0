#include "base/files/DurableAppendFile.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <unistd.h>
#include <cerrno>
#include <cstring>

namespace kestrum {

int syncFileData(int fd) {
#if defined(__APPLE__)
    return ::fsync(fd);
#else
    return ::fdatasync(fd);
#endif
}

Error fileError(const QString& path, int errorNumber) {
    return Error{QStringLiteral("NSPOSIXErrorDomain"), errorNumber,
                 path + QStringLiteral(": ") + QString::fromLocal8Bit(std::strerror(errorNumber)), nullptr};
}

void syncFolderOf(const QString& path) {
    const QByteArray folder = QFile::encodeName(QFileInfo(path).absolutePath());
    const int fd = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    (void)::fsync(fd);
    ::close(fd);
}

DurableAppendFile::~DurableAppendFile() {
    close();
}

Status DurableAppendFile::create(const QString& path) {
    close();
    path_ = path;
    const QByteArray encoded = QFile::encodeName(path);
    fd_ = ::open(encoded.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd_ < 0) return fileError(path, errno);
    size_ = 0;
    reservedEnd_ = 0;
    syncFolderOf(path);
    reserveAhead();
    return Status::success();
}

void DurableAppendFile::reserveAhead() {
#if defined(__linux__)
    // Blocks only: the visible size stays the written end, so a reader never sees a zero-filled tail.
    // A file system that cannot reserve simply gets no reserve.
    if (::fallocate(fd_, FALLOC_FL_KEEP_SIZE, size_, kReserveBytes) == 0)
        reservedEnd_ = size_ + kReserveBytes;
#endif
}

Status DurableAppendFile::append(std::string_view bytes) {
    if (fd_ < 0) return fileError(path_, EBADF);
    while (!bytes.empty()) {
        const ssize_t written = ::write(fd_, bytes.data(), bytes.size());
        if (written < 0) {
            if (errno == EINTR) continue;
            return fileError(path_, errno);
        }
        size_ += written;
        dirty_ = true;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    if (reservedEnd_ - size_ < kReserveBytes / 4) reserveAhead();
    return Status::success();
}

Status DurableAppendFile::sync() {
    if (fd_ < 0) return fileError(path_, EBADF);
    if (!dirty_) return Status::success();
    if (syncFileData(fd_) != 0) return fileError(path_, errno);
    dirty_ = false;
    return Status::success();
}

void DurableAppendFile::close() {
    if (fd_ < 0) return;
#if defined(__linux__)
    // The reserve beyond the end is given back.
    if (reservedEnd_ > size_) (void)::ftruncate(fd_, size_);
#endif
    ::close(fd_);
    fd_ = -1;
}

}  // namespace kestrum

#include "base/files/FileOwnershipLock.h"

#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <cerrno>

namespace kestrum {

std::unique_ptr<FileOwnershipLock> FileOwnershipLock::tryAcquire(const QString& lockPath) {
    const QByteArray encoded = QFile::encodeName(lockPath);
    const int fd = ::open(encoded.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    if (fd < 0) return nullptr;
    int result = 0;
    do {
        result = ::flock(fd, LOCK_EX | LOCK_NB);
    } while (result != 0 && errno == EINTR);
    if (result != 0) {
        ::close(fd);
        return nullptr;
    }
    return std::unique_ptr<FileOwnershipLock>(new FileOwnershipLock(lockPath, fd));
}

FileOwnershipLock::~FileOwnershipLock() {
    if (fd_ >= 0) ::close(fd_);
}

void FileOwnershipLock::removeAndRelease() {
    if (fd_ < 0) return;
    QFile::remove(path_);
    ::close(fd_);
    fd_ = -1;
}

}  // namespace kestrum

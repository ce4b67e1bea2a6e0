#pragma once

#include <QString>

#include <memory>

namespace kestrum {

// An exclusive advisory lock (flock) on a lock file, held for as long as the object lives. The kernel
// drops it when its holder ends, however it ends (a crash, a kill, a power loss), so a lock file whose
// lock can be taken has no living owner: the files it guards are abandoned. Process ids say nothing of
// this, since the system hands them out again.
//
// Threads: any; one object is used by one thread at a time.
class FileOwnershipLock {
  public:
    // Creates the lock file when missing and takes its lock without waiting; null when another open
    // file description holds it (in this process or another) or when the file cannot be opened.
    static std::unique_ptr<FileOwnershipLock> tryAcquire(const QString& lockPath);

    ~FileOwnershipLock();
    FileOwnershipLock(const FileOwnershipLock&) = delete;
    FileOwnershipLock& operator=(const FileOwnershipLock&) = delete;

    const QString& path() const { return path_; }
    // Removes the lock file while still holding its lock, then lets the lock go: the end of the
    // ownership of files that are gone too. A lock file that cannot be removed only stays behind.
    void removeAndRelease();

  private:
    FileOwnershipLock(QString path, int fd) : path_(std::move(path)), fd_(fd) {}

    QString path_;
    int fd_ = -1;
};

}  // namespace kestrum

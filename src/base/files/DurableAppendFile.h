#pragma once

#include "base/common/Result.h"

#include <QString>

#include <cstdint>
#include <string_view>

namespace kestrum {

// An append-only file whose contents reach the disk when `sync` returns: the journals that let a
// recording survive a crash (a kill needs the bytes in the file, a power loss needs them on the disk).
//
// Space is reserved ahead of the appends (without growing the visible size), so that a journal keeps
// growing for a while on a disk that another writer has just filled. A failed append or sync reports
// the error; the bytes appended before it stay. The file is closed when the object goes.
//
// Threads: one thread at a time (the owner of the object); not synchronised.
class DurableAppendFile {
  public:
    // Bytes reserved ahead of the written end whenever the reserve runs low.
    static constexpr std::int64_t kReserveBytes = 1 << 20;

    DurableAppendFile() = default;
    ~DurableAppendFile();
    DurableAppendFile(const DurableAppendFile&) = delete;
    DurableAppendFile& operator=(const DurableAppendFile&) = delete;

    // Creates the file, or empties an existing one. An Error names the path and the system's reason.
    Status create(const QString& path);
    bool isOpen() const { return fd_ >= 0; }
    const QString& path() const { return path_; }

    // Appends all of `bytes` (a short write is retried); on failure the file may hold a prefix of them.
    Status append(std::string_view bytes);
    // Makes everything appended so far durable (fdatasync); a no-op when nothing was appended since.
    Status sync();
    // Bytes appended so far.
    std::int64_t size() const { return size_; }
    void close();

  private:
    void reserveAhead();

    QString path_;
    int fd_ = -1;
    std::int64_t size_ = 0;
    std::int64_t reservedEnd_ = 0;
    bool dirty_ = false;
};

// Makes the data written to `fd` durable (fdatasync; fsync where there is none); 0 or -1 with errno.
int syncFileData(int fd);

// The system's text for `errorNumber`, as "<path>: <reason>".
Error fileError(const QString& path, int errorNumber);

// Makes the folder entry of a file just created durable (fsync of its folder), so that a power loss
// does not take the file's name away with it. Failures are ignored: the file itself is still there.
void syncFolderOf(const QString& path);

}  // namespace kestrum

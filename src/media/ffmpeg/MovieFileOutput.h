#pragma once

#include "base/common/Result.h"

extern "C" {
#include <libavformat/avio.h>
}

#include <QString>

#include <cstdint>
#include <memory>

namespace kestrum::ffmpeg {

// The movie file under writing, as the muxer's output (a custom AVIOContext over a file descriptor of
// our own): the same bytes as libavformat's file output, plus what crash safety needs of it, a sync
// that puts everything written so far on the disk and the extent of the file that writes have reached.
//
// Thread: created on the writer's owning thread, then used by the muxer thread alone.
class MovieFileOutput {
  public:
    // Creates the file, or empties an existing one; its folder entry is made durable.
    static Result<std::unique_ptr<MovieFileOutput>> create(const QString& path);
    ~MovieFileOutput();
    MovieFileOutput(const MovieFileOutput&) = delete;
    MovieFileOutput& operator=(const MovieFileOutput&) = delete;

    AVIOContext* io() const { return io_; }
    // Hands the buffered bytes to the file and makes the file's data durable (fdatasync).
    Status sync();
    // The end of the bytes the file is known to hold, from its start: what the muxer's sequential
    // writes have reached, whether or not they are durable yet.
    std::int64_t writtenEnd() const { return writtenEnd_; }
    // Flushes and closes; the first error of the flush or the close, if any.
    Status close();

  private:
    MovieFileOutput(QString path, int fd) : path_(std::move(path)), fd_(fd) {}
    static int writePacket(void* opaque, std::uint8_t* buffer, int size);
    static std::int64_t seek(void* opaque, std::int64_t offset, int whence);

    QString path_;
    int fd_ = -1;
    AVIOContext* io_ = nullptr;
    std::int64_t position_ = 0;    // of the descriptor
    std::int64_t writtenEnd_ = 0;  // see writtenEnd()
};

}  // namespace kestrum::ffmpeg

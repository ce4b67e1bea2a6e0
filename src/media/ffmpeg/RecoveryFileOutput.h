#pragma once

#include "base/common/Result.h"

extern "C" {
#include <libavformat/avio.h>
}

#include <QString>

#include <cstdint>
#include <memory>
#include <string>

namespace kestrum::ffmpeg {

// The output of a muxer that rebuilds an unfinished movie in place (FfmpegMovieRecovery). The muxer
// replays the movie's packets with stand-in bytes of the same written size; this output lets the
// header and the index reach the file and keeps the stand-ins out of it, so the media data already in
// the file stays untouched. Writes land where the muxer's position says (positioned writes).
//
// A rehearsal output touches no file at all: it only follows the positions, so that a replay can be
// checked against the journal before anything is written. Every output keeps the first bytes written
// at the start of the file (the header) for comparison with the file's own.
//
// Thread: one, the recovery's.
class RecoveryFileOutput {
  public:
    enum class Mode { keep, discard };

    // An output that never writes.
    static Result<std::unique_ptr<RecoveryFileOutput>> rehearsal();
    // An output that writes into the existing file at `path` (never created, never emptied).
    static Result<std::unique_ptr<RecoveryFileOutput>> over(const QString& path);
    ~RecoveryFileOutput();
    RecoveryFileOutput(const RecoveryFileOutput&) = delete;
    RecoveryFileOutput& operator=(const RecoveryFileOutput&) = delete;

    AVIOContext* io() const { return io_; }
    // What the next bytes become: kept (written, when this output writes) or discarded. Buffered bytes
    // go out under the mode they were written in.
    void setMode(Mode mode);
    // The bytes written so far within the first `kHeaderBytes` of the file.
    const std::string& header() const { return header_; }
    // The first error a write met, or 0.
    int writeError() const { return writeError_; }
    // Flushes, cuts the file at `endPosition` and makes it durable. No-op for a rehearsal.
    Status finish(std::int64_t endPosition);

    static constexpr std::size_t kHeaderBytes = 4096;

  private:
    RecoveryFileOutput(QString path, int fd) : path_(std::move(path)), fd_(fd) {}
    Status attachContext();
    static int writePacket(void* opaque, std::uint8_t* buffer, int size);
    static std::int64_t seek(void* opaque, std::int64_t offset, int whence);

    QString path_;
    int fd_ = -1;  // -1 for a rehearsal
    AVIOContext* io_ = nullptr;
    Mode mode_ = Mode::keep;
    std::int64_t position_ = 0;
    std::int64_t end_ = 0;  // the furthest position written or skipped
    std::string header_;
    int writeError_ = 0;
};

}  // namespace kestrum::ffmpeg

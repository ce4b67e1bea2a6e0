#pragma once

#include "base/common/HostTime.h"
#include "base/common/Result.h"
#include "media/MovieWriter.h"

#include <atomic>
#include <mutex>
#include <optional>

namespace kestrum::ffmpeg {

// The state one writer shares with its inputs and its muxer thread: the status, the first failure and
// the session start. Every member is safe from any thread. The status only moves forward:
// unknown -> writing -> completed | failed | cancelled, and a final status is never replaced, so the
// first failure is the one reported.
class WriterState {
  public:
    MovieWriterStatus status() const { return status_.load(); }
    bool isWriting() const { return status() == MovieWriterStatus::writing; }
    std::optional<Error> error() const;

    // unknown -> writing.
    bool beginWriting();
    // writing -> completed; false when the writer had already failed or been cancelled.
    bool complete();
    // unknown | writing -> failed with `error`. True for the first failure only; later ones are dropped.
    bool fail(Error error);
    // unknown | writing -> cancelled.
    bool cancel();

    // The first call fixes movie time zero; later calls are ignored.
    void startSession(HostTimeNs sourceTimeNs);
    std::optional<HostTimeNs> sessionStart() const;

  private:
    bool transition(MovieWriterStatus from, MovieWriterStatus to);

    std::atomic<MovieWriterStatus> status_{MovieWriterStatus::unknown};
    mutable std::mutex errorMutex_;
    std::optional<Error> error_;  // guarded by errorMutex_
    std::atomic<bool> sessionStarted_{false};
    std::atomic<HostTimeNs> sessionStartNs_{0};  // valid once sessionStarted_ is true
    std::once_flag sessionOnce_;
};

}  // namespace kestrum::ffmpeg

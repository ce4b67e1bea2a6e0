#pragma once

#include "base/common/HostTime.h"
#include "base/common/Result.h"
#include "media/MovieOutputSettings.h"
#include "media/MovieWriterInput.h"

#include <QFuture>
#include <QString>

#include <memory>
#include <optional>

namespace kestrum {

// The raw values are those the capture log prints.
enum class MovieWriterStatus : int { unknown = 0, writing = 1, completed = 2, failed = 3, cancelled = 4 };

// A writer of one QuickTime movie: inputs are added in order (video, system audio, microphone) and
// become the movie's tracks in that order; `startWriting` opens the file; `startSession` fixes the host
// time that becomes movie time zero; `finishWriting` finalises. After the first failure every later
// write is a no-op and the status stays `failed` with the error.
//
// Threads: `addInput`, `startWriting`, `finishWriting` and `cancelWriting` run on the thread that owns
// the writer (the main thread); `startSession`, `status` and `error` are safe from any thread (the
// capture thread starts the session at its first frame).
class MovieWriter {
  public:
    virtual ~MovieWriter() = default;

    virtual QString outputPath() const = 0;
    virtual MovieWriterStatus status() const = 0;
    // The failure, once the status is `failed`; absent otherwise.
    virtual std::optional<Error> error() const = 0;

    // True when an input of these settings can be added now: before `startWriting`, at most one video
    // track, settings the encoders support.
    virtual bool canAddInput(const MovieInputSettings& settings) const = 0;
    // The new input, or null when `canAddInput` is false. The input stays valid after the writer is gone
    // (it then refuses every append).
    virtual std::shared_ptr<MovieWriterInput> addInput(const MovieInputSettings& settings) = 0;

    // Opens the encoders and the file and writes the container header. False with the status `failed`
    // and the error on any failure.
    virtual bool startWriting() = 0;
    // Movie time zero is this host time (CLOCK_MONOTONIC ns); samples before it are left out. Only the
    // first call counts.
    virtual void startSession(HostTimeNs sourceTimeNs) = 0;

    // Drains the inputs, flushes the encoders and writes the trailer on the writer's own thread. The
    // future completes when the status is `completed` or `failed`; it is awaitable with QCoro on the main
    // thread. A writer whose video input never received a frame fails here.
    virtual QFuture<void> finishWriting() = 0;
    // Stops every thread at once and leaves the partial file where it is; the status becomes `cancelled`.
    virtual void cancelWriting() = 0;
};

}  // namespace kestrum

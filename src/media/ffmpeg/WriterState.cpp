#include "media/ffmpeg/WriterState.h"

#include "base/log/CaptureLog.h"

namespace kestrum::ffmpeg {

std::optional<Error> WriterState::error() const {
    std::lock_guard lock(errorMutex_);
    return error_;
}

bool WriterState::transition(MovieWriterStatus from, MovieWriterStatus to) {
    return status_.compare_exchange_strong(from, to);
}

bool WriterState::beginWriting() {
    return transition(MovieWriterStatus::unknown, MovieWriterStatus::writing);
}

bool WriterState::complete() {
    return transition(MovieWriterStatus::writing, MovieWriterStatus::completed);
}

bool WriterState::fail(Error error) {
    {
        // The error is stored before the status flips so that a reader who sees `failed` finds it.
        std::lock_guard lock(errorMutex_);
        const MovieWriterStatus now = status_.load();
        if (now != MovieWriterStatus::unknown && now != MovieWriterStatus::writing) return false;
        if (error_) return false;
        error_ = error;
    }
    if (!transition(MovieWriterStatus::writing, MovieWriterStatus::failed) &&
        !transition(MovieWriterStatus::unknown, MovieWriterStatus::failed)) {
        // A cancel won the race: the cancelled status stands and the error is not reported.
        std::lock_guard lock(errorMutex_);
        error_.reset();
        return false;
    }
    logCaptureError(QStringLiteral("Movie writer failed: %1 %2: %3")
                        .arg(error.domain)
                        .arg(error.code)
                        .arg(error.description));
    return true;
}

bool WriterState::cancel() {
    return transition(MovieWriterStatus::writing, MovieWriterStatus::cancelled) ||
           transition(MovieWriterStatus::unknown, MovieWriterStatus::cancelled);
}

void WriterState::startSession(HostTimeNs sourceTimeNs) {
    std::call_once(sessionOnce_, [&] {
        sessionStartNs_.store(sourceTimeNs);
        sessionStarted_.store(true);
    });
}

std::optional<HostTimeNs> WriterState::sessionStart() const {
    if (!sessionStarted_.load()) return std::nullopt;
    return sessionStartNs_.load();
}

}  // namespace kestrum::ffmpeg

#pragma once

#include "base/common/Result.h"

#include <QString>

namespace kestrum::ffmpeg {

// Errors of the media layer. Failures that come from libav carry the domain "FFmpeg" and the AVERROR
// code; failures the writer detects itself carry the domain "Kestrum.MovieWriter" and one of these codes.
inline constexpr const char* kFfmpegErrorDomain = "FFmpeg";
inline constexpr const char* kWriterErrorDomain = "Kestrum.MovieWriter";

enum class WriterErrorCode : int {
    invalidOutputLocation = 1,
    noEncoder = 2,
    noVideoFrames = 3,
    notWriting = 4,
    // A movie journal that is missing, empty, or does not match its movie file.
    journalMismatch = 5,
};

// "<what>: <libav's text for the code>", domain "FFmpeg", code `averror`.
Error ffmpegError(int averror, const QString& what);
Error writerError(WriterErrorCode code, const QString& description);
// `error` with `underlying` as its cause.
Error withUnderlying(Error error, const Error& underlying);

}  // namespace kestrum::ffmpeg

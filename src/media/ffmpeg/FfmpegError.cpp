#include "media/ffmpeg/FfmpegError.h"

extern "C" {
#include <libavutil/error.h>
}

#include <memory>

namespace kestrum::ffmpeg {

Error ffmpegError(int averror, const QString& what) {
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(averror, text, sizeof text);
    return Error{QString::fromLatin1(kFfmpegErrorDomain), averror,
                 what + QStringLiteral(": ") + QString::fromUtf8(text), nullptr};
}

Error writerError(WriterErrorCode code, const QString& description) {
    return Error{QString::fromLatin1(kWriterErrorDomain), static_cast<int>(code), description, nullptr};
}

Error withUnderlying(Error error, const Error& underlying) {
    error.underlying = std::make_shared<const Error>(underlying);
    return error;
}

}  // namespace kestrum::ffmpeg

#include "media/ffmpeg/FfmpegMovieWriterFactory.h"

#include "media/ffmpeg/FfmpegMovieWriter.h"

namespace kestrum::ffmpeg {

Result<std::unique_ptr<MovieWriter>> FfmpegMovieWriterFactory::createWriter(
    const QString& path, MovieFileType /*fileType*/) const {
    // QuickTime is the only type there is; the parameter keeps the call shaped like the system's.
    return FfmpegMovieWriter::create(path, crashSafety_);
}

}  // namespace kestrum::ffmpeg

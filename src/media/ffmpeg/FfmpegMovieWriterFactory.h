#pragma once

#include "media/MovieWriterFactory.h"

namespace kestrum::ffmpeg {

// Makes FFmpeg writers of QuickTime movies.
class FfmpegMovieWriterFactory final : public MovieWriterFactory {
  public:
    Result<std::unique_ptr<MovieWriter>> createWriter(const QString& path,
                                                      MovieFileType fileType) const override;
};

}  // namespace kestrum::ffmpeg

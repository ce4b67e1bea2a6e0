#pragma once

#include "media/MovieWriterFactory.h"
#include "media/ffmpeg/FfmpegMuxer.h"

namespace kestrum::ffmpeg {

// Makes FFmpeg writers of QuickTime movies; the product's are journaled.
class FfmpegMovieWriterFactory final : public MovieWriterFactory {
  public:
    explicit FfmpegMovieWriterFactory(CrashSafety crashSafety = CrashSafety::journaled)
        : crashSafety_(crashSafety) {}

    Result<std::unique_ptr<MovieWriter>> createWriter(const QString& path,
                                                      MovieFileType fileType) const override;

  private:
    CrashSafety crashSafety_;
};

}  // namespace kestrum::ffmpeg

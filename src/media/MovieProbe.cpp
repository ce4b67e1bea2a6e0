#include "media/MovieProbe.h"

#include "media/ffmpeg/FfmpegInputFile.h"

#include <cmath>

namespace kestrum {

namespace {

constexpr double kDefaultAspectRatio = 16.0 / 9.0;

double durationOf(const AVFormatContext& context, const AVStream* video) {
    if (video != nullptr && video->duration != AV_NOPTS_VALUE) {
        const double seconds = static_cast<double>(video->duration) * av_q2d(video->time_base);
        if (std::isfinite(seconds) && seconds > 0) return seconds;
    }
    if (context.duration == AV_NOPTS_VALUE || context.duration < 0) return 0;
    return static_cast<double>(context.duration) / AV_TIME_BASE;
}

double aspectRatioOf(const AVStream* video) {
    if (video == nullptr) return kDefaultAspectRatio;
    const double width = video->codecpar->width;
    const double height = video->codecpar->height;
    const ffmpeg::DisplayTransform transform = ffmpeg::displayTransformOf(*video);
    // The bounding box of the natural rectangle under the display matrix.
    const double displayedWidth = std::abs(transform.a * width) + std::abs(transform.c * height);
    const double displayedHeight = std::abs(transform.b * width) + std::abs(transform.d * height);
    if (displayedWidth <= 0 || displayedHeight <= 0) return kDefaultAspectRatio;
    return displayedWidth / displayedHeight;
}

}  // namespace

std::optional<MovieMeasurement> measureMovie(const QString& path) {
    const ffmpeg::InputContextPtr context = ffmpeg::openInputFile(path);
    if (!context) return std::nullopt;
    const AVStream* video = ffmpeg::firstVideoStream(*context);
    return MovieMeasurement{durationOf(*context, video), aspectRatioOf(video)};
}

}  // namespace kestrum

#pragma once

extern "C" {
#include <libavformat/avformat.h>
}

#include <QString>

#include <memory>

namespace kestrum::ffmpeg {

struct InputContextDeleter {
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
};
using InputContextPtr = std::unique_ptr<AVFormatContext, InputContextDeleter>;

// Opens a media file for reading and reads its stream information; null when it is not readable.
InputContextPtr openInputFile(const QString& path);

// The first video stream that is a real track (not an attached cover picture), or null.
AVStream* firstVideoStream(AVFormatContext& context);

// The display matrix of a stream as a 2x2 linear map (a, b, c, d), row-vector convention:
// x' = a x + c y, y' = b x + d y. The identity when the stream has none.
struct DisplayTransform {
    double a = 1;
    double b = 0;
    double c = 0;
    double d = 1;
    // Clockwise rotation in degrees that shows the picture upright (0, 90, 180 or 270, or any angle).
    double clockwiseRotationDegrees = 0;
};
DisplayTransform displayTransformOf(const AVStream& stream);

}  // namespace kestrum::ffmpeg

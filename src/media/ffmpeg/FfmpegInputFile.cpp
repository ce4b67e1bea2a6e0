#include "media/ffmpeg/FfmpegInputFile.h"

extern "C" {
#include <libavutil/display.h>
}

#include <QFile>

#include <cmath>

namespace kestrum::ffmpeg {

InputContextPtr openInputFile(const QString& path) {
    AVFormatContext* context = nullptr;
    const QByteArray encodedPath = QFile::encodeName(path);
    if (avformat_open_input(&context, encodedPath.constData(), nullptr, nullptr) < 0) return nullptr;
    InputContextPtr owned(context);
    if (avformat_find_stream_info(context, nullptr) < 0) return nullptr;
    return owned;
}

AVStream* firstVideoStream(AVFormatContext& context) {
    for (unsigned index = 0; index < context.nb_streams; ++index) {
        AVStream* stream = context.streams[index];
        if (stream->codecpar->codec_type != AVMEDIA_TYPE_VIDEO) continue;
        if ((stream->disposition & AV_DISPOSITION_ATTACHED_PIC) != 0) continue;
        return stream;
    }
    return nullptr;
}

DisplayTransform displayTransformOf(const AVStream& stream) {
    DisplayTransform transform;
    std::size_t size = 0;
    const std::uint8_t* data = av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, &size);
    if (data == nullptr || size < 9 * sizeof(std::int32_t)) return transform;
    const auto* matrix = reinterpret_cast<const std::int32_t*>(data);
    // The first two columns are 16.16 fixed point.
    transform.a = matrix[0] / 65536.0;
    transform.b = matrix[1] / 65536.0;
    transform.c = matrix[3] / 65536.0;
    transform.d = matrix[4] / 65536.0;
    const double counterClockwise = av_display_rotation_get(matrix);
    if (std::isfinite(counterClockwise)) {
        double clockwise = std::fmod(-counterClockwise, 360.0);
        if (clockwise < 0) clockwise += 360.0;
        transform.clockwiseRotationDegrees = clockwise;
    }
    return transform;
}

}  // namespace kestrum::ffmpeg

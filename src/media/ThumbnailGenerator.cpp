#include "media/ThumbnailGenerator.h"

#include "media/ffmpeg/FfmpegInputFile.h"
#include "media/ffmpeg/FfmpegPointers.h"

#include <QBuffer>
#include <QTransform>

#include <algorithm>
#include <cmath>

namespace kestrum {

namespace {

using namespace kestrum::ffmpeg;

CodecContextPtr openDecoder(const AVStream& stream) {
    const AVCodec* codec = avcodec_find_decoder(stream.codecpar->codec_id);
    if (codec == nullptr) return nullptr;
    CodecContextPtr context(avcodec_alloc_context3(codec));
    if (!context || avcodec_parameters_to_context(context.get(), stream.codecpar) < 0) return nullptr;
    context->thread_count = 0;
    if (avcodec_open2(context.get(), codec, nullptr) < 0) return nullptr;
    return context;
}

// Decodes from the key frame before `targetSeconds` and keeps the frame nearest the target within the
// tolerance. Frames come in presentation order since the streams carry no reordering past the target
// window that matters here: the search stops at the first frame past the tolerance.
FramePtr decodeNearest(AVFormatContext& format, AVStream& stream, AVCodecContext& decoder,
                       double targetSeconds) {
    const double timeBase = av_q2d(stream.time_base);
    const std::int64_t start = stream.start_time == AV_NOPTS_VALUE ? 0 : stream.start_time;
    const auto secondsOf = [&](std::int64_t pts) { return static_cast<double>(pts - start) * timeBase; };
    const auto target = static_cast<std::int64_t>(std::llround(targetSeconds / timeBase)) + start;
    if (av_seek_frame(&format, stream.index, target, AVSEEK_FLAG_BACKWARD) < 0) {
        av_seek_frame(&format, stream.index, start, AVSEEK_FLAG_BACKWARD);
    }
    avcodec_flush_buffers(&decoder);
    FramePtr best;
    double bestDistance = ThumbnailGenerator::kToleranceSeconds;
    FramePtr frame(av_frame_alloc());
    PacketPtr packet(av_packet_alloc());
    bool draining = false;
    bool pastWindow = false;
    while (!pastWindow) {
        if (!draining) {
            const int read = av_read_frame(&format, packet.get());
            if (read < 0) {
                draining = true;
                avcodec_send_packet(&decoder, nullptr);
            } else {
                if (packet->stream_index == stream.index) avcodec_send_packet(&decoder, packet.get());
                av_packet_unref(packet.get());
            }
        }
        while (avcodec_receive_frame(&decoder, frame.get()) >= 0) {
            const double distance = secondsOf(frame->best_effort_timestamp) - targetSeconds;
            if (std::abs(distance) <= bestDistance) {
                bestDistance = std::abs(distance);
                best.reset(av_frame_clone(frame.get()));
            }
            av_frame_unref(frame.get());
            if (distance > ThumbnailGenerator::kToleranceSeconds) pastWindow = true;
        }
        if (draining) break;
    }
    return best;
}

// The frame as an upright image fitted into the box; scaling happens in libswscale before the
// rotation so that a large frame is never rotated at full size.
std::optional<QImage> toImage(const AVFrame& frame, double clockwiseDegrees) {
    const long quarterTurns = std::lround(clockwiseDegrees / 90.0);
    const bool swapsSides = quarterTurns % 2 != 0;
    const int boxWidth = swapsSides ? ThumbnailGenerator::kMaximumHeight : ThumbnailGenerator::kMaximumWidth;
    const int boxHeight = swapsSides ? ThumbnailGenerator::kMaximumWidth : ThumbnailGenerator::kMaximumHeight;
    const double scale = std::min(
        {1.0, static_cast<double>(boxWidth) / frame.width, static_cast<double>(boxHeight) / frame.height});
    const int width = std::max(1, static_cast<int>(std::lround(frame.width * scale)));
    const int height = std::max(1, static_cast<int>(std::lround(frame.height * scale)));
    SwsContextPtr scaler(sws_getContext(frame.width, frame.height, static_cast<AVPixelFormat>(frame.format),
                                        width, height, AV_PIX_FMT_BGRA, SWS_BICUBIC, nullptr, nullptr,
                                        nullptr));
    if (!scaler) return std::nullopt;
    QImage image(width, height, QImage::Format_ARGB32);
    std::uint8_t* planes[1] = {image.bits()};
    const int strides[1] = {static_cast<int>(image.bytesPerLine())};
    sws_scale(scaler.get(), frame.data, frame.linesize, 0, frame.height, planes, strides);
    if (std::abs(clockwiseDegrees) < 0.01 || std::abs(clockwiseDegrees - 360.0) < 0.01) return image;
    return image.transformed(QTransform().rotate(clockwiseDegrees), Qt::SmoothTransformation);
}

}  // namespace

std::optional<QImage> ThumbnailGenerator::imageAt(const QString& path, double timeSeconds) {
    const InputContextPtr format = openInputFile(path);
    if (!format) return std::nullopt;
    AVStream* stream = firstVideoStream(*format);
    if (stream == nullptr) return std::nullopt;
    const CodecContextPtr decoder = openDecoder(*stream);
    if (!decoder) return std::nullopt;
    const FramePtr frame = decodeNearest(*format, *stream, *decoder, std::max(0.0, timeSeconds));
    if (!frame) return std::nullopt;
    return toImage(*frame, displayTransformOf(*stream).clockwiseRotationDegrees);
}

QByteArray ThumbnailGenerator::encodePng(const QImage& image) {
    if (image.isNull()) return {};
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "PNG")) return {};
    return bytes;
}

}  // namespace kestrum

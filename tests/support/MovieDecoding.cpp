#include "support/MovieDecoding.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <QFile>

#include <algorithm>
#include <cmath>

namespace kestrum::test {

namespace {

struct DecoderSession {
    AVFormatContext* format = nullptr;
    AVCodecContext* decoder = nullptr;
    AVStream* stream = nullptr;
    ~DecoderSession() {
        avcodec_free_context(&decoder);
        avformat_close_input(&format);
    }
};

bool openDecoder(DecoderSession& session, const QString& path, AVMediaType type, int nth) {
    const QByteArray encoded = QFile::encodeName(path);
    if (avformat_open_input(&session.format, encoded.constData(), nullptr, nullptr) < 0) return false;
    if (avformat_find_stream_info(session.format, nullptr) < 0) return false;
    for (unsigned index = 0; index < session.format->nb_streams; ++index) {
        AVStream* stream = session.format->streams[index];
        if (stream->codecpar->codec_type == type && nth-- == 0) {
            session.stream = stream;
            break;
        }
    }
    if (session.stream == nullptr) return false;
    const AVCodec* codec = avcodec_find_decoder(session.stream->codecpar->codec_id);
    session.decoder = avcodec_alloc_context3(codec);
    if (avcodec_parameters_to_context(session.decoder, session.stream->codecpar) < 0) return false;
    return avcodec_open2(session.decoder, codec, nullptr) >= 0;
}

// Feeds every packet of the session's stream and hands each decoded frame to `onFrame`.
template <class OnFrame>
void decodeAll(DecoderSession& session, OnFrame onFrame) {
    AVPacket* packet = av_packet_alloc();
    AVFrame* frame = av_frame_alloc();
    const auto drain = [&] {
        while (avcodec_receive_frame(session.decoder, frame) >= 0) {
            onFrame(*frame);
            av_frame_unref(frame);
        }
    };
    while (av_read_frame(session.format, packet) >= 0) {
        if (packet->stream_index == session.stream->index) avcodec_send_packet(session.decoder, packet);
        av_packet_unref(packet);
        drain();
    }
    avcodec_send_packet(session.decoder, nullptr);
    drain();
    av_frame_free(&frame);
    av_packet_free(&packet);
}

}  // namespace

std::vector<DecodedFrame> decodeVideo(const QString& path) {
    DecoderSession session;
    std::vector<DecodedFrame> frames;
    if (!openDecoder(session, path, AVMEDIA_TYPE_VIDEO, 0)) return frames;
    const double timeBase = av_q2d(session.stream->time_base);
    decodeAll(session, [&](const AVFrame& frame) {
        double sum = 0;
        for (int y = 0; y < frame.height; ++y) {
            const std::uint8_t* row = frame.data[0] + static_cast<std::ptrdiff_t>(y) * frame.linesize[0];
            for (int x = 0; x < frame.width; ++x) sum += row[x];
        }
        frames.push_back({static_cast<double>(frame.best_effort_timestamp) * timeBase,
                          sum / (static_cast<double>(frame.width) * frame.height)});
    });
    std::sort(frames.begin(), frames.end(),
              [](const auto& a, const auto& b) { return a.seconds < b.seconds; });
    return frames;
}

std::optional<DecodedAudio> decodeAudio(const QString& path, int audioIndex) {
    DecoderSession session;
    if (!openDecoder(session, path, AVMEDIA_TYPE_AUDIO, audioIndex)) return std::nullopt;
    DecodedAudio audio;
    audio.sampleRate = session.decoder->sample_rate;
    const double timeBase = av_q2d(session.stream->time_base);
    bool first = true;
    decodeAll(session, [&](const AVFrame& frame) {
        if (first) audio.startSeconds = static_cast<double>(frame.best_effort_timestamp) * timeBase;
        first = false;
        const auto* channel = reinterpret_cast<const float*>(frame.extended_data[0]);
        audio.samples.insert(audio.samples.end(), channel, channel + frame.nb_samples);
    });
    return audio;
}

std::vector<double> soundOnsets(const DecodedAudio& audio, double threshold, double quietSeconds) {
    std::vector<double> onsets;
    const auto quietSamples = static_cast<std::int64_t>(quietSeconds * audio.sampleRate);
    std::int64_t lastLoud = -quietSamples - 1;
    for (std::int64_t index = 0; index < static_cast<std::int64_t>(audio.samples.size()); ++index) {
        if (std::abs(audio.samples[static_cast<std::size_t>(index)]) < threshold) continue;
        if (index - lastLoud > quietSamples) {
            onsets.push_back(audio.startSeconds + static_cast<double>(index) / audio.sampleRate);
        }
        lastLoud = index;
    }
    return onsets;
}

}  // namespace kestrum::test

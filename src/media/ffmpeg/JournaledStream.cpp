#include "media/ffmpeg/JournaledStream.h"

#include "media/ffmpeg/FfmpegError.h"

#include <cstring>
#include <functional>
#include <limits>
#include <map>

namespace kestrum::ffmpeg {

namespace {

// One number of a stream's description: how it is read from the stream and set on a new one.
struct Field {
    const char* name;
    std::function<std::int64_t(const AVStream&)> get;
    std::function<void(AVStream&, std::int64_t)> set;
};

template <class Member>
Field parameter(const char* name, Member AVCodecParameters::*member) {
    return {name,
            [member](const AVStream& stream) { return static_cast<std::int64_t>(stream.codecpar->*member); },
            [member](AVStream& stream, std::int64_t value) {
                stream.codecpar->*member = static_cast<Member>(value);
            }};
}

const std::vector<Field>& fields() {
    static const std::vector<Field> table{
        parameter("codecType", &AVCodecParameters::codec_type),
        parameter("codecID", &AVCodecParameters::codec_id),
        parameter("codecTag", &AVCodecParameters::codec_tag),
        parameter("format", &AVCodecParameters::format),
        parameter("bitRate", &AVCodecParameters::bit_rate),
        parameter("bitsPerCodedSample", &AVCodecParameters::bits_per_coded_sample),
        parameter("bitsPerRawSample", &AVCodecParameters::bits_per_raw_sample),
        parameter("profile", &AVCodecParameters::profile),
        parameter("level", &AVCodecParameters::level),
        parameter("width", &AVCodecParameters::width),
        parameter("height", &AVCodecParameters::height),
        {"sampleAspectNum",
         [](const AVStream& s) { return std::int64_t{s.codecpar->sample_aspect_ratio.num}; },
         [](AVStream& s, std::int64_t v) { s.codecpar->sample_aspect_ratio.num = static_cast<int>(v); }},
        {"sampleAspectDen",
         [](const AVStream& s) { return std::int64_t{s.codecpar->sample_aspect_ratio.den}; },
         [](AVStream& s, std::int64_t v) { s.codecpar->sample_aspect_ratio.den = static_cast<int>(v); }},
        parameter("fieldOrder", &AVCodecParameters::field_order),
        parameter("colorRange", &AVCodecParameters::color_range),
        parameter("colorPrimaries", &AVCodecParameters::color_primaries),
        parameter("colorTrc", &AVCodecParameters::color_trc),
        parameter("colorSpace", &AVCodecParameters::color_space),
        parameter("chromaLocation", &AVCodecParameters::chroma_location),
        parameter("videoDelay", &AVCodecParameters::video_delay),
        {"channelOrder", [](const AVStream& s) { return std::int64_t{s.codecpar->ch_layout.order}; },
         [](AVStream& s, std::int64_t v) { s.codecpar->ch_layout.order = static_cast<AVChannelOrder>(v); }},
        {"channelCount", [](const AVStream& s) { return std::int64_t{s.codecpar->ch_layout.nb_channels}; },
         [](AVStream& s, std::int64_t v) { s.codecpar->ch_layout.nb_channels = static_cast<int>(v); }},
        {"channelMask",
         [](const AVStream& s) {
             return s.codecpar->ch_layout.order == AV_CHANNEL_ORDER_NATIVE
                        ? static_cast<std::int64_t>(s.codecpar->ch_layout.u.mask)
                        : std::int64_t{0};
         },
         [](AVStream& s, std::int64_t v) {
             if (s.codecpar->ch_layout.order == AV_CHANNEL_ORDER_NATIVE)
                 s.codecpar->ch_layout.u.mask = static_cast<std::uint64_t>(v);
         }},
        parameter("sampleRate", &AVCodecParameters::sample_rate),
        parameter("blockAlign", &AVCodecParameters::block_align),
        parameter("frameSize", &AVCodecParameters::frame_size),
        parameter("initialPadding", &AVCodecParameters::initial_padding),
        parameter("trailingPadding", &AVCodecParameters::trailing_padding),
        parameter("seekPreroll", &AVCodecParameters::seek_preroll),
        {"timeBaseNum", [](const AVStream& s) { return std::int64_t{s.time_base.num}; },
         [](AVStream& s, std::int64_t v) { s.time_base.num = static_cast<int>(v); }},
        {"timeBaseDen", [](const AVStream& s) { return std::int64_t{s.time_base.den}; },
         [](AVStream& s, std::int64_t v) { s.time_base.den = static_cast<int>(v); }},
    };
    return table;
}

bool fitsInt(std::int64_t value) {
    return value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max();
}

Error trackError(const QString& what) {
    return writerError(WriterErrorCode::journalMismatch, QStringLiteral("The movie journal's track ") + what);
}

}  // namespace

MovieJournalTrack journalTrackOf(const AVStream& stream) {
    MovieJournalTrack track;
    for (const Field& field : fields()) track.parameters.emplace_back(field.name, field.get(stream));
    const AVCodecParameters& parameters = *stream.codecpar;
    if (parameters.extradata != nullptr && parameters.extradata_size > 0) {
        track.extradata.assign(reinterpret_cast<const char*>(parameters.extradata),
                               static_cast<std::size_t>(parameters.extradata_size));
    }
    return track;
}

Status applyJournalTrack(const MovieJournalTrack& track, AVStream& stream) {
    std::map<std::string, std::int64_t> values(track.parameters.begin(), track.parameters.end());
    // In table order: the channel layout's order comes before its mask, which it decides how to read.
    for (const Field& field : fields()) {
        const auto found = values.find(field.name);
        if (found == values.end()) return trackError(QStringLiteral("lacks ") + QLatin1String(field.name));
        const bool isWide =
            std::string_view(field.name) == "bitRate" || std::string_view(field.name) == "channelMask";
        if (!isWide && !fitsInt(found->second))
            return trackError(QStringLiteral("has an out-of-range ") + QLatin1String(field.name));
        field.set(stream, found->second);
    }
    const AVCodecParameters& parameters = *stream.codecpar;
    if (stream.time_base.num <= 0 || stream.time_base.den <= 0)
        return trackError(QStringLiteral("has no time base"));
    if (parameters.codec_type != AVMEDIA_TYPE_VIDEO && parameters.codec_type != AVMEDIA_TYPE_AUDIO)
        return trackError(QStringLiteral("is neither video nor sound"));
    if (!track.extradata.empty()) {
        auto* extradata =
            static_cast<std::uint8_t*>(av_mallocz(track.extradata.size() + AV_INPUT_BUFFER_PADDING_SIZE));
        if (extradata == nullptr) return ffmpegError(AVERROR(ENOMEM), QStringLiteral("Out of memory"));
        std::memcpy(extradata, track.extradata.data(), track.extradata.size());
        stream.codecpar->extradata = extradata;
        stream.codecpar->extradata_size = static_cast<int>(track.extradata.size());
    }
    return Status::success();
}

}  // namespace kestrum::ffmpeg

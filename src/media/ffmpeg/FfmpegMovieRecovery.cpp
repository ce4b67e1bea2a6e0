#include "media/ffmpeg/FfmpegMovieRecovery.h"

#include "media/MovieFileCheck.h"
#include "media/MovieJournal.h"
#include "media/MovieProbe.h"
#include "media/ffmpeg/FfmpegError.h"
#include "media/ffmpeg/FfmpegPointers.h"
#include "media/ffmpeg/JournaledStream.h"
#include "media/ffmpeg/RecoveryFileOutput.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cstring>
#include <memory>

namespace kestrum::ffmpeg {

namespace {

struct OutputContextDeleter {
    void operator()(AVFormatContext* context) const { avformat_free_context(context); }
};
using OutputContextPtr = std::unique_ptr<AVFormatContext, OutputContextDeleter>;

Error mismatch(const QString& what) {
    return writerError(WriterErrorCode::journalMismatch, what);
}

bool isSpaceError(int averror) {
    return averror == AVERROR(ENOSPC) || averror == AVERROR(EFBIG) || averror == AVERROR(EDQUOT);
}

// What the muxer is handed in place of a packet: bytes it writes as they are, in the same number as the
// journal holds. The muxer turns H.264 and HEVC packets whose global header is in Annex B form from
// start codes into 4-byte lengths: for those, one 4-byte start code and a filler free of start codes
// come out as one length-prefixed unit of the same size, and are written as they are otherwise too.
struct StandIn {
    bool startCodePrefixed = false;
    BufferRefPtr bytes;
};

bool mayHaveStartCodes(const AVCodecParameters& parameters) {
    return parameters.codec_id == AV_CODEC_ID_H264 || parameters.codec_id == AV_CODEC_ID_HEVC;
}

Result<std::vector<StandIn>> makeStandIns(const AVFormatContext& context, const MovieJournal& journal,
                                          std::size_t keep) {
    std::vector<std::uint32_t> largest(context.nb_streams, 0);
    for (std::size_t index = 0; index < keep; ++index) {
        const MovieJournalPacket& packet = journal.packets[index];
        largest[packet.track] = std::max(largest[packet.track], packet.size);
    }
    std::vector<StandIn> standIns(context.nb_streams);
    for (unsigned stream = 0; stream < context.nb_streams; ++stream) {
        StandIn& standIn = standIns[stream];
        standIn.startCodePrefixed = mayHaveStartCodes(*context.streams[stream]->codecpar);
        standIn.bytes.reset(av_buffer_allocz(largest[stream] + AV_INPUT_BUFFER_PADDING_SIZE));
        if (!standIn.bytes) return ffmpegError(AVERROR(ENOMEM), QStringLiteral("Out of memory"));
        if (standIn.startCodePrefixed && largest[stream] > 4) {
            std::memset(standIn.bytes->data + 4, 0xFF, largest[stream] - 4);
            standIn.bytes->data[3] = 1;
        }
    }
    return standIns;
}

Result<OutputContextPtr> makeMuxer(const MovieJournal& journal, AVIOContext* io) {
    AVFormatContext* raw = nullptr;
    const int result = avformat_alloc_output_context2(&raw, nullptr, "mov", "rebuilt.mov");
    if (result < 0 || raw == nullptr)
        return ffmpegError(result < 0 ? result : AVERROR_MUXER_NOT_FOUND,
                           QStringLiteral("No QuickTime muxer"));
    OutputContextPtr context(raw);
    for (const MovieJournalTrack& track : journal.tracks) {
        AVStream* stream = avformat_new_stream(context.get(), nullptr);
        if (stream == nullptr) return ffmpegError(AVERROR(ENOMEM), QStringLiteral("Out of memory"));
        const Status applied = applyJournalTrack(track, *stream);
        if (!applied.ok()) return applied.error();
    }
    context->pb = io;
    context->flags |= AVFMT_FLAG_CUSTOM_IO;
    return context;
}

// The muxer writes H.264 and HEVC packets as chains of units, each behind its 4-byte length: every
// such packet the journal names must be exactly one chain in the file. A journal of another movie, or
// media data that is not what the journal says, fails here before anything is written.
Status checkUnitChains(const QString& moviePath, const MovieJournal& journal, std::size_t keep,
                       const AVFormatContext& context) {
    QFile file(moviePath);
    if (!file.open(QIODevice::ReadOnly)) return mismatch(QStringLiteral("The movie file could not be read."));
    const qint64 fileSize = file.size();
    const uchar* bytes = file.map(0, fileSize);
    if (bytes == nullptr) return mismatch(QStringLiteral("The movie file could not be read."));
    for (std::size_t index = 0; index < keep; ++index) {
        const MovieJournalPacket& packet = journal.packets[index];
        if (!mayHaveStartCodes(*context.streams[packet.track]->codecpar)) continue;
        const std::int64_t end = packet.fileOffset + static_cast<std::int64_t>(packet.size);
        std::int64_t at = packet.fileOffset;
        while (at + 4 <= end) {
            const std::int64_t length = (std::int64_t{bytes[at]} << 24) |
                                        (std::int64_t{bytes[at + 1]} << 16) |
                                        (std::int64_t{bytes[at + 2]} << 8) | std::int64_t{bytes[at + 3]};
            at += 4 + length;
        }
        if (at != end) return mismatch(QStringLiteral("The movie's data does not match its journal."));
    }
    return Status::success();
}

// One replay of the first `keep` packets into `output`; gives the end of the index it wrote. A rehearsal
// (`checkedAgainst` set) first checks the packets' data in the file.
Result<std::int64_t> replay(const MovieJournal& journal, std::size_t keep, RecoveryFileOutput& output,
                            const std::optional<QString>& checkedAgainst = std::nullopt) {
    Result<OutputContextPtr> made = makeMuxer(journal, output.io());
    if (!made.ok()) return made.error();
    AVFormatContext& context = *made.value();
    if (checkedAgainst) {
        const Status checked = checkUnitChains(*checkedAgainst, journal, keep, context);
        if (!checked.ok()) return checked.error();
    }
    output.setMode(RecoveryFileOutput::Mode::keep);
    int result = avformat_write_header(&context, nullptr);
    if (result < 0) return ffmpegError(result, QStringLiteral("Could not write the movie header"));
    Result<std::vector<StandIn>> standIns = makeStandIns(context, journal, keep);
    if (!standIns.ok()) return standIns.error();
    output.setMode(RecoveryFileOutput::Mode::discard);
    if (keep > 0 && avio_tell(context.pb) != journal.packets.front().fileOffset)
        return mismatch(QStringLiteral("The movie's header does not match its journal."));
    PacketPtr packet(av_packet_alloc());
    if (!packet) return ffmpegError(AVERROR(ENOMEM), QStringLiteral("Out of memory"));
    for (std::size_t index = 0; index < keep; ++index) {
        const MovieJournalPacket& noted = journal.packets[index];
        const StandIn& standIn = standIns.value()[noted.track];
        if (standIn.startCodePrefixed && noted.size < 5)
            return mismatch(QStringLiteral("A packet of the journal is too small for its track."));
        packet->buf = av_buffer_ref(standIn.bytes.get());
        if (packet->buf == nullptr) return ffmpegError(AVERROR(ENOMEM), QStringLiteral("Out of memory"));
        packet->data = packet->buf->data;
        packet->size = static_cast<int>(noted.size);
        packet->stream_index = noted.track;
        packet->pts = noted.pts;
        packet->dts = noted.dts;
        packet->duration = noted.duration;
        packet->flags = noted.isKeyFrame ? AV_PKT_FLAG_KEY : 0;
        result = av_write_frame(&context, packet.get());
        av_packet_unref(packet.get());
        if (result < 0) return ffmpegError(result, QStringLiteral("Could not replay the movie's packets"));
        if (avio_tell(context.pb) != noted.fileOffset + static_cast<std::int64_t>(noted.size))
            return mismatch(QStringLiteral("A packet of the journal is not where the movie holds it."));
    }
    output.setMode(RecoveryFileOutput::Mode::keep);
    result = av_write_trailer(&context);
    const std::int64_t end = avio_tell(context.pb);
    avio_flush(context.pb);
    if (result >= 0 && output.writeError() != 0) result = output.writeError();
    if (result < 0) return ffmpegError(result, QStringLiteral("Could not write the movie's index"));
    return end;
}

// The packets the file holds whole, one after the other from the first: a journal never vouches for
// more, but a file cut shorter since (or a gap) ends what can be used.
std::size_t usablePackets(const MovieJournal& journal, std::int64_t fileSize) {
    std::size_t count = 0;
    for (const MovieJournalPacket& packet : journal.packets) {
        const std::int64_t end = packet.fileOffset + static_cast<std::int64_t>(packet.size);
        if (end > fileSize) break;
        if (count > 0) {
            const MovieJournalPacket& previous = journal.packets[count - 1];
            if (packet.fileOffset != previous.fileOffset + static_cast<std::int64_t>(previous.size)) break;
        }
        ++count;
    }
    return count;
}

// Seconds of picture in the first `keep` packets: from the earliest start to the latest end of the
// video track's packets.
double heldSeconds(const MovieJournal& journal, std::size_t keep) {
    std::optional<std::int64_t> first;
    std::optional<std::int64_t> last;
    std::optional<std::size_t> videoTrack;
    for (std::size_t track = 0; track < journal.tracks.size() && !videoTrack; ++track) {
        for (const auto& [name, value] : journal.tracks[track].parameters) {
            if (name == "codecType" && value == AVMEDIA_TYPE_VIDEO) videoTrack = track;
        }
    }
    AVRational timeBase{1, 90000};
    if (videoTrack) {
        for (const auto& [name, value] : journal.tracks[*videoTrack].parameters) {
            if (name == "timeBaseNum") timeBase.num = static_cast<int>(value);
            if (name == "timeBaseDen") timeBase.den = static_cast<int>(value);
        }
    }
    for (std::size_t index = 0; index < keep; ++index) {
        const MovieJournalPacket& packet = journal.packets[index];
        if (!videoTrack || packet.track != *videoTrack) continue;
        first = std::min(first.value_or(packet.pts), packet.pts);
        last = std::max(last.value_or(packet.pts + packet.duration), packet.pts + packet.duration);
    }
    if (!first || timeBase.den <= 0) return 0;
    return static_cast<double>(*last - *first) * timeBase.num / timeBase.den;
}

Result<MovieJournal> readJournal(const QString& moviePath) {
    QFile file(movieJournalPath(moviePath));
    if (!file.open(QIODevice::ReadOnly))
        return mismatch(QStringLiteral("The movie has no journal to rebuild it from."));
    const QByteArray bytes = file.readAll();
    return decodeMovieJournal(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

Status checkHeader(const QString& moviePath, const std::string& rehearsed, std::int64_t headerEnd) {
    // The index's patch of the media data's size (and a 64-bit size in place of the placeholder before
    // it) may already be in the file: the last 16 bytes of the header may differ, nothing before.
    const std::int64_t compared = std::max<std::int64_t>(0, headerEnd - 16);
    QFile file(moviePath);
    if (!file.open(QIODevice::ReadOnly)) return mismatch(QStringLiteral("The movie file could not be read."));
    const QByteArray head = file.read(compared);
    if (head.size() != compared || static_cast<std::int64_t>(rehearsed.size()) < compared ||
        std::memcmp(head.constData(), rehearsed.data(), static_cast<std::size_t>(compared)) != 0) {
        return mismatch(QStringLiteral("The movie's header does not match its journal."));
    }
    return Status::success();
}

}  // namespace

Result<RecoveredMovie> FfmpegMovieRecovery::recover(const QString& moviePath) const {
    if (!movieFileDamage(moviePath)) {
        const std::optional<MovieMeasurement> measured = measureMovie(moviePath);
        if (measured) return RecoveredMovie{measured->durationSeconds, true, 0, 0};
    }
    Result<MovieJournal> journal = readJournal(moviePath);
    if (!journal.ok()) return journal.error();
    const std::int64_t fileSize = QFileInfo(moviePath).size();
    const std::size_t usable = usablePackets(journal.value(), fileSize);
    if (journal.value().tracks.empty() || heldSeconds(journal.value(), usable) <= 0)
        return mismatch(QStringLiteral("The movie's journal holds no picture."));

    Result<std::unique_ptr<RecoveryFileOutput>> rehearsal = RecoveryFileOutput::rehearsal();
    if (!rehearsal.ok()) return rehearsal.error();
    const Result<std::int64_t> rehearsed = replay(journal.value(), usable, *rehearsal.value(), moviePath);
    if (!rehearsed.ok()) return rehearsed.error();
    const Status header =
        checkHeader(moviePath, rehearsal.value()->header(), journal.value().packets.front().fileOffset);
    if (!header.ok()) return header.error();

    // Where the index does not fit after the last packet (a full disk), it takes the place of the last
    // packets within the file's own size.
    const std::int64_t lastEnd =
        journal.value().packets[usable - 1].fileOffset + journal.value().packets[usable - 1].size;
    const std::int64_t indexBytes = rehearsed.value() - lastEnd;
    std::vector<std::size_t> attempts{usable};
    std::size_t fitting = usable;
    while (fitting > 0 && journal.value().packets[fitting - 1].fileOffset +
                                  static_cast<std::int64_t>(journal.value().packets[fitting - 1].size) +
                                  indexBytes >
                              fileSize)
        --fitting;
    if (fitting < usable && heldSeconds(journal.value(), fitting) > 0) attempts.push_back(fitting);

    Error lastError = mismatch(QStringLiteral("The movie could not be rebuilt."));
    for (const std::size_t keep : attempts) {
        Result<std::unique_ptr<RecoveryFileOutput>> output = RecoveryFileOutput::over(moviePath);
        if (!output.ok()) return output.error();
        const Result<std::int64_t> written = replay(journal.value(), keep, *output.value());
        Status finished = written.ok() ? output.value()->finish(written.value()) : Status(written.error());
        if (finished.ok()) {
            return RecoveredMovie{heldSeconds(journal.value(), keep), false, static_cast<std::int64_t>(keep),
                                  static_cast<std::int64_t>(journal.value().packets.size() - keep)};
        }
        lastError = finished.error();
        if (!isSpaceError(lastError.code)) break;
    }
    return lastError;
}

}  // namespace kestrum::ffmpeg

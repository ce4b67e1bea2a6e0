#include "media/MovieJournal.h"

#include <array>
#include <cstring>
#include <type_traits>

namespace kestrum {

namespace {

constexpr std::string_view kMagic = "KSTMJNL1";
constexpr std::uint8_t kTrackRecord = 1;
constexpr std::uint8_t kPacketsRecord = 2;
constexpr std::size_t kPacketBytes = 38;
constexpr std::size_t kMaxNameBytes = 64;
// Larger than any record this system writes (a second of packets, a codec header); a length above it
// is damage, not data.
constexpr std::uint32_t kMaxPayloadBytes = 64u << 20;
constexpr std::uint8_t kKeyFrameFlag = 1;

constexpr std::array<std::uint32_t, 256> makeCrcTable() {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t index = 0; index < 256; ++index) {
        std::uint32_t value = index;
        for (int bit = 0; bit < 8; ++bit) value = (value & 1) != 0 ? 0xEDB88320u ^ (value >> 1) : value >> 1;
        table[index] = value;
    }
    return table;
}

template <class Integer>
void put(std::string& out, Integer value) {
    using Unsigned = std::make_unsigned_t<Integer>;
    auto bits = static_cast<Unsigned>(value);
    for (std::size_t byte = 0; byte < sizeof(Integer); ++byte) {
        out.push_back(static_cast<char>(bits & 0xFF));
        bits = static_cast<Unsigned>(bits >> 8);
    }
}

// Reads little-endian integers from a payload; every read past the end fails and leaves `ok` false.
class Reader {
  public:
    explicit Reader(std::string_view bytes) : bytes_(bytes) {}

    template <class Integer>
    Integer get() {
        using Unsigned = std::make_unsigned_t<Integer>;
        if (bytes_.size() < sizeof(Integer)) {
            ok_ = false;
            return 0;
        }
        Unsigned bits = 0;
        for (std::size_t byte = 0; byte < sizeof(Integer); ++byte)
            bits |= static_cast<Unsigned>(static_cast<Unsigned>(static_cast<std::uint8_t>(bytes_[byte]))
                                          << (8 * byte));
        bytes_.remove_prefix(sizeof(Integer));
        return static_cast<Integer>(bits);
    }
    std::string_view take(std::size_t count) {
        if (bytes_.size() < count) {
            ok_ = false;
            return {};
        }
        const std::string_view taken = bytes_.substr(0, count);
        bytes_.remove_prefix(count);
        return taken;
    }
    bool ok() const { return ok_; }
    bool atEnd() const { return bytes_.empty(); }

  private:
    std::string_view bytes_;
    bool ok_ = true;
};

bool isValidName(std::string_view name) {
    if (name.empty() || name.size() > kMaxNameBytes) return false;
    for (const char c : name) {
        const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
        if (!plain) return false;
    }
    return true;
}

std::string record(std::uint8_t type, std::string_view payload) {
    std::string out;
    out.reserve(payload.size() + 9);
    put<std::uint32_t>(out, static_cast<std::uint32_t>(payload.size()));
    const std::size_t checkedFrom = out.size();
    out.push_back(static_cast<char>(type));
    out.append(payload);
    put<std::uint32_t>(out, movieJournalChecksum(std::string_view(out).substr(checkedFrom)));
    return out;
}

Error journalError(const QString& what) {
    return Error{QStringLiteral("Kestrum.MovieJournal"), 1, QStringLiteral("Movie journal: ") + what,
                 nullptr};
}

Result<MovieJournalTrack> decodeTrack(std::string_view payload) {
    Reader reader(payload);
    MovieJournalTrack track;
    const auto count = reader.get<std::uint16_t>();
    for (std::uint16_t index = 0; index < count && reader.ok(); ++index) {
        const auto length = reader.get<std::uint8_t>();
        const std::string_view name = reader.take(length);
        const auto value = reader.get<std::int64_t>();
        if (reader.ok() && !isValidName(name))
            return journalError(QStringLiteral("a parameter name is invalid"));
        track.parameters.emplace_back(name, value);
    }
    const auto extradataBytes = reader.get<std::uint32_t>();
    track.extradata = std::string(reader.take(extradataBytes));
    if (!reader.ok() || !reader.atEnd()) return journalError(QStringLiteral("a track record is malformed"));
    return track;
}

Status decodePackets(std::string_view payload, std::size_t trackCount, std::vector<MovieJournalPacket>& out) {
    Reader reader(payload);
    const auto count = reader.get<std::uint32_t>();
    if (!reader.ok() || payload.size() - 4 != static_cast<std::size_t>(count) * kPacketBytes)
        return journalError(QStringLiteral("a packet record has the wrong length"));
    for (std::uint32_t index = 0; index < count; ++index) {
        MovieJournalPacket packet;
        packet.track = reader.get<std::uint8_t>();
        const auto flags = reader.get<std::uint8_t>();
        packet.isKeyFrame = (flags & kKeyFrameFlag) != 0;
        packet.fileOffset = reader.get<std::int64_t>();
        packet.size = reader.get<std::uint32_t>();
        packet.pts = reader.get<std::int64_t>();
        packet.dts = reader.get<std::int64_t>();
        packet.duration = reader.get<std::int64_t>();
        if (packet.track >= trackCount) return journalError(QStringLiteral("a packet names no known track"));
        if ((flags & ~kKeyFrameFlag) != 0 || packet.fileOffset < 0 || packet.size == 0 || packet.duration < 0)
            return journalError(QStringLiteral("a packet is malformed"));
        out.push_back(packet);
    }
    return Status::success();
}

}  // namespace

std::uint32_t movieJournalChecksum(std::string_view bytes) {
    static constexpr std::array<std::uint32_t, 256> table = makeCrcTable();
    std::uint32_t crc = 0xFFFFFFFFu;
    for (const char byte : bytes) crc = table[(crc ^ static_cast<std::uint8_t>(byte)) & 0xFF] ^ (crc >> 8);
    return crc ^ 0xFFFFFFFFu;
}

QString movieJournalPath(const QString& moviePath) {
    return moviePath + QStringLiteral(".journal");
}

std::string encodeMovieJournalStart() {
    return std::string(kMagic);
}

Result<std::string> encodeMovieJournalTrack(const MovieJournalTrack& track) {
    if (track.parameters.size() > 0xFFFF || track.extradata.size() > kMaxPayloadBytes / 2)
        return journalError(QStringLiteral("a track description is too large"));
    std::string payload;
    put<std::uint16_t>(payload, static_cast<std::uint16_t>(track.parameters.size()));
    for (const auto& [name, value] : track.parameters) {
        if (!isValidName(name)) return journalError(QStringLiteral("a parameter name is invalid"));
        put<std::uint8_t>(payload, static_cast<std::uint8_t>(name.size()));
        payload.append(name);
        put<std::int64_t>(payload, value);
    }
    put<std::uint32_t>(payload, static_cast<std::uint32_t>(track.extradata.size()));
    payload.append(track.extradata);
    return record(kTrackRecord, payload);
}

std::string encodeMovieJournalPackets(std::span<const MovieJournalPacket> packets) {
    std::string payload;
    payload.reserve(4 + packets.size() * kPacketBytes);
    put<std::uint32_t>(payload, static_cast<std::uint32_t>(packets.size()));
    for (const MovieJournalPacket& packet : packets) {
        put<std::uint8_t>(payload, packet.track);
        put<std::uint8_t>(payload, packet.isKeyFrame ? kKeyFrameFlag : 0);
        put<std::int64_t>(payload, packet.fileOffset);
        put<std::uint32_t>(payload, packet.size);
        put<std::int64_t>(payload, packet.pts);
        put<std::int64_t>(payload, packet.dts);
        put<std::int64_t>(payload, packet.duration);
    }
    return record(kPacketsRecord, payload);
}

Result<MovieJournal> decodeMovieJournal(std::string_view bytes) {
    if (bytes.substr(0, kMagic.size()) != kMagic) return journalError(QStringLiteral("not a movie journal"));
    MovieJournal journal;
    std::size_t at = kMagic.size();
    journal.validBytes = at;
    while (bytes.size() - at >= 9) {
        Reader header(bytes.substr(at, 4));
        const auto length = header.get<std::uint32_t>();
        if (length > kMaxPayloadBytes || bytes.size() - at - 9 < length) break;  // cut short
        const std::string_view checked = bytes.substr(at + 4, 1 + std::size_t{length});
        Reader trailer(bytes.substr(at + 5 + length, 4));
        if (trailer.get<std::uint32_t>() != movieJournalChecksum(checked)) break;  // torn or damaged: the end
        const auto type = static_cast<std::uint8_t>(checked.front());
        const std::string_view payload = checked.substr(1);
        if (type == kTrackRecord) {
            if (!journal.packets.empty())
                return journalError(QStringLiteral("a track is described after its packets"));
            Result<MovieJournalTrack> track = decodeTrack(payload);
            if (!track.ok()) return track.error();
            if (journal.tracks.size() >= 0xFF) return journalError(QStringLiteral("too many tracks"));
            journal.tracks.push_back(std::move(track).value());
        } else if (type == kPacketsRecord) {
            const Status decoded = decodePackets(payload, journal.tracks.size(), journal.packets);
            if (!decoded.ok()) return decoded.error();
        } else {
            return journalError(QStringLiteral("a record of an unknown type"));
        }
        at += 9 + std::size_t{length};
        journal.validBytes = at;
    }
    return journal;
}

}  // namespace kestrum

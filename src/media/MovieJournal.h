#pragma once

#include "base/common/Result.h"

#include <QString>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kestrum {

// The journal of a movie under writing: what a reader needs to rebuild the movie's index when the
// writer never wrote it (a crash, a kill, a power loss, a full disk). It holds each track's codec
// description and, for every packet whose bytes are in the movie file, where they lie and when they
// play. The movie file itself holds the media data; the journal lies beside it.
//
// Binary form, little-endian: the 8 bytes "KSTMJNL1", then records of
//   u32 payload length, u8 type, payload, u32 CRC-32 (IEEE) of the type byte and the payload.
// Type 1, a track (one per track, in track order, before any packet):
//   u16 parameter count, then per parameter: u8 name length (1 to 64), name (ASCII letters and
//   digits), i64 value; then u32 extradata length and the extradata.
// Type 2, packets: u32 count, then per packet 38 bytes: u8 track, u8 flags (bit 0: key frame),
//   i64 file offset, u32 size, i64 pts, i64 dts, i64 duration (the last three in the track's time base).
// The writer appends and syncs whole records; a crash can only leave the last one cut short, which a
// reader drops (its length or checksum does not hold), as it drops everything after a broken record.

struct MovieJournalTrack {
    // The named numbers that describe the track's stream (codec, sizes, rates, time base...).
    std::vector<std::pair<std::string, std::int64_t>> parameters;
    // The codec's global header, as the muxer was given it.
    std::string extradata;

    friend bool operator==(const MovieJournalTrack&, const MovieJournalTrack&) = default;
};

struct MovieJournalPacket {
    std::uint8_t track = 0;
    bool isKeyFrame = false;
    std::int64_t fileOffset = 0;  // bytes from the start of the movie file
    std::uint32_t size = 0;       // bytes in the movie file
    std::int64_t pts = 0;
    std::int64_t dts = 0;
    std::int64_t duration = 0;

    friend bool operator==(const MovieJournalPacket&, const MovieJournalPacket&) = default;
};

struct MovieJournal {
    std::vector<MovieJournalTrack> tracks;
    std::vector<MovieJournalPacket> packets;  // in the order they were written
    // Bytes of the input that held whole, valid records; a torn tail lies beyond.
    std::size_t validBytes = 0;

    friend bool operator==(const MovieJournal&, const MovieJournal&) = default;
};

// The journal of the movie at `moviePath`: the same path with ".journal" appended.
QString movieJournalPath(const QString& moviePath);

// The start of every journal.
std::string encodeMovieJournalStart();
// One track record; an Error for a parameter name outside the form above.
Result<std::string> encodeMovieJournalTrack(const MovieJournalTrack& track);
// One record of packets.
std::string encodeMovieJournalPackets(std::span<const MovieJournalPacket> packets);

// The checksum of a record: CRC-32 (IEEE 802.3) of its type byte and payload.
std::uint32_t movieJournalChecksum(std::string_view bytes);

// Reads a journal. Fails when the start is missing or a whole, checksummed record breaks the form
// (something other than this system wrote it); a record cut short, or one whose checksum fails, ends
// the journal there with what came before. A pure function, safe on any thread.
Result<MovieJournal> decodeMovieJournal(std::string_view bytes);

}  // namespace kestrum

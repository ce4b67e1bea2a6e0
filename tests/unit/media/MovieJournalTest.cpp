// The movie journal's binary form: what a crash can leave of it, and what it must refuse.
#include "media/MovieJournal.h"

#include <gtest/gtest.h>

#include <functional>

namespace kestrum {
namespace {

MovieJournalTrack videoTrack() {
    return {{{"codecType", 0}, {"codecID", 173}, {"width", 1280}, {"timeBaseDen", 90000}},
            std::string("\0\0\0\1\x40\x01", 6)};
}

MovieJournalTrack soundTrack() {
    return {{{"codecType", 1}, {"sampleRate", 48000}, {"bitRate", 192000}}, std::string("\x11\x90", 2)};
}

std::vector<MovieJournalPacket> packets(int count, std::int64_t firstOffset = 48) {
    std::vector<MovieJournalPacket> made;
    std::int64_t offset = firstOffset;
    for (int index = 0; index < count; ++index) {
        const auto size = static_cast<std::uint32_t>(1000 + index * 37);
        made.push_back({static_cast<std::uint8_t>(index % 2), index % 5 == 0, offset, size, index * 3000LL,
                        index * 3000LL - 1024, 3000});
        offset += size;
    }
    return made;
}

std::string encode(const std::vector<MovieJournalTrack>& tracks,
                   const std::vector<std::vector<MovieJournalPacket>>& batches) {
    std::string bytes = encodeMovieJournalStart();
    for (const MovieJournalTrack& track : tracks) bytes += encodeMovieJournalTrack(track).value();
    for (const auto& batch : batches) bytes += encodeMovieJournalPackets(batch);
    return bytes;
}

TEST(MovieJournal, ReadsBackWhatWasWritten) {
    const std::vector<MovieJournalPacket> all = packets(9);
    const std::string bytes = encode({videoTrack(), soundTrack()},
                                     {{all.begin(), all.begin() + 4}, {}, {all.begin() + 4, all.end()}});
    const Result<MovieJournal> journal = decodeMovieJournal(bytes);
    ASSERT_TRUE(journal.ok()) << journal.error().description.toStdString();
    EXPECT_EQ(journal.value().tracks, (std::vector<MovieJournalTrack>{videoTrack(), soundTrack()}));
    EXPECT_EQ(journal.value().packets, all);
    EXPECT_EQ(journal.value().validBytes, bytes.size());
}

TEST(MovieJournal, AJournalCutAnywhereKeepsItsWholeRecords) {
    // A crash can stop the journal at any byte: what is read is always a prefix of what was written,
    // and only the record the cut falls into is lost.
    const std::vector<MovieJournalPacket> all = packets(6);
    const std::vector<std::vector<MovieJournalPacket>> batches{
        {all[0], all[1]}, {all[2]}, {all[3], all[4], all[5]}};
    const std::string bytes = encode({videoTrack(), soundTrack()}, batches);
    std::vector<std::size_t> recordEnds{encodeMovieJournalStart().size()};
    for (const auto& track : {videoTrack(), soundTrack()})
        recordEnds.push_back(recordEnds.back() + encodeMovieJournalTrack(track).value().size());
    std::vector<std::size_t> packetsAtEnd{0, 0, 0};
    for (const auto& batch : batches) {
        recordEnds.push_back(recordEnds.back() + encodeMovieJournalPackets(batch).size());
        packetsAtEnd.push_back(packetsAtEnd.back() + batch.size());
    }
    for (std::size_t cut = recordEnds.front(); cut <= bytes.size(); ++cut) {
        SCOPED_TRACE(cut);
        const Result<MovieJournal> journal = decodeMovieJournal(std::string_view(bytes).substr(0, cut));
        ASSERT_TRUE(journal.ok());
        std::size_t whole = 0;
        while (whole + 1 < recordEnds.size() && recordEnds[whole + 1] <= cut) ++whole;
        EXPECT_EQ(journal.value().validBytes, recordEnds[whole]);
        EXPECT_EQ(journal.value().tracks.size(), std::min<std::size_t>(whole, 2));
        const std::vector<MovieJournalPacket> expected(all.begin(),
                                                       all.begin() + static_cast<long>(packetsAtEnd[whole]));
        EXPECT_EQ(journal.value().packets, expected);
    }
}

TEST(MovieJournal, ADamagedRecordEndsTheJournalThere) {
    const std::vector<MovieJournalPacket> all = packets(4);
    std::string bytes = encode({videoTrack(), soundTrack()}, {{all[0], all[1]}, {all[2], all[3]}});
    bytes[bytes.size() - 20] ^= 0x40;  // inside the last record: its checksum no longer holds
    const Result<MovieJournal> journal = decodeMovieJournal(bytes);
    ASSERT_TRUE(journal.ok());
    EXPECT_EQ(journal.value().packets, (std::vector<MovieJournalPacket>{all[0], all[1]}));
}

// A record of `type` with a correct checksum around `payload`.
std::string checkedRecord(std::uint8_t type, std::string payload) {
    std::string checked(1, static_cast<char>(type));
    checked += payload;
    const std::uint32_t crc = movieJournalChecksum(checked);
    std::string out;
    for (int byte = 0; byte < 4; ++byte)
        out.push_back(static_cast<char>((payload.size() >> (8 * byte)) & 0xFF));
    out += checked;
    for (int byte = 0; byte < 4; ++byte) out.push_back(static_cast<char>((crc >> (8 * byte)) & 0xFF));
    return out;
}

TEST(MovieJournal, RefusesWhatThisSystemNeverWrites) {
    MovieJournalPacket empty = packets(1)[0];
    empty.size = 0;
    MovieJournalPacket unknownTrack = packets(1)[0];
    unknownTrack.track = 3;
    MovieJournalPacket backwards = packets(1)[0];
    backwards.duration = -1;
    const std::string start = encodeMovieJournalStart();
    const std::string track = encodeMovieJournalTrack(videoTrack()).value();
    const std::vector<std::pair<const char*, std::string>> cases{
        {"another file", std::string("RIFF\0\0\0\0WAVE", 12)},
        {"nothing", std::string()},
        {"a packet of no track", start + track + encodeMovieJournalPackets(std::vector{unknownTrack})},
        {"a packet of no bytes", start + track + encodeMovieJournalPackets(std::vector{empty})},
        {"a negative duration", start + track + encodeMovieJournalPackets(std::vector{backwards})},
        {"a track after packets", start + track + encodeMovieJournalPackets(packets(1)) + track},
        {"a record of an unknown type", start + checkedRecord(9, "abc")},
        {"a packet record of a wrong length",
         start + track + checkedRecord(2, std::string("\1\0\0\0xyz", 7))},
        {"a parameter name with a space",
         start + checkedRecord(1, std::string("\1\0\3a b\0\0\0\0\0\0\0\0\0\0\0\0", 18))},
        {"a track with bytes to spare", start + checkedRecord(1, std::string("\0\0\0\0\0\0!", 7))},
    };
    for (const auto& [name, bytes] : cases) {
        SCOPED_TRACE(name);
        EXPECT_FALSE(decodeMovieJournal(bytes).ok());
    }
}

TEST(MovieJournal, RefusesToWriteAParameterNameItCouldNotReadBack) {
    for (const std::string& name : {std::string(), std::string("two words"), std::string(65, 'x')}) {
        SCOPED_TRACE(name);
        EXPECT_FALSE(encodeMovieJournalTrack({{{name, 1}}, {}}).ok());
    }
    EXPECT_TRUE(encodeMovieJournalTrack({{{std::string(64, 'x'), 1}}, {}}).ok());
}

}  // namespace
}  // namespace kestrum

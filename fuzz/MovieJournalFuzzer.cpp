// libFuzzer target for the movie journal, read at launch to rebuild a movie a crash cut off. A journal
// that decodes, written out again, must read back as the same tracks and packets, whole.
#include "FuzzFailure.h"
#include "media/MovieJournal.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const kestrum::Result<kestrum::MovieJournal> decoded = kestrum::decodeMovieJournal(bytes);
    if (!decoded) return 0;
    const kestrum::MovieJournal& journal = decoded.value();
    if (journal.validBytes > size) kestrum::fuzz::fail("movie journal", "more valid bytes than were given");

    std::string written = kestrum::encodeMovieJournalStart();
    for (const kestrum::MovieJournalTrack& track : journal.tracks) {
        const auto record = kestrum::encodeMovieJournalTrack(track);
        if (!record) kestrum::fuzz::fail("movie journal", "a decoded track did not encode", &record.error());
        written += record.value();
    }
    if (!journal.packets.empty()) written += kestrum::encodeMovieJournalPackets(journal.packets);
    const kestrum::Result<kestrum::MovieJournal> again = kestrum::decodeMovieJournal(written);
    if (!again) kestrum::fuzz::fail("movie journal", "the written journal did not decode", &again.error());
    if (again.value().tracks != journal.tracks || again.value().packets != journal.packets)
        kestrum::fuzz::fail("movie journal", "the records changed on a round trip");
    if (again.value().validBytes != written.size())
        kestrum::fuzz::fail("movie journal", "a written journal was not valid to its end");
    return 0;
}

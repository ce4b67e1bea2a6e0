// libFuzzer target for the telemetry journal, read at launch from whatever a crash left beside a movie.
// Any bytes decode (a line that does not is skipped). What they gave, written out again as journal lines,
// must read back as the same contents with nothing skipped.
#include "FuzzFailure.h"
#include "core/telemetry/RecordingTelemetryJournalCodec.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace {

void append(std::string& journal, const kestrum::RecordingTelemetryJournalLine& line) {
    const auto encoded = kestrum::encodeRecordingTelemetryJournalLine(line);
    if (!encoded) kestrum::fuzz::fail("telemetry journal", "a decoded line did not encode", &encoded.error());
    journal += encoded.value();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using kestrum::RecordingTelemetryJournalLine;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const kestrum::RecordingTelemetryJournalContents contents =
        kestrum::decodeRecordingTelemetryJournal(bytes);
    if (contents.skippedLines < 0)
        kestrum::fuzz::fail("telemetry journal", "a negative count of skipped lines");

    std::string journal;
    if (contents.recordingStartedAt)
        append(journal, RecordingTelemetryJournalLine{.recordingStartedAt = contents.recordingStartedAt});
    if (contents.metadata) append(journal, RecordingTelemetryJournalLine{.metadata = contents.metadata});
    if (!contents.telemetry.events.empty())
        append(journal, RecordingTelemetryJournalLine{.events = contents.telemetry.events});
    for (const auto& snapshot : contents.telemetry.scoreboard)
        append(journal, RecordingTelemetryJournalLine{.snapshot = snapshot});
    kestrum::RecordingTelemetryJournalContents again = kestrum::decodeRecordingTelemetryJournal(journal);
    if (again.skippedLines != 0) kestrum::fuzz::fail("telemetry journal", "a written line did not read back");
    again.skippedLines = contents.skippedLines;
    if (!(again == contents))
        kestrum::fuzz::fail("telemetry journal", "the contents changed on a round trip");
    return 0;
}

#pragma once

#include "base/common/ReferenceDate.h"
#include "base/common/Result.h"
#include "core/telemetry/RecordingMetadata.h"
#include "core/telemetry/RecordingTelemetry.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrum {

// The telemetry journal of a recording in progress: what its collection has gathered so far, appended
// line by line beside the movie, so that the session document can be written even when the recording
// never finished. Each line is one compact JSON object with one of these keys, the records in the
// session document's own form:
//   {"recordingStartedAt": seconds since 2001}   the date the recording's name is made of
//   {"metadata": {"champion", "gameID", "gameMode", "position"}}   once known
//   {"events": [RecordingEvent]}                  the events first seen in one pass
//   {"snapshot": RecordingScoreboardSnapshot}     one scoreboard snapshot
struct RecordingTelemetryJournalLine {
    std::optional<std::vector<RecordingEvent>> events;
    std::optional<RecordingMetadata> metadata;
    std::optional<ReferenceDate> recordingStartedAt;
    std::optional<RecordingScoreboardSnapshot> snapshot;

    friend bool operator==(const RecordingTelemetryJournalLine&,
                           const RecordingTelemetryJournalLine&) = default;
};

// One line, with its line feed. Fails as the document's codec does (a non-finite double).
Result<std::string> encodeRecordingTelemetryJournalLine(const RecordingTelemetryJournalLine& line);

// What a journal holds, put together as the save path wants it.
struct RecordingTelemetryJournalContents {
    std::optional<ReferenceDate> recordingStartedAt;  // the first one
    std::optional<RecordingMetadata> metadata;        // the last one
    // Events by id, the first form of each kept, stably sorted by videoTime; snapshots in order.
    RecordingTelemetry telemetry;
    // Lines that did not decode: a last line cut short by a crash, or damage. They are skipped.
    int skippedLines = 0;

    friend bool operator==(const RecordingTelemetryJournalContents&,
                           const RecordingTelemetryJournalContents&) = default;
};

// Reads a journal; never fails, since every line stands alone. A pure function, safe on any thread.
RecordingTelemetryJournalContents decodeRecordingTelemetryJournal(std::string_view bytes);

}  // namespace kestrum

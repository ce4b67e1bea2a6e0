#pragma once

#include "core/telemetry/RecordingAPMSample.h"
#include "core/telemetry/RecordingEnrichmentState.h"
#include "core/telemetry/RecordingEvent.h"
#include "core/telemetry/RecordingMatchData.h"
#include "core/telemetry/RecordingScoreboardSnapshot.h"

#include <QUuid>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kestrum {

// The session document: the JSON file beside each movie that holds what happened in the game on the
// movie's time axis. A plain value; reading and writing files is RecordingSidecarStore's business.
struct RecordingSessionData {
    // Every writer here writes 4; no reader compares it with anything.
    std::optional<std::int64_t> schemaVersion;
    // A new UUID when the document is first written, kept after that.
    std::optional<QUuid> recordingID;
    // 1 when first written; each rewrite adds 1, a missing value counting as 1.
    std::optional<std::int64_t> metadataRevision;
    std::optional<std::string> gameID;
    // The timeline, sorted by videoTime when written. The only required key of the document.
    std::vector<RecordingEvent> events;
    std::optional<std::vector<RecordingScoreboardSnapshot>> scoreboard;
    std::optional<std::vector<RecordingAPMSample>> apmSamples;
    std::optional<RecordingMatchData> matchData;
    std::optional<RecordingEnrichmentState> enrichment;
    // "highlight" marks a document that is never retitled; absent means a full match.
    std::optional<std::string> mediaKind;
    std::optional<std::string> title;
    // The recordingID of the recording this one derives from.
    std::optional<QUuid> sourceRecordingID;

    friend bool operator==(const RecordingSessionData&, const RecordingSessionData&) = default;
};

}  // namespace kestrum

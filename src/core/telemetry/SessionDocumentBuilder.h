#pragma once

#include "core/telemetry/RecordingEnrichmentState.h"
#include "core/telemetry/RecordingMetadata.h"
#include "core/telemetry/RecordingSessionData.h"
#include "core/telemetry/RecordingTelemetry.h"

#include <QString>

#include <optional>
#include <string>

namespace kestrum {

// The format version that every writer in this system writes.
inline constexpr std::int64_t kSessionDocumentSchemaVersion = 4;

// The one initial enrichment value: pending, no attempts, nothing else.
RecordingEnrichmentState initialEnrichmentState();

// The enrichment rule shared by both writers: an existing value is kept as it stands; without one, a
// document with a gameID gets the initial value and a document without a gameID gets none.
std::optional<RecordingEnrichmentState> enrichmentFor(const std::optional<RecordingEnrichmentState>& existing,
                                                      const std::optional<std::string>& gameID);

// The document that the save path writes for a new movie: version 4, a new random recordingID, revision
// 1, gameID from the metadata, the telemetry's events (stably sorted by videoTime) and scoreboard, an
// empty apmSamples whatever the telemetry holds, and the enrichment rule.
RecordingSessionData makeSessionData(const std::optional<RecordingMetadata>& metadata,
                                     const RecordingTelemetry& telemetry);

// The scanner's rewrite with a new title: version forced to 4, recordingID kept (or made when missing),
// metadataRevision raised by 1 with a missing value counting as 1, everything else copied and the
// enrichment rule applied. A revision already at the largest integer stays there.
RecordingSessionData retitledSessionData(RecordingSessionData session, std::string title);

// The session document's path for a movie: the movie's path with its file name's extension replaced by
// "json" ("/a/2026-03-14_21-07-55.mov" -> "/a/2026-03-14_21-07-55.json"). A name without an extension,
// or whose only dot leads it (".mov"), gets ".json" appended; a trailing dot counts as an empty extension.
QString sessionDocumentPath(const QString& moviePath);

}  // namespace kestrum

#include "core/telemetry/SessionDocumentBuilder.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace kestrum {

RecordingEnrichmentState initialEnrichmentState() {
    return RecordingEnrichmentState{RecordingEnrichmentState::Status::pending, 0, std::nullopt, std::nullopt};
}

std::optional<RecordingEnrichmentState> enrichmentFor(const std::optional<RecordingEnrichmentState>& existing,
                                                      const std::optional<std::string>& gameID) {
    if (existing) return existing;
    if (gameID) return initialEnrichmentState();
    return std::nullopt;
}

RecordingSessionData makeSessionData(const std::optional<RecordingMetadata>& metadata,
                                     const RecordingTelemetry& telemetry) {
    RecordingSessionData session;
    session.schemaVersion = kSessionDocumentSchemaVersion;
    session.recordingID = QUuid::createUuid();
    session.metadataRevision = 1;
    if (metadata) session.gameID = metadata->gameID;
    session.events = telemetry.events;
    // NaN times sort last, so the order stays a strict weak ordering whatever the collector produced;
    // such a document cannot be written anyway.
    std::stable_sort(session.events.begin(), session.events.end(), [](const auto& a, const auto& b) {
        return !std::isnan(a.videoTime) && (std::isnan(b.videoTime) || a.videoTime < b.videoTime);
    });
    session.scoreboard = telemetry.scoreboard;
    session.apmSamples.emplace();
    session.enrichment = enrichmentFor(std::nullopt, session.gameID);
    return session;
}

RecordingSessionData retitledSessionData(RecordingSessionData session, std::string title) {
    session.schemaVersion = kSessionDocumentSchemaVersion;
    if (!session.recordingID) session.recordingID = QUuid::createUuid();
    const std::int64_t revision = session.metadataRevision.value_or(1);
    session.metadataRevision = revision == std::numeric_limits<std::int64_t>::max() ? revision : revision + 1;
    session.title = std::move(title);
    session.enrichment = enrichmentFor(session.enrichment, session.gameID);
    return session;
}

QString sessionDocumentPath(const QString& moviePath) {
    const qsizetype nameStart = moviePath.lastIndexOf(QLatin1Char('/')) + 1;
    const qsizetype dot = moviePath.lastIndexOf(QLatin1Char('.'));
    if (dot <= nameStart) return moviePath + QStringLiteral(".json");
    return moviePath.left(dot) + QStringLiteral(".json");
}

}  // namespace kestrum

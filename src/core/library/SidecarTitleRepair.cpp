#include "core/library/SidecarTitleRepair.h"

#include "base/common/ReferenceDate.h"
#include "core/telemetry/SessionDocumentBuilder.h"

#include <utility>

namespace kestrum {

namespace {

// Taken once per process, on first need, so every document completed in one run carries the same date.
ReferenceDate firstCompletedEnrichmentDate() {
    static const ReferenceDate date = ReferenceDate::now();
    return date;
}

}  // namespace

RecordingSessionData upgradedSessionDocument(RecordingSessionData session, std::string title) {
    const bool completesEnrichment = !session.enrichment && session.gameID && session.matchData;
    RecordingSessionData upgraded = retitledSessionData(std::move(session), std::move(title));
    if (completesEnrichment) {
        upgraded.enrichment = RecordingEnrichmentState{RecordingEnrichmentState::Status::complete, 0,
                                                       firstCompletedEnrichmentDate(), std::nullopt};
    }
    return upgraded;
}

}  // namespace kestrum

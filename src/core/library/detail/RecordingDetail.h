#pragma once

#include "core/telemetry/RecordingEvent.h"
#include "core/telemetry/RecordingMatchData.h"
#include "core/telemetry/RecordingScoreboardSnapshot.h"

#include <optional>
#include <vector>

namespace kestrum {

// The loaded detail of one recording: its telemetry from the sidecar and the shape of its movie, what
// the review panels need once a recording is selected. A plain value; JSON keys are the field names.
struct RecordingDetail {
    std::vector<RecordingEvent> events;
    // Empty when the sidecar has none.
    std::vector<RecordingScoreboardSnapshot> scoreboard;
    std::optional<RecordingMatchData> matchData;
    // Seconds of the movie.
    double duration = 0;
    // Width over height of the picture as displayed.
    double aspectRatio = 16.0 / 9.0;

    friend bool operator==(const RecordingDetail&, const RecordingDetail&) = default;
};

}  // namespace kestrum

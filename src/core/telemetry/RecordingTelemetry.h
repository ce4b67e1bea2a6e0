#pragma once

#include "core/telemetry/RecordingAPMSample.h"
#include "core/telemetry/RecordingEvent.h"
#include "core/telemetry/RecordingScoreboardSnapshot.h"

#include <vector>

namespace kestrum {

// What a collection run hands to the save path. In memory only: it has no JSON form of its own.
struct RecordingTelemetry {
    std::vector<RecordingEvent> events;
    std::vector<RecordingScoreboardSnapshot> scoreboard;
    std::vector<RecordingAPMSample> apmSamples;

    friend bool operator==(const RecordingTelemetry&, const RecordingTelemetry&) = default;
};

}  // namespace kestrum

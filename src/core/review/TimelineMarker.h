#pragma once

#include "core/telemetry/RecordingTeam.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <optional>

namespace kestrum {

// What a marker stands for, for its drawing: the local player's kill or death, another kill, a multikill,
// an ace, an objective, and the game's start and end (drawn, never hovered).
enum class TimelineMarkerKind : std::uint8_t {
    localKill,
    localDeath,
    kill,
    multikill,
    ace,
    objective,
    gameStart,
    gameEnd
};

// One marker of the timeline track at a given track width: everything the track's painted item draws
// and the hit search reads. Points are the strip's own coordinates (x from the track's left edge, y from
// the strip's top).
struct TimelineMarker {
    std::int64_t eventID = 0;
    std::size_t eventIndex = 0;  // in the recording's event list
    double x = 0;
    double y = 0;
    TimelineMarkerKind kind = TimelineMarkerKind::objective;
    std::optional<RecordingTeam> team;
    // The hover's tie-break: 4 for the local player's kill or death, 3 a multikill, 2 an ace, 1 the rest.
    int priority = 1;
    // "GameStart" and "GameEnd" are left out of the hit search.
    bool isHoverable = true;
    // The system symbol, and the art that replaces it when there is one (empty when none).
    QString symbolName;
    QString artName;

    friend bool operator==(const TimelineMarker&, const TimelineMarker&) = default;
};

}  // namespace kestrum

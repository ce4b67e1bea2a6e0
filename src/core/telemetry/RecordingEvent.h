#pragma once

#include "core/telemetry/RecordingTeam.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kestrum {

// One row of a recording's timeline, placed on the movie's own time axis.
struct RecordingEvent {
    // The game's own event number (`EventID` of the feed); unique within a document.
    std::int64_t id = 0;
    // Event name in the game's vocabulary, or "FirstBlood" for the first champion kill.
    std::string name;
    // Seconds from the movie's first frame; never negative.
    double videoTime = 0;
    // The dragon kind, "killer → victim", or the killer alone.
    std::optional<std::string> detail;
    std::optional<RecordingTeam> team;
    // Only on "Multikill" rows: the size of the streak.
    std::optional<std::int64_t> multiKillCount;
    // Written for every event by this system, false when it does not apply.
    std::optional<bool> isLocalPlayerKill;
    std::optional<bool> isLocalPlayerDeath;
    std::optional<bool> isLocalPlayerAssist;
    std::optional<std::string> killerName;
    std::optional<std::string> killerChampion;
    // The victim, the structure destroyed, or the literal "Obelisk".
    std::optional<std::string> victimName;
    std::optional<std::string> victimChampion;
    std::optional<std::vector<std::string>> assisterNames;

    friend bool operator==(const RecordingEvent&, const RecordingEvent&) = default;
};

}  // namespace kestrum

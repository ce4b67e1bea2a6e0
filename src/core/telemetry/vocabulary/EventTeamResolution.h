#pragma once

#include "core/telemetry/LiveGamePayloads.h"
#include "core/telemetry/RecordingTeam.h"
#include "core/telemetry/vocabulary/EventConversionTables.h"

#include <optional>

namespace kestrum {

// The team a feed row counts for; the first step that gives one decides:
// 1. an obelisk row ("TurretKilled" by "Obelisk") with a known Azir: the side opposite Azir's;
// 2. the killer's side by name; 3. the killer's structure code; 4. the acer's side by name;
// 5. "AcingTeam" ("ORDER"/"BLUE" blue, "CHAOS"/"RED" red, any case);
// 6. on "TurretKilled"/"InhibKilled": the side opposite the owner coded in the first present of
//    TurretKilled, InhibKilled, VictimName; 7. the side opposite the victim's by name; 8. no team.
// Reads the row's own KillerName and VictimName, never the aliases the conversion derives.
std::optional<RecordingTeam> resolveEventTeam(const LiveEvent& row, const EventConversionTables& tables);

}  // namespace kestrum

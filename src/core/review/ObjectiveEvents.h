#pragma once

#include "core/telemetry/RecordingEvent.h"
#include "core/telemetry/RecordingTeam.h"

#include <vector>

namespace kestrum {

// The objective words the scoreboard counts by, over events.

// A "DragonKill" whose detail contains "elder", in any case.
bool isElderDragonKill(const RecordingEvent& event);
// A "DragonKill" that is no Elder.
bool isElementalDragonKill(const RecordingEvent& event);
// A "HordeKill" or "VoidGrubKill".
bool isVoidGrubKill(const RecordingEvent& event);

// A soul: four elemental dragons taken by one team.
inline constexpr int kDragonsForSoul = 4;

// The elemental dragons among `events` credited to `team`.
int elementalDragonCount(const std::vector<const RecordingEvent*>& events, RecordingTeam team);

}  // namespace kestrum

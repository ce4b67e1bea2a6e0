#pragma once

#include "core/telemetry/RecordingTeam.h"

#include <optional>
#include <string>

namespace kestrum {

// The side named by a structure or minion code inside a name, upper-cased first: "T100" or "_T1_" is
// blue (tried in that order), else "T200" or "_T2_" is red; anything else, and an absent name, is none.
// The code names the owner ("Turret_T1_C_05_A" is a blue turret, "Minion_T200L1S04N0105" a red minion).
std::optional<RecordingTeam> structureCodeTeam(const std::optional<std::string>& name);

RecordingTeam oppositeTeam(RecordingTeam team);

}  // namespace kestrum

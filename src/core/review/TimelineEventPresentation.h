#pragma once

#include "core/telemetry/RecordingEvent.h"

#include <QString>

#include <optional>
#include <string_view>

namespace kestrum {

// How a timeline event reads and looks on its marker and hover card.

// The title: a champion kill of the local player reads "Your kill", the local player's death "Your
// death"; "GameStart" reads "Game start" and "GameEnd" "Game end"; every other event the vocabulary's
// title ("Double kill", "Dragon", ...).
QString timelineEventTitle(const RecordingEvent& event);

// The system symbol of the marker, the vocabulary's (a dragon's by its kind).
QString timelineEventSymbolName(const RecordingEvent& event);

// The art of the marker, when it has one: a dragon's by its kind ("dragon_infernal", ...), "baron",
// "rift_herald", "void_grub", "minimap_turret", "minimap_inhibitor", "minimap_nexus". The symbol stands in
// while the art is missing.
std::optional<QString> timelineEventArtName(const RecordingEvent& event);

// The symbol of a killer who is no player, by words in the lower-cased name, in this order: "minion",
// "turret", "inhib" or "barracks", "dragon", "baron", "herald", "monster" or a name starting "sru_".
// Absent for any other name (a player, drawn by the champion's portrait).
std::optional<QString> killerSymbolName(std::string_view killerName);

}  // namespace kestrum

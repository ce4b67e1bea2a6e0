#pragma once

#include "core/telemetry/RecordingScoreboardPlayer.h"
#include "core/telemetry/RecordingTeam.h"

#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace kestrum {

// The names under which the feed may mention a player, in this order: summonerName, championName,
// riotId, riotIdGameName. Absent ones are left out; empty ones are kept (the dictionaries drop them).
std::vector<std::string> playerAliases(const RecordingScoreboardPlayer& player);

// The player's side: `team` upper-cased, "ORDER" is blue and "CHAOS" red; anything else is no side.
std::optional<RecordingTeam> playerSide(const RecordingScoreboardPlayer& player);

// The normal forms under which the local player appears. Empty without an active name. Otherwise all
// aliases of the first player one of whose aliases has the active name's normal form; with no such
// player, the active name's normal form alone.
std::unordered_set<std::string> localPlayerAliases(const std::optional<std::string>& activePlayerName,
                                                   const std::vector<RecordingScoreboardPlayer>& players);

}  // namespace kestrum

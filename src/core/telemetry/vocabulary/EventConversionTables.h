#pragma once

#include "core/telemetry/LiveGamePayloads.h"
#include "core/telemetry/RecordingScoreboardPlayer.h"
#include "core/telemetry/RecordingTeam.h"

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace kestrum {

// What one conversion prepares from the answer of the feed and the player list of the same pass.
// Built afresh by every conversion; all names are in normal form. `playerByAlias` points into the
// player list it was built from and is valid only as long as that list.
struct EventConversionTables {
    std::unordered_set<std::string> localPlayerAliases;
    // Players with a side only; an empty alias is left out; a later player wins a shared alias.
    std::unordered_map<std::string, RecordingTeam> teamByAlias;
    // All players; an empty alias is left out; a later player wins a shared alias.
    std::unordered_map<std::string, const RecordingScoreboardPlayer*> playerByAlias;
    // The side of the first player whose cleaned champion key is "azir" (absent if that player has no
    // side): the obelisk's owner.
    std::optional<RecordingTeam> azirTeam;
    // The "ChampionKill" row of this answer with the smallest time; the first in feed order on a tie.
    std::optional<std::int64_t> firstKillEventID;
};

EventConversionTables buildEventConversionTables(const std::vector<LiveEvent>& feed,
                                                 const std::vector<RecordingScoreboardPlayer>& players,
                                                 const std::optional<std::string>& activePlayerName);

std::optional<std::int64_t> firstKillEventID(const std::vector<LiveEvent>& feed);

}  // namespace kestrum

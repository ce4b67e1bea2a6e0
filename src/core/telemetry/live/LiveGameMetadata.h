#pragma once

#include "core/telemetry/LiveGamePayloads.h"
#include "core/telemetry/RecordingMetadata.h"

#include <string>

namespace kestrum {

// The champion of a recording, by the narrow rule: "game_character_displayname_<key>" gives the key,
// "Character_<key>_Name" gives the key, anything else (and an absent raw name) gives `championName`.
// Deliberately narrower than the scoreboard's cleaned name, which also takes the last "_" part.
std::string metadataChampionName(const LiveGameData::Player& player);

// The metadata of an allgamedata answer: the game mode, and the champion and position of the first
// player whose summonerName equals the active player's, ignoring case (no trimming). No match leaves
// champion and position absent and is still a result. `gameID` is always absent.
RecordingMetadata recordingMetadataFrom(const LiveGameData& data);

}  // namespace kestrum

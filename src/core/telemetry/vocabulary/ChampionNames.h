#pragma once

#include "core/telemetry/RecordingScoreboardPlayer.h"

#include <string>
#include <string_view>

namespace kestrum {

// The champion key of a scoreboard player, by the wide rule: "game_character_displayname_<key>" and
// "Character_<key>_Name" give the key; any other raw name gives its last non-empty "_" part; no raw
// name, or one of only "_", gives `championName`. Deliberately wider than the recording metadata's
// rule, which stops short of the last-part step.
std::string cleanedChampionName(const RecordingScoreboardPlayer& player);

// The readable name of a champion key: the table of irregular names, looked up upper-cased
// ("MONKEYKING" is "Wukong"); any other key lower-cased and capitalised word by word.
std::string championDisplayName(std::string_view key);

}  // namespace kestrum

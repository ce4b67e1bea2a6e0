#pragma once

#include "core/telemetry/RecordingScoreboardPlayer.h"

#include <string>

namespace kestrum {

// The readable name of a scoreboard player: a non-empty riotIdGameName; else the part of riotId before
// its first "#" when that part is non-empty; else the part of summonerName before its first "#", or all
// of summonerName when that part is empty.
std::string playerDisplayName(const RecordingScoreboardPlayer& player);

}  // namespace kestrum

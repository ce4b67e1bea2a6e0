#pragma once

#include "core/telemetry/RecordingScoreboardPlayer.h"

#include <string>
#include <utility>

namespace kestrum::test {

// A scoreboard row with the fields that name a player and their side; everything else at its default.
inline RecordingScoreboardPlayer scoreboardPlayer(std::string summonerName, std::string championName,
                                                  std::string team) {
    RecordingScoreboardPlayer player;
    player.summonerName = std::move(summonerName);
    player.championName = std::move(championName);
    player.team = std::move(team);
    return player;
}

}  // namespace kestrum::test

#pragma once

// The scoreboard row of one player at one snapshot of a made-up long game, shared by the benchmarks that
// need sizeable session documents: ten champions, six items each, scores and levels that grow with the
// snapshot index (one a second), so consecutive snapshots differ as a real game's do.
#include "core/telemetry/RecordingSessionData.h"

#include <string>

namespace kestrum::bench {

inline RecordingScoreboardPlayer syntheticPlayer(int snapshot, int index) {
    static const char* const kChampions[] = {"Kayn",  "Lux",     "Ahri",    "Rell",   "Jinx",
                                             "Garen", "Sejuani", "Orianna", "Kai'Sa", "Nautilus"};
    static const char* const kItemNames[] = {"Youmuu's Ghostblade", "Plated Steelcaps", "Health Potion",
                                             "Stealth Ward",        "Serylda's Grudge", "Edge of Night"};
    RecordingScoreboardPlayer player;
    player.championName = kChampions[index % 10];
    player.isDead = (snapshot + index) % 17 == 0;
    for (int slot = 0; slot < 6; ++slot) {
        player.items.push_back(
            {1 + slot % 2, kItemNames[slot], 3000 + slot * 37 + index, 300 + slot * 450, slot});
    }
    player.level = 1 + snapshot / 200;
    player.position = index % 5 == 1 ? "JUNGLE" : "MIDDLE";
    player.rawChampionName = std::string("game_character_displayname_") + kChampions[index % 10];
    player.respawnTimer = player.isDead ? 12.5 + snapshot * 0.013 : 0;
    player.riotId = std::string("Player ") + std::to_string(index) + "#EUW";
    player.riotIdGameName = std::string("Player ") + std::to_string(index);
    player.riotIdTagLine = "EUW";
    player.scores = {snapshot / 300, snapshot / 12 + index, snapshot / 400, snapshot / 350};
    player.summonerName = *player.riotId;
    player.team = index < 5 ? "ORDER" : "CHAOS";
    return player;
}

}  // namespace kestrum::bench

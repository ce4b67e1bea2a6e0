#pragma once

#include "core/telemetry/RecordingMatchData.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace kestrum::synthetic {

class SyntheticRandom;

// An item a player buys at a game time, into a slot (0 to 5; the trinket is 6).
struct SyntheticPurchase {
    double gameTime = 0;
    std::int64_t itemID = 0;
    const char* displayName = "";
    std::int64_t price = 0;
    int slot = 0;
};

// One of the ten players: who they are, where they play, and how fast they farm.
struct SyntheticPlayerProfile {
    const char* gameName;
    const char* tagLine;
    const char* championName;  // as the service shows it
    const char* championKey;   // the cleaned key ("LeeSin", "Kaisa")
    const char* team;          // "ORDER" or "CHAOS"
    const char* position;      // "TOP" ... "UTILITY"
    double creepScorePerMinute;

    std::string riotId() const { return std::string(gameName) + "#" + tagLine; }
    bool isBlue() const { return team[0] == 'O'; }
};

inline constexpr int kPlayerCount = 10;
// The local player: the blue mid laner.
inline constexpr int kLocalPlayerIndex = 2;

const std::array<SyntheticPlayerProfile, kPlayerCount>& syntheticRoster();

// The items of a player in the order bought: a starter, boots and five completed items spread over the
// game, and the trinket at once.
std::vector<SyntheticPurchase> syntheticBuildPath(int playerIndex, SyntheticRandom& random);

// The after-game record of the match: ten participants (team 100 blue, 200 red) with their final scores
// and, for most, a solo queue rank (half with a season high).
RecordingMatchData syntheticMatchData(
    const std::array<std::array<std::int64_t, 3>, kPlayerCount>& killsDeathsAssists, std::int64_t gameSeconds,
    SyntheticRandom& random);

}  // namespace kestrum::synthetic

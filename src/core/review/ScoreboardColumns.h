#pragma once

#include "core/telemetry/RecordingScoreboardPlayer.h"
#include "core/telemetry/RecordingScoreboardSnapshot.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrum {

// The two team columns of the scoreboard: "ORDER" is the blue team (left), "CHAOS" the red (right).
inline constexpr std::string_view kBlueTeamWord = "ORDER";
inline constexpr std::string_view kRedTeamWord = "CHAOS";

// The rank of a position in a team's order: "TOP" 0, "JUNGLE" 1, "MIDDLE" 2, "BOTTOM" 3, "UTILITY" 4, any
// other or none 5, by the upper-cased word.
int positionRank(const std::optional<std::string>& position);

// The name that orders players of equal rank, as a plain string: riotId, else riotIdGameName, else
// summonerName.
const std::string& playerSortName(const RecordingScoreboardPlayer& player);

// The players of the snapshot whose upper-cased team is `teamWord`, by position rank and then sort name.
std::vector<const RecordingScoreboardPlayer*> teamColumn(const RecordingScoreboardSnapshot& snapshot,
                                                         std::string_view teamWord);

// The sum of the kills of a column's players.
std::int64_t teamKillTotal(const std::vector<const RecordingScoreboardPlayer*>& column);

// The row's role name: "Top", "Jungle", "Mid", "Bot", "Support"; empty for any other position.
QString roleName(const std::optional<std::string>& position);

// "<kills> / <deaths> / <assists>".
QString kdaText(const RecordingScoreboardPlayer::Scores& scores);

// The Riot ID a row copies: riotId; else the game name and the tag line joined by "#"; else the game name;
// else the summoner name.
QString riotIdText(const RecordingScoreboardPlayer& player);

// The row's tip: "Riot ID <id>. Click to copy", or "Riot ID copied" once copied.
QString riotIdToolTip(const QString& riotId, bool isCopied);

// The identity of a player in the hover and copy state: the side word and the summoner name, joined by
// "|", which stay the same across the snapshots of a game.
QString scoreboardPlayerID(const RecordingScoreboardPlayer& player);

// The side word of a player, upper-cased.
std::string teamWordOf(const RecordingScoreboardPlayer& player);

}  // namespace kestrum

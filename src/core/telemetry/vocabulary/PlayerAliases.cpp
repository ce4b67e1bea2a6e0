#include "core/telemetry/vocabulary/PlayerAliases.h"

#include "core/telemetry/vocabulary/NameNormalForm.h"
#include "core/telemetry/vocabulary/TextCase.h"

namespace kestrum {

std::vector<std::string> playerAliases(const RecordingScoreboardPlayer& player) {
    std::vector<std::string> aliases{player.summonerName, player.championName};
    if (player.riotId) aliases.push_back(*player.riotId);
    if (player.riotIdGameName) aliases.push_back(*player.riotIdGameName);
    return aliases;
}

std::optional<RecordingTeam> playerSide(const RecordingScoreboardPlayer& player) {
    const std::string side = upperCased(player.team);
    if (side == "ORDER") return RecordingTeam::blue;
    if (side == "CHAOS") return RecordingTeam::red;
    return std::nullopt;
}

std::unordered_set<std::string> localPlayerAliases(const std::optional<std::string>& activePlayerName,
                                                   const std::vector<RecordingScoreboardPlayer>& players) {
    if (!activePlayerName) return {};
    const std::string name = normalizedName(*activePlayerName);
    for (const auto& player : players) {
        std::unordered_set<std::string> aliases;
        for (const auto& alias : playerAliases(player)) aliases.insert(normalizedName(alias));
        if (aliases.contains(name)) return aliases;
    }
    return {name};
}

}  // namespace kestrum

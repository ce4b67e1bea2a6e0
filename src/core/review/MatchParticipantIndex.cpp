#include "core/review/MatchParticipantIndex.h"

#include "core/library/LibraryPositions.h"
#include "core/review/ScoreboardColumns.h"
#include "core/telemetry/vocabulary/ChampionNames.h"
#include "core/telemetry/vocabulary/NameNormalForm.h"

#include <algorithm>
#include <set>

namespace kestrum {

namespace {

std::string riotIDKey(std::string_view gameName, std::string_view tagLine) {
    return normalizedName(gameName) + "#" + normalizedName(tagLine);
}

std::optional<std::string> playerRiotIDKey(const RecordingScoreboardPlayer& player) {
    if (player.riotIdGameName && player.riotIdTagLine)
        return riotIDKey(*player.riotIdGameName, *player.riotIdTagLine);
    if (!player.riotId) return std::nullopt;
    const std::size_t hash = player.riotId->find('#');
    if (hash == std::string::npos) return std::nullopt;
    return riotIDKey(std::string_view(*player.riotId).substr(0, hash),
                     std::string_view(*player.riotId).substr(hash + 1));
}

}  // namespace

MatchParticipantIndex::MatchParticipantIndex(const RecordingMatchData* matchData) {
    if (!matchData) return;
    std::set<std::int64_t> teamIDs;
    for (const auto& participant : matchData->participants) teamIDs.insert(participant.teamID);
    knowsSides_ = teamIDs.size() == 2;
    for (const auto& participant : matchData->participants) {
        byRiotID_.try_emplace(riotIDKey(participant.riotIdGameName, participant.riotIdTagline), &participant);
        const std::string_view side =
            !knowsSides_ ? "" : (participant.teamID == *teamIDs.begin() ? kBlueTeamWord : kRedTeamWord);
        if (const auto key = championKey(participant.championName, side))
            byChampion_.try_emplace(*key, &participant);
    }
}

const RecordingMatchData::Participant* MatchParticipantIndex::find(
    const RecordingScoreboardPlayer& player) const {
    if (const std::optional<std::string> key = playerRiotIDKey(player)) {
        if (const auto found = byRiotID_.find(*key); found != byRiotID_.end()) return found->second;
    }
    const std::string side = knowsSides_ ? teamWordOf(player) : std::string();
    for (const std::string& champion : {player.championName, cleanedChampionName(player)}) {
        const std::optional<std::string> key = championKey(champion, side);
        if (!key) continue;
        if (const auto found = byChampion_.find(*key); found != byChampion_.end()) return found->second;
    }
    return nullptr;
}

std::optional<std::string> MatchParticipantIndex::championKey(std::string_view champion,
                                                              std::string_view side) {
    const std::optional<std::string> normalized = normalizedChampion(champion);
    if (!normalized) return std::nullopt;
    return std::string(side) + "|" + *normalized;
}

}  // namespace kestrum

#include "core/library/LocalPlayerSearch.h"

#include "core/library/LibraryPositions.h"
#include "core/telemetry/vocabulary/ChampionNames.h"

namespace kestrum {

std::optional<LocalPlayerSearch> LocalPlayerSearch::fromFileName(const ParsedRecordingFileName& fileName) {
    std::optional<std::string> position;
    if (fileName.lane) position = normalizedPosition(*fileName.lane);
    std::optional<std::string> champion;
    if (fileName.champion) champion = normalizedChampion(*fileName.champion);
    if (!position && !champion) return std::nullopt;
    return LocalPlayerSearch(std::move(position), std::move(champion));
}

bool LocalPlayerSearch::matches(const std::optional<std::string>& position,
                                std::string_view championName) const {
    if (position != position_) return false;
    // normalizedChampion gives nothing for a name without letters or digits, which then never matches.
    return !champion_ || normalizedChampion(championName) == champion_;
}

const RecordingMatchData::Participant* LocalPlayerSearch::participantIn(
    const RecordingMatchData& matchData) const {
    for (const auto& participant : matchData.participants) {
        if (matches(normalizedPosition(participant.teamPosition), participant.championName)) {
            return &participant;
        }
    }
    return nullptr;
}

const RecordingScoreboardPlayer* LocalPlayerSearch::playerIn(
    const RecordingScoreboardSnapshot& snapshot) const {
    for (const auto& player : snapshot.players) {
        std::optional<std::string> position;
        if (player.position) position = normalizedPosition(*player.position);
        if (matches(position, cleanedChampionName(player))) return &player;
    }
    return nullptr;
}

}  // namespace kestrum

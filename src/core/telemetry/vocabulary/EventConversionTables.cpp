#include "core/telemetry/vocabulary/EventConversionTables.h"

#include "core/telemetry/vocabulary/ChampionNames.h"
#include "core/telemetry/vocabulary/LiveEventNames.h"
#include "core/telemetry/vocabulary/NameNormalForm.h"
#include "core/telemetry/vocabulary/PlayerAliases.h"

namespace kestrum {

namespace {

std::optional<RecordingTeam> azirTeamOf(const std::vector<RecordingScoreboardPlayer>& players) {
    for (const auto& player : players) {
        if (normalizedName(cleanedChampionName(player)) == "azir") return playerSide(player);
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::int64_t> firstKillEventID(const std::vector<LiveEvent>& feed) {
    const LiveEvent* first = nullptr;
    for (const auto& row : feed) {
        if (row.name != liveEventName::championKill) continue;
        if (first == nullptr || row.time < first->time) first = &row;
    }
    if (first == nullptr) return std::nullopt;
    return first->id;
}

EventConversionTables buildEventConversionTables(const std::vector<LiveEvent>& feed,
                                                 const std::vector<RecordingScoreboardPlayer>& players,
                                                 const std::optional<std::string>& activePlayerName) {
    EventConversionTables tables;
    tables.localPlayerAliases = localPlayerAliases(activePlayerName, players);
    for (const auto& player : players) {
        const std::optional<RecordingTeam> side = playerSide(player);
        for (const auto& alias : playerAliases(player)) {
            // A name that trims to nothing would match every absent name, so it names nobody.
            std::string key = normalizedName(alias);
            if (key.empty()) continue;
            if (side) tables.teamByAlias.insert_or_assign(key, *side);
            tables.playerByAlias.insert_or_assign(std::move(key), &player);
        }
    }
    tables.azirTeam = azirTeamOf(players);
    tables.firstKillEventID = firstKillEventID(feed);
    return tables;
}

}  // namespace kestrum

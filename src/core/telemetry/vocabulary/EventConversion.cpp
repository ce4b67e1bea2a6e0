#include "core/telemetry/vocabulary/EventConversion.h"

#include "core/telemetry/vocabulary/ChampionNames.h"
#include "core/telemetry/vocabulary/EventConversionTables.h"
#include "core/telemetry/vocabulary/EventRowRules.h"
#include "core/telemetry/vocabulary/EventTeamResolution.h"
#include "core/telemetry/vocabulary/LiveEventNames.h"
#include "core/telemetry/vocabulary/NameNormalForm.h"

#include <algorithm>

namespace kestrum {

namespace {

struct ConversionContext {
    const std::vector<LiveEvent>& feed;
    const EventConversionTables& tables;
    double elapsedSeconds = 0;
    double gameTimeSeconds = 0;
};

std::optional<std::string> victimAliasOf(const ConversionContext& context, const LiveEvent& row,
                                         const std::optional<std::string>& killerAlias) {
    if (isObeliskRow(row)) return std::string("Obelisk");
    if (row.victimName) return row.victimName;
    if (row.turretKilled) return row.turretKilled;
    if (row.inhibKilled) return row.inhibKilled;
    if (row.name != liveEventName::multikill) return std::nullopt;
    const LiveEvent* kill = multikillKill(context.feed, row, killerAlias);
    return kill != nullptr ? kill->victimName : std::nullopt;
}

std::optional<std::string> championOf(const ConversionContext& context,
                                      const std::optional<std::string>& alias) {
    if (!alias) return std::nullopt;
    const auto found = context.tables.playerByAlias.find(normalizedName(*alias));
    if (found == context.tables.playerByAlias.end()) return std::nullopt;
    return cleanedChampionName(*found->second);
}

bool isLocalName(const ConversionContext& context, const std::optional<std::string>& name) {
    return name && context.tables.localPlayerAliases.contains(normalizedName(*name));
}

bool isLocalAssist(const ConversionContext& context, const LiveEvent& row) {
    if (row.name != liveEventName::championKill || !row.assisters) return false;
    return std::any_of(row.assisters->begin(), row.assisters->end(),
                       [&](const std::string& assister) { return isLocalName(context, assister); });
}

RecordingEvent convertRow(const ConversionContext& context, const LiveEvent& row) {
    const std::optional<std::string> killerAlias = killerAliasOf(row);
    const std::optional<std::string> victimAlias = victimAliasOf(context, row, killerAlias);
    const bool creditsKiller = row.name == liveEventName::championKill ||
                               row.name == liveEventName::multikill || row.name == liveEventName::ace;

    RecordingEvent event;
    event.id = row.id;
    // The feed's own "FirstBlood" rows are dropped; the earliest champion kill stands in for them under
    // that name and keeps everything else a champion kill has.
    event.name =
        row.id == context.tables.firstKillEventID ? std::string(liveEventName::firstBlood) : row.name;
    event.videoTime = eventVideoTime(context.elapsedSeconds, context.gameTimeSeconds, row.time);
    event.detail = eventDetail(row);
    event.team = resolveEventTeam(row, context.tables);
    if (row.name == liveEventName::multikill) event.multiKillCount = row.killStreak;
    event.isLocalPlayerKill = creditsKiller && isLocalName(context, killerAlias);
    event.isLocalPlayerDeath =
        row.name == liveEventName::championKill && isLocalName(context, row.victimName);
    event.isLocalPlayerAssist = isLocalAssist(context, row);
    event.killerName = killerAlias;
    event.killerChampion = championOf(context, killerAlias);
    event.victimName = victimAlias;
    event.victimChampion = championOf(context, victimAlias);
    event.assisterNames = row.assisters;
    return event;
}

}  // namespace

std::vector<RecordingEvent> convertEvents(const std::vector<LiveEvent>& feed,
                                          const std::vector<RecordingScoreboardPlayer>& players,
                                          const std::optional<std::string>& activePlayerName,
                                          double elapsedSeconds, double gameTimeSeconds,
                                          const KnownEventIDs& knownIDs) {
    const EventConversionTables tables = buildEventConversionTables(feed, players, activePlayerName);
    const ConversionContext context{feed, tables, elapsedSeconds, gameTimeSeconds};
    std::vector<RecordingEvent> events;
    KnownEventIDs convertedIDs;
    for (const auto& row : feed) {
        if (!isKeptEventName(row.name) || knownIDs.contains(row.id)) continue;
        if (!convertedIDs.insert(row.id).second) continue;
        events.push_back(convertRow(context, row));
    }
    return events;
}

}  // namespace kestrum

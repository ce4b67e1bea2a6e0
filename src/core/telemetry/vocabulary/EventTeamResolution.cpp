#include "core/telemetry/vocabulary/EventTeamResolution.h"

#include "core/telemetry/vocabulary/EventRowRules.h"
#include "core/telemetry/vocabulary/LiveEventNames.h"
#include "core/telemetry/vocabulary/NameNormalForm.h"
#include "core/telemetry/vocabulary/StructureCode.h"
#include "core/telemetry/vocabulary/TextCase.h"

namespace kestrum {

namespace {

std::optional<RecordingTeam> teamByName(const std::optional<std::string>& name,
                                        const EventConversionTables& tables) {
    if (!name) return std::nullopt;
    const auto found = tables.teamByAlias.find(normalizedName(*name));
    if (found == tables.teamByAlias.end()) return std::nullopt;
    return found->second;
}

std::optional<RecordingTeam> acingTeamSide(const std::optional<std::string>& acingTeam) {
    if (!acingTeam) return std::nullopt;
    const std::string side = upperCased(*acingTeam);
    if (side == "ORDER" || side == "BLUE") return RecordingTeam::blue;
    if (side == "CHAOS" || side == "RED") return RecordingTeam::red;
    return std::nullopt;
}

std::optional<RecordingTeam> structureLoserCredit(const LiveEvent& row) {
    if (row.name != liveEventName::turretKilled && row.name != liveEventName::inhibKilled)
        return std::nullopt;
    const std::optional<std::string>& structure =
        row.turretKilled ? row.turretKilled : (row.inhibKilled ? row.inhibKilled : row.victimName);
    const std::optional<RecordingTeam> owner = structureCodeTeam(structure);
    if (!owner) return std::nullopt;
    return oppositeTeam(*owner);
}

}  // namespace

std::optional<RecordingTeam> resolveEventTeam(const LiveEvent& row, const EventConversionTables& tables) {
    if (isObeliskRow(row) && tables.azirTeam) return oppositeTeam(*tables.azirTeam);
    if (auto team = teamByName(row.killerName, tables)) return team;
    if (auto team = structureCodeTeam(row.killerName)) return team;
    if (auto team = teamByName(row.acer, tables)) return team;
    if (auto team = acingTeamSide(row.acingTeam)) return team;
    if (auto team = structureLoserCredit(row)) return team;
    if (auto victimTeam = teamByName(row.victimName, tables)) return oppositeTeam(*victimTeam);
    return std::nullopt;
}

}  // namespace kestrum

#include "core/telemetry/vocabulary/EventRowRules.h"

#include "core/telemetry/vocabulary/LiveEventNames.h"
#include "core/telemetry/vocabulary/NameNormalForm.h"

#include <algorithm>

namespace kestrum {

bool isObeliskRow(const LiveEvent& row) {
    return row.name == liveEventName::turretKilled &&
           normalizedName(row.killerName.value_or("")) == "obelisk";
}

std::optional<std::string> killerAliasOf(const LiveEvent& row) {
    if (isObeliskRow(row)) return std::nullopt;
    return row.killerName ? row.killerName : row.acer;
}

const LiveEvent* multikillKill(const std::vector<LiveEvent>& feed, const LiveEvent& multikill,
                               const std::optional<std::string>& killerAlias) {
    const std::string killer = normalizedName(killerAlias.value_or(""));
    const double earliest = multikill.time - kMultikillKillWindowSeconds;
    const LiveEvent* found = nullptr;
    for (const auto& row : feed) {
        if (row.name != liveEventName::championKill) continue;
        if (row.time > multikill.time || row.time < earliest) continue;
        if (found != nullptr && row.time <= found->time) continue;
        if (normalizedName(row.killerName.value_or("")) == killer) found = &row;
    }
    return found;
}

std::optional<std::string> eventDetail(const LiveEvent& row) {
    if (row.dragonType && !row.dragonType->empty()) return row.dragonType;
    if (!row.killerName) return std::nullopt;
    if (row.victimName && !row.killerName->empty() && !row.victimName->empty()) {
        return *row.killerName + " \u2192 " + *row.victimName;
    }
    return row.killerName;
}

double eventVideoTime(double elapsedSeconds, double gameTimeSeconds, double eventTimeSeconds) {
    // std::max keeps its first argument when the comparison fails, so a NaN offset also lands at 0.
    return std::max(0.0, elapsedSeconds - (gameTimeSeconds - eventTimeSeconds));
}

}  // namespace kestrum

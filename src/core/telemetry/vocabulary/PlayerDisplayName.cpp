#include "core/telemetry/vocabulary/PlayerDisplayName.h"

#include <string_view>

namespace kestrum {

namespace {

std::string_view beforeFirstHash(std::string_view text) {
    return text.substr(0, text.find('#'));
}

}  // namespace

std::string playerDisplayName(const RecordingScoreboardPlayer& player) {
    if (player.riotIdGameName && !player.riotIdGameName->empty()) return *player.riotIdGameName;
    if (player.riotId) {
        const std::string_view name = beforeFirstHash(*player.riotId);
        if (!name.empty()) return std::string(name);
    }
    const std::string_view name = beforeFirstHash(player.summonerName);
    return name.empty() ? player.summonerName : std::string(name);
}

}  // namespace kestrum

#include "core/review/TimelineKillerNames.h"

#include "core/telemetry/vocabulary/ChampionNames.h"
#include "core/telemetry/vocabulary/NameNormalForm.h"
#include "core/telemetry/vocabulary/PlayerDisplayName.h"

#include <algorithm>

namespace kestrum {

TimelineKillerNames::TimelineKillerNames(const std::vector<RecordingScoreboardSnapshot>& snapshots) {
    const auto hasPlayers = [](const RecordingScoreboardSnapshot& snapshot) {
        return !snapshot.players.empty();
    };
    const auto first = std::find_if(snapshots.begin(), snapshots.end(), hasPlayers);
    if (first == snapshots.end()) return;
    addPlayers(*first);
    const auto last = std::find_if(snapshots.rbegin(), snapshots.rend(), hasPlayers);
    if (&*last != &*first) addPlayers(*last);
}

std::string TimelineKillerNames::cleanedKillerName(std::string_view name) {
    return normalizedName(name.substr(0, name.find('#')));
}

bool TimelineKillerNames::sameKiller(const RecordingEvent& first, const RecordingEvent& second) const {
    if (first.killerName && second.killerName) {
        const std::string firstName = cleanedKillerName(*first.killerName);
        const std::string secondName = cleanedKillerName(*second.killerName);
        if (!firstName.empty() && !secondName.empty()) return firstName == secondName;
    }
    const std::optional<std::string> firstName = scoreboardNameOfChampion(first.killerChampion);
    const std::optional<std::string> secondName = scoreboardNameOfChampion(second.killerChampion);
    if (!firstName || !secondName) return true;
    return *firstName == *secondName;
}

std::optional<std::string> TimelineKillerNames::scoreboardNameOfChampion(
    const std::optional<std::string>& champion) const {
    if (!champion) return std::nullopt;
    const auto found = nameByChampion_.find(normalizedName(*champion));
    if (found == nameByChampion_.end() || found->second.empty()) return std::nullopt;
    return found->second;
}

void TimelineKillerNames::addPlayers(const RecordingScoreboardSnapshot& snapshot) {
    for (const RecordingScoreboardPlayer& player : snapshot.players) {
        nameByChampion_.try_emplace(normalizedName(cleanedChampionName(player)),
                                    cleanedKillerName(playerDisplayName(player)));
    }
}

}  // namespace kestrum

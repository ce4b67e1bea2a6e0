#pragma once

#include "core/telemetry/RecordingEvent.h"
#include "core/telemetry/RecordingScoreboardSnapshot.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kestrum {

// Decides whether two timeline events have the same killer, for the Ace and multikill rules. When both
// events carry a killer's name, the cleaned names are compared. Otherwise each side's killer champion is
// turned into the name the scoreboard gives the player of that champion, and those are compared. A side
// with no usable name matches anything.
//
// Built once per recording from its scoreboard (the players of a game do not change, so the first and the
// last snapshot with players are read). A plain value; main thread like the panels.
class TimelineKillerNames {
  public:
    TimelineKillerNames() = default;
    explicit TimelineKillerNames(const std::vector<RecordingScoreboardSnapshot>& snapshots);

    // Everything from the first "#" cut, white space trimmed, lower-cased: "Faker#KR1 " is "faker".
    static std::string cleanedKillerName(std::string_view name);

    bool sameKiller(const RecordingEvent& first, const RecordingEvent& second) const;

  private:
    std::optional<std::string> scoreboardNameOfChampion(const std::optional<std::string>& champion) const;
    void addPlayers(const RecordingScoreboardSnapshot& snapshot);

    // Normal form of a champion key -> the cleaned display name of its player.
    std::unordered_map<std::string, std::string> nameByChampion_;
};

}  // namespace kestrum

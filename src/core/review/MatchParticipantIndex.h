#pragma once

#include "core/telemetry/RecordingMatchData.h"
#include "core/telemetry/RecordingScoreboardPlayer.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace kestrum {

// Finds the after-game participant of a scoreboard player, for the rank tooltips. A player is joined by
// Riot ID (game name and tag line, in normal form); failing that, by champion, on the player's side when
// the sides of the participants are known. Sides are known only when the participants use exactly two
// team ids: the lower is blue ("ORDER"), the higher red ("CHAOS").
//
// Built once per recording; it points into the match data, which must outlive it. Main thread.
class MatchParticipantIndex {
  public:
    MatchParticipantIndex() = default;
    explicit MatchParticipantIndex(const RecordingMatchData* matchData);

    const RecordingMatchData::Participant* find(const RecordingScoreboardPlayer& player) const;

  private:
    // Absent for a champion name with no letter or digit.
    static std::optional<std::string> championKey(std::string_view champion, std::string_view side);

    std::unordered_map<std::string, const RecordingMatchData::Participant*> byRiotID_;
    // The champion's normal form, after the side word ("" when sides are unknown) and a "|".
    std::unordered_map<std::string, const RecordingMatchData::Participant*> byChampion_;
    bool knowsSides_ = false;
};

}  // namespace kestrum

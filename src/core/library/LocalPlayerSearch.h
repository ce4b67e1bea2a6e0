#pragma once

#include "core/library/ParsedRecordingFileName.h"
#include "core/telemetry/RecordingMatchData.h"
#include "core/telemetry/RecordingScoreboardSnapshot.h"

#include <optional>
#include <string>

namespace kestrum {

// Finds the local player of a recording in its post-game record and its scoreboard, by the position and
// the champion that the movie's file name carries. The session document does not say who the local
// player is; the file name is the only link.
class LocalPlayerSearch {
  public:
    // No search when the file name gives neither a position nor a champion.
    static std::optional<LocalPlayerSearch> fromFileName(const ParsedRecordingFileName& fileName);

    // The first participant whose normal position equals the file's (both absent counting as equal)
    // and, when the file has a champion, whose normal champion name equals it. Points into `matchData`.
    const RecordingMatchData::Participant* participantIn(const RecordingMatchData& matchData) const;

    // The same comparison on a scoreboard player's `position` and champion key. Points into `snapshot`.
    const RecordingScoreboardPlayer* playerIn(const RecordingScoreboardSnapshot& snapshot) const;

  private:
    LocalPlayerSearch(std::optional<std::string> position, std::optional<std::string> champion)
        : position_(std::move(position)), champion_(std::move(champion)) {}

    bool matches(const std::optional<std::string>& position, std::string_view championName) const;

    std::optional<std::string> position_;  // normal position of the file's lane
    std::optional<std::string> champion_;  // normal champion of the file's champion
};

}  // namespace kestrum

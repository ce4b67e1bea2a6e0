#pragma once

#include "core/telemetry/RecordingScoreboardPlayer.h"
#include "core/telemetry/RecordingScoreboardSnapshot.h"

#include <limits>
#include <optional>
#include <vector>

namespace kestrum {

// Whether two player lists differ in what the scoreboard shows: the count, a player's identity (team,
// summonerName, championName), or any of isDead, level, items, scores and the two quest flags. The
// respawn timer, position and the name variants are left out, so a ticking timer alone is no change.
bool scoreboardPlayersChanged(const std::vector<RecordingScoreboardPlayer>& oldPlayers,
                              const std::vector<RecordingScoreboardPlayer>& newPlayers);

// When the collector takes a scoreboard snapshot: at the first non-empty list, at every pass whose list
// differs from the last snapshot's (not the last pass's), and whenever a second of movie time has passed
// since the last one. One instance per collection run; main thread.
class ScoreboardSnapshotRule {
  public:
    static constexpr double kLongestGapSeconds = 1.0;

    // The snapshot to append for this pass, or absent. `elapsedSeconds` is movie time.
    std::optional<RecordingScoreboardSnapshot> offer(double elapsedSeconds, double gameTimeSeconds,
                                                     const std::vector<RecordingScoreboardPlayer>& players);

  private:
    std::optional<std::vector<RecordingScoreboardPlayer>> lastSnapshotPlayers_;
    double lastSnapshotVideoTime_ = -std::numeric_limits<double>::infinity();
};

}  // namespace kestrum

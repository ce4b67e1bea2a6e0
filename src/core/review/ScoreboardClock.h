#pragma once

#include "core/telemetry/RecordingScoreboardSnapshot.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace kestrum {

// The scoreboard's time: which snapshot stands for a movie time, and the game's clock at that time. The
// movie's time and the game's differ by a constant that no single snapshot states reliably, so it is the
// median of every snapshot's gameTime - videoTime, worked out once per recording.
//
// A plain value made from a recording's snapshots; it keeps their video times (not the snapshots).
class ScoreboardClock {
  public:
    ScoreboardClock() = default;
    explicit ScoreboardClock(const std::vector<RecordingScoreboardSnapshot>& snapshots);

    // The median of the finite gameTime - videoTime of the snapshots: the middle value of an odd count,
    // the mean of the two middle values of an even one, 0 with none.
    static double medianOffsetSeconds(const std::vector<RecordingScoreboardSnapshot>& snapshots);

    double offsetSeconds() const { return offsetSeconds_; }

    // Game seconds at movie time `currentTime`: currentTime plus the offset, not below 0.
    double gameClock(double currentTime) const;

    // The snapshot for `currentTime`: walking from the last to the first, the first whose videoTime is not
    // later than it; the first snapshot when none is; absent with no snapshots. The list is taken as
    // stored: when it is sorted by time (as the recorder writes it) the walk is a binary search.
    std::optional<std::size_t> currentSnapshotIndex(double currentTime) const;

  private:
    std::vector<double> videoTimes_;
    bool isSorted_ = true;
    double offsetSeconds_ = 0;
};

}  // namespace kestrum

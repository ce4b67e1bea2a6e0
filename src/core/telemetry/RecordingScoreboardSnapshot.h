#pragma once

#include "core/telemetry/RecordingScoreboardPlayer.h"

#include <vector>

namespace kestrum {

// The scoreboard at one moment of the recording.
struct RecordingScoreboardSnapshot {
    // Seconds from the movie's first frame.
    double videoTime = 0;
    // The game's own clock at that moment, seconds.
    double gameTime = 0;
    // All players as the local service listed them.
    std::vector<RecordingScoreboardPlayer> players;

    friend bool operator==(const RecordingScoreboardSnapshot&, const RecordingScoreboardSnapshot&) = default;
};

}  // namespace kestrum

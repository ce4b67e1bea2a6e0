#pragma once

#include "SyntheticRoster.h"
#include "core/telemetry/RecordingEvent.h"
#include "core/telemetry/RecordingScoreboardSnapshot.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace kestrum::synthetic {

class SyntheticRandom;

// The running scores of the ten players, kept from the timeline: kills, deaths and assists by riot id.
class SyntheticScoreKeeper {
  public:
    // Counts every champion kill of `events` (game-time order) up to `gameTime`, from where it stopped.
    void advance(const std::vector<RecordingEvent>& events, double gameTime);

    const std::array<std::array<std::int64_t, 3>, kPlayerCount>& killsDeathsAssists() const {
        return scores_;
    }
    // The game time of a player's last death, if any so far.
    const std::optional<double>& lastDeath(int player) const {
        return lastDeath_[static_cast<std::size_t>(player)];
    }

  private:
    std::size_t next_ = 0;
    std::array<std::array<std::int64_t, 3>, kPlayerCount> scores_{};
    std::array<std::optional<double>, kPlayerCount> lastDeath_;
};

// One snapshot a second of game time, from 0 to `gameSeconds`, as the collector takes them: the ten
// players with the scores of the timeline so far, their deaths and respawns, farm, levels and items
// bought. `events` are on the game's clock in time order. Snapshot video times are the game times plus
// `loadingSeconds`; the game times carry the service's small jitter and now and then a stalled reading,
// which the review's median offset must see through.
std::vector<RecordingScoreboardSnapshot> syntheticScoreboard(const std::vector<RecordingEvent>& events,
                                                             double gameSeconds, double loadingSeconds,
                                                             SyntheticRandom& random);

}  // namespace kestrum::synthetic

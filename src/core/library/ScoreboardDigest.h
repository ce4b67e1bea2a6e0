#pragma once

#include "core/library/LocalPlayerSearch.h"
#include "core/telemetry/RecordingScoreboardSnapshot.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace kestrum {

// What a library entry needs of a session's scoreboard, gathered one snapshot at a time so that a long
// game's scoreboard (the bulk of its document) is never held whole: the last snapshot as stored, and the
// items the local player held at each snapshot in which it is found.
struct ScoreboardDigest {
    // The local player's items at one snapshot: those in slots 0 to 5, by slot, the stored order kept
    // between equal slots.
    struct LocalItems {
        double gameTime = 0;
        std::vector<std::int64_t> itemIDs;

        friend bool operator==(const LocalItems&, const LocalItems&) = default;
    };

    std::optional<RecordingScoreboardSnapshot> lastSnapshot;
    // In the snapshots' stored order.
    std::vector<LocalItems> localItems;

    // Takes in the next snapshot in stored order. Without a search no local player is ever found.
    void add(RecordingScoreboardSnapshot snapshot, const std::optional<LocalPlayerSearch>& search);

    static ScoreboardDigest of(std::vector<RecordingScoreboardSnapshot> snapshots,
                               const std::optional<LocalPlayerSearch>& search);

    friend bool operator==(const ScoreboardDigest&, const ScoreboardDigest&) = default;
};

// The ids of a player's items in slots 0 to 5, by slot, the stored order kept between equal slots.
std::vector<std::int64_t> slottedItemIDs(const RecordingScoreboardPlayer& player);

}  // namespace kestrum

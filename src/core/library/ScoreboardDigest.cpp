#include "core/library/ScoreboardDigest.h"

#include <algorithm>
#include <utility>

namespace kestrum {

namespace {

constexpr std::int64_t kFirstItemSlot = 0;
constexpr std::int64_t kLastItemSlot = 5;

}  // namespace

void ScoreboardDigest::add(RecordingScoreboardSnapshot snapshot,
                           const std::optional<LocalPlayerSearch>& search) {
    if (search) {
        if (const RecordingScoreboardPlayer* player = search->playerIn(snapshot))
            localItems.push_back({snapshot.gameTime, slottedItemIDs(*player)});
    }
    lastSnapshot = std::move(snapshot);
}

ScoreboardDigest ScoreboardDigest::of(std::vector<RecordingScoreboardSnapshot> snapshots,
                                      const std::optional<LocalPlayerSearch>& search) {
    ScoreboardDigest digest;
    for (auto& snapshot : snapshots) digest.add(std::move(snapshot), search);
    return digest;
}

std::vector<std::int64_t> slottedItemIDs(const RecordingScoreboardPlayer& player) {
    std::vector<const RecordingScoreboardPlayer::Item*> slotted;
    for (const auto& item : player.items) {
        if (item.slot >= kFirstItemSlot && item.slot <= kLastItemSlot) slotted.push_back(&item);
    }
    std::stable_sort(slotted.begin(), slotted.end(),
                     [](const auto* a, const auto* b) { return a->slot < b->slot; });
    std::vector<std::int64_t> ids;
    ids.reserve(slotted.size());
    for (const auto* item : slotted) ids.push_back(item->itemID);
    return ids;
}

}  // namespace kestrum

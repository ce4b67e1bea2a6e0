#include "core/telemetry/live/ScoreboardSnapshotRule.h"

#include <map>
#include <string>

namespace kestrum {

namespace {

std::string playerKey(const RecordingScoreboardPlayer& player) {
    return player.team + "-" + player.summonerName + "-" + player.championName;
}

bool shownStateDiffers(const RecordingScoreboardPlayer& a, const RecordingScoreboardPlayer& b) {
    return a.isDead != b.isDead || a.level != b.level || a.items != b.items || a.scores != b.scores ||
           a.roleQuestCompleted != b.roleQuestCompleted ||
           a.positionQuestCompleted != b.positionQuestCompleted;
}

}  // namespace

bool scoreboardPlayersChanged(const std::vector<RecordingScoreboardPlayer>& oldPlayers,
                              const std::vector<RecordingScoreboardPlayer>& newPlayers) {
    if (oldPlayers.size() != newPlayers.size()) return true;
    // A later row with the same key replaces an earlier one.
    std::map<std::string, const RecordingScoreboardPlayer*> oldByKey;
    for (const auto& player : oldPlayers) oldByKey[playerKey(player)] = &player;
    for (const auto& player : newPlayers) {
        const auto old = oldByKey.find(playerKey(player));
        if (old == oldByKey.end() || shownStateDiffers(*old->second, player)) return true;
    }
    return false;
}

std::optional<RecordingScoreboardSnapshot> ScoreboardSnapshotRule::offer(
    double elapsedSeconds, double gameTimeSeconds, const std::vector<RecordingScoreboardPlayer>& players) {
    const bool changed = !lastSnapshotPlayers_ || scoreboardPlayersChanged(*lastSnapshotPlayers_, players);
    if (players.empty()) return std::nullopt;
    if (elapsedSeconds - lastSnapshotVideoTime_ < kLongestGapSeconds && !changed) return std::nullopt;
    lastSnapshotPlayers_ = players;
    lastSnapshotVideoTime_ = elapsedSeconds;
    return RecordingScoreboardSnapshot{elapsedSeconds, gameTimeSeconds, players};
}

}  // namespace kestrum

#include "SyntheticScoreboard.h"

#include "SyntheticEventGenerator.h"
#include "SyntheticRandom.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <string>

namespace kestrum::synthetic {

namespace {

constexpr double kFirstMinionsSeconds = 90;
constexpr int kKills = 0;
constexpr int kDeaths = 1;
constexpr int kAssists = 2;

std::optional<int> playerOf(const std::optional<std::string>& riotId) {
    static const std::map<std::string, int> indexByRiotID = [] {
        std::map<std::string, int> index;
        for (int player = 0; player < kPlayerCount; ++player) {
            index.emplace(syntheticRoster()[static_cast<std::size_t>(player)].riotId(), player);
        }
        return index;
    }();
    if (!riotId) return std::nullopt;
    const auto found = indexByRiotID.find(*riotId);
    if (found == indexByRiotID.end()) return std::nullopt;
    return found->second;
}

std::vector<RecordingScoreboardPlayer::Item> itemsAt(const std::vector<SyntheticPurchase>& path,
                                                     double gameTime) {
    std::array<std::optional<RecordingScoreboardPlayer::Item>, 7> slots;
    for (const SyntheticPurchase& purchase : path) {
        if (purchase.gameTime > gameTime) break;
        slots[static_cast<std::size_t>(purchase.slot)] = RecordingScoreboardPlayer::Item{
            1, purchase.displayName, purchase.itemID, purchase.price, purchase.slot};
    }
    std::vector<RecordingScoreboardPlayer::Item> items;
    for (const auto& slot : slots) {
        if (slot) items.push_back(*slot);
    }
    return items;
}

RecordingScoreboardPlayer playerAt(int index, double gameTime, const SyntheticScoreKeeper& scores,
                                   const std::vector<SyntheticPurchase>& path) {
    const SyntheticPlayerProfile& profile = syntheticRoster()[static_cast<std::size_t>(index)];
    RecordingScoreboardPlayer player;
    player.championName = profile.championName;
    player.rawChampionName = std::string("game_character_displayname_") + profile.championKey;
    player.items = itemsAt(path, gameTime);
    player.level = std::min<std::int64_t>(18, 1 + static_cast<std::int64_t>(gameTime / 135));
    player.position = profile.position;
    if (const std::optional<double>& death = scores.lastDeath(index)) {
        const double left = *death + respawnSeconds(*death) - gameTime;
        player.isDead = left > 0;
        player.respawnTimer = std::max(left, 0.0);
    }
    player.riotId = profile.riotId();
    player.riotIdGameName = profile.gameName;
    player.riotIdTagLine = profile.tagLine;
    const auto& [kills, deaths, assists] = scores.killsDeathsAssists()[static_cast<std::size_t>(index)];
    const double farmingMinutes = std::max(gameTime - kFirstMinionsSeconds, 0.0) / 60;
    player.scores = {assists, static_cast<std::int64_t>(profile.creepScorePerMinute * farmingMinutes), deaths,
                     kills};
    player.summonerName = *player.riotId;
    player.team = profile.team;
    return player;
}

}  // namespace

void SyntheticScoreKeeper::advance(const std::vector<RecordingEvent>& events, double gameTime) {
    for (; next_ < events.size() && events[next_].videoTime <= gameTime; ++next_) {
        const RecordingEvent& event = events[next_];
        if (event.name != "ChampionKill" && event.name != "FirstBlood") continue;
        if (const std::optional<int> killer = playerOf(event.killerName))
            ++scores_[static_cast<std::size_t>(*killer)][kKills];
        if (const std::optional<int> victim = playerOf(event.victimName)) {
            ++scores_[static_cast<std::size_t>(*victim)][kDeaths];
            lastDeath_[static_cast<std::size_t>(*victim)] = event.videoTime;
        }
        for (const std::string& assister : event.assisterNames.value_or(std::vector<std::string>{})) {
            if (const std::optional<int> player = playerOf(assister))
                ++scores_[static_cast<std::size_t>(*player)][kAssists];
        }
    }
}

std::vector<RecordingScoreboardSnapshot> syntheticScoreboard(const std::vector<RecordingEvent>& events,
                                                             double gameSeconds, double loadingSeconds,
                                                             SyntheticRandom& random) {
    std::array<std::vector<SyntheticPurchase>, kPlayerCount> paths;
    for (int index = 0; index < kPlayerCount; ++index)
        paths[static_cast<std::size_t>(index)] = syntheticBuildPath(index, random);
    SyntheticScoreKeeper scores;
    std::vector<RecordingScoreboardSnapshot> snapshots;
    const auto count = static_cast<int>(std::floor(gameSeconds)) + 1;
    snapshots.reserve(static_cast<std::size_t>(count));
    for (int second = 0; second < count; ++second) {
        const double gameTime = second;
        scores.advance(events, gameTime);
        RecordingScoreboardSnapshot snapshot;
        snapshot.videoTime = gameTime + loadingSeconds + random.between(0, 0.01);
        // The service's clock reads a little off now and then, and stalls for a moment once in a while.
        snapshot.gameTime = gameTime + random.between(-0.03, 0.03) - (random.chance(0.004) ? 2.5 : 0);
        snapshot.players.reserve(kPlayerCount);
        for (int index = 0; index < kPlayerCount; ++index) {
            snapshot.players.push_back(
                playerAt(index, gameTime, scores, paths[static_cast<std::size_t>(index)]));
        }
        snapshots.push_back(std::move(snapshot));
    }
    return snapshots;
}

}  // namespace kestrum::synthetic

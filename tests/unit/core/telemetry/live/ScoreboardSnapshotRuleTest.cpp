#include "core/telemetry/live/ScoreboardSnapshotRule.h"
#include "support/ScoreboardPlayerRow.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace kestrum {
namespace {

using Players = std::vector<RecordingScoreboardPlayer>;

RecordingScoreboardPlayer row(std::string name, std::string champion, std::string team) {
    RecordingScoreboardPlayer player =
        test::scoreboardPlayer(std::move(name), std::move(champion), std::move(team));
    player.level = 3;
    player.items = {{1, "Doran's Blade", 1055, 450, 0}};
    return player;
}

Players lobby() {
    return {row("Kestrel", "Ahri", "ORDER"), row("Rook", "Garen", "CHAOS")};
}

TEST(scoreboardPlayersChanged, ComparesWhatTheScoreboardShows) {
    struct Case {
        const char* name;
        std::function<void(Players&)> edit;
        bool changed;
    };
    const std::vector<Case> cases = {
        {"identical", [](Players&) {}, false},
        {"respawn timer", [](Players& p) { p[0].respawnTimer = 12.5; }, false},
        {"position", [](Players& p) { p[0].position = "MIDDLE"; }, false},
        {"riot id", [](Players& p) { p[0].riotId = "Kestrel#EUW"; }, false},
        {"raw champion", [](Players& p) { p[0].rawChampionName = "Ahri"; }, false},
        {"order of rows", [](Players& p) { std::swap(p[0], p[1]); }, false},
        {"death", [](Players& p) { p[1].isDead = true; }, true},
        {"level", [](Players& p) { p[0].level = 4; }, true},
        {"kill", [](Players& p) { p[0].scores.kills = 1; }, true},
        {"assist", [](Players& p) { p[0].scores.assists = 1; }, true},
        {"death count", [](Players& p) { p[0].scores.deaths = 1; }, true},
        {"creep score", [](Players& p) { p[0].scores.creepScore = 7; }, true},
        {"item bought",
         [](Players& p) {
             p[0].items.push_back({1, "Ward", 3340, 0, 6});
         },
         true},
        {"item count", [](Players& p) { p[0].items[0].count = 2; }, true},
        {"item slot", [](Players& p) { p[0].items[0].slot = 1; }, true},
        {"item price", [](Players& p) { p[0].items[0].price = 1; }, true},
        {"item name", [](Players& p) { p[0].items[0].displayName = "x"; }, true},
        {"item id", [](Players& p) { p[0].items[0].itemID = 1; }, true},
        {"role quest set", [](Players& p) { p[0].roleQuestCompleted = false; }, true},
        {"position quest set", [](Players& p) { p[0].positionQuestCompleted = true; }, true},
        {"team", [](Players& p) { p[0].team = "CHAOS"; }, true},
        {"summoner name", [](Players& p) { p[0].summonerName = "Other"; }, true},
        {"champion", [](Players& p) { p[0].championName = "Lux"; }, true},
        {"a player more", [](Players& p) { p.push_back(row("Wren", "Lux", "ORDER")); }, true},
        {"a player less", [](Players& p) { p.pop_back(); }, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Players edited = lobby();
        c.edit(edited);
        EXPECT_EQ(scoreboardPlayersChanged(lobby(), edited), c.changed);
    }
}

TEST(scoreboardPlayersChanged, ALaterRowWithTheSameKeyStandsForIt) {
    Players old = lobby();
    old.push_back(old[0]);
    old.back().level = 9;
    Players fresh = lobby();
    fresh.push_back(fresh[0]);
    // Both copies of Kestrel are compared with the later old row (level 9): the first differs.
    EXPECT_TRUE(scoreboardPlayersChanged(old, fresh));
    for (auto& player : fresh) {
        if (player.summonerName == "Kestrel") player.level = 9;
    }
    EXPECT_FALSE(scoreboardPlayersChanged(old, fresh));
}

TEST(ScoreboardSnapshotRule, TakesTheFirstListEveryChangeAndOneASecond) {
    struct Pass {
        double elapsed;
        std::function<void(Players&)> edit;  // applied to the lobby, cumulative across passes
        bool snapshot;
    };
    struct Case {
        const char* name;
        std::vector<Pass> passes;
    };
    const auto same = [](Players&) {};
    const std::vector<Case> cases = {
        {"unchanged pair", {{0.0, same, true}, {0.25, same, false}}},
        {"kill in second", {{0.0, same, true}, {0.25, [](Players& p) { p[0].scores.kills = 1; }, true}}},
        {"respawn timer alone",
         {{0.0, same, true}, {0.25, [](Players& p) { p[1].respawnTimer = 9; }, false}}},
        {"once a second",
         {{0.0, same, true},
          {0.25, same, false},
          {0.5, same, false},
          {0.75, same, false},
          {1.0, same, true},
          {1.99, same, false},
          {2.0, same, true}}},
        {"empty lists are skipped",
         {{0.0, [](Players& p) { p.clear(); }, false}, {0.25, [](Players& p) { p.clear(); }, false}}},
        // The comparison is with the last snapshot: a change and its undoing both count.
        {"change then back",
         {{0.0, same, true},
          {0.25, [](Players& p) { p[0].isDead = true; }, true},
          {0.5, same, true},
          {0.75, same, false}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ScoreboardSnapshotRule rule;
        for (const Pass& pass : c.passes) {
            SCOPED_TRACE(testing::Message() << "elapsed " << pass.elapsed);
            Players players = lobby();
            pass.edit(players);
            const auto snapshot = rule.offer(pass.elapsed, 100 + pass.elapsed, players);
            ASSERT_EQ(snapshot.has_value(), pass.snapshot);
            if (!snapshot) continue;
            EXPECT_EQ(snapshot->videoTime, pass.elapsed);
            EXPECT_EQ(snapshot->gameTime, 100 + pass.elapsed);
            EXPECT_EQ(snapshot->players, players);
        }
    }
}

}  // namespace
}  // namespace kestrum

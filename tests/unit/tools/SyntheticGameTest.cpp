#include "SyntheticGame.h"
#include "core/telemetry/SessionDocumentCodec.h"
#include "core/telemetry/vocabulary/DragonKind.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>

namespace kestrum::synthetic {
namespace {

const SyntheticGame& game() {
    static const SyntheticGame made = makeSyntheticGame();
    return made;
}

TEST(SyntheticGame, TheSameSeedGivesTheSameDocumentAndAnotherSeedAnother) {
    const Result<std::string> first = encodeSessionData(game().document);
    const Result<std::string> again = encodeSessionData(makeSyntheticGame().document);
    ASSERT_TRUE(first.ok() && again.ok());
    EXPECT_EQ(first.value(), again.value());
    EXPECT_NE(makeSyntheticGame({15}).document.events, game().document.events);
}

TEST(SyntheticGame, ReadsBackAsAValidSessionDocument) {
    const Result<std::string> bytes = encodeSessionData(game().document);
    ASSERT_TRUE(bytes.ok()) << bytes.error().description.toStdString();
    const Result<RecordingSessionData> decoded = decodeSessionData(bytes.value());
    ASSERT_TRUE(decoded.ok()) << decoded.error().description.toStdString();
    EXPECT_EQ(decoded.value(), game().document);
}

TEST(SyntheticGame, HoldsAboutSixHundredEventsOfEveryKindTheTimelineShows) {
    const std::vector<RecordingEvent>& events = game().document.events;
    EXPECT_GE(events.size(), 550U);
    EXPECT_LE(events.size(), 700U);
    std::map<std::string, int> names;
    std::set<std::string> dragonAssets;
    std::set<std::int64_t> streaks;
    bool localKill = false, localDeath = false, localAssist = false, redKill = false;
    for (const RecordingEvent& event : events) {
        ++names[event.name];
        if (event.name == "DragonKill")
            dragonAssets.insert(std::string(dragonAssetName(event.detail.value_or(""))));
        if (event.multiKillCount) streaks.insert(*event.multiKillCount);
        localKill = localKill || event.isLocalPlayerKill.value_or(false);
        localDeath = localDeath || event.isLocalPlayerDeath.value_or(false);
        localAssist = localAssist || event.isLocalPlayerAssist.value_or(false);
        redKill = redKill || (event.name == "ChampionKill" && event.team == RecordingTeam::red);
    }
    for (const char* name :
         {"GameStart", "FirstBlood", "ChampionKill", "Multikill", "Ace", "DragonKill", "HordeKill",
          "VoidGrubKill", "HeraldKill", "BaronKill", "TurretKilled", "InhibKilled", "NexusKill", "GameEnd"}) {
        EXPECT_GT(names[name], 0) << name;
    }
    EXPECT_EQ(names["FirstBlood"], 1);
    EXPECT_EQ(dragonAssets,
              (std::set<std::string>{"dragon_cloud", "dragon_chemtech", "dragon_elder", "dragon_hextech",
                                     "dragon_infernal", "dragon_mountain", "dragon_ocean"}));
    EXPECT_TRUE(streaks.count(2) && streaks.count(3)) << "double and triple kills";
    EXPECT_TRUE(localKill && localDeath && localAssist && redKill);
}

TEST(SyntheticGame, EventsAreNumberedInTimeOrderAndTheFirstKillIsFirstBlood) {
    const std::vector<RecordingEvent>& events = game().document.events;
    for (std::size_t index = 1; index < events.size(); ++index) {
        EXPECT_LE(events[index - 1].videoTime, events[index].videoTime);
        EXPECT_EQ(events[index].id, events[index - 1].id + 1);
    }
    const auto firstKill = std::find_if(events.begin(), events.end(), [](const RecordingEvent& event) {
        return event.name == "ChampionKill" || event.name == "FirstBlood";
    });
    ASSERT_NE(firstKill, events.end());
    EXPECT_EQ(firstKill->name, "FirstBlood");
    EXPECT_LT(events.back().videoTime, game().movieDurationSeconds);
}

TEST(SyntheticGame, TheScoreboardTakesASnapshotASecondAndAgreesWithTheTimeline) {
    const std::vector<RecordingScoreboardSnapshot>& snapshots = *game().document.scoreboard;
    ASSERT_GE(snapshots.size(), 2400U);
    for (std::size_t index = 1; index < snapshots.size(); ++index) {
        EXPECT_NEAR(snapshots[index].videoTime - snapshots[index - 1].videoTime, 1, 0.02);
    }
    std::map<std::string, std::int64_t> killsByTimeline;
    for (const RecordingEvent& event : game().document.events) {
        if ((event.name == "ChampionKill" || event.name == "FirstBlood") && event.killerChampion) {
            ++killsByTimeline[*event.killerName];
        }
    }
    std::int64_t killTotal = 0;
    for (const RecordingScoreboardPlayer& player : snapshots.back().players) {
        EXPECT_EQ(player.scores.kills, killsByTimeline[*player.riotId]) << *player.riotId;
        EXPECT_FALSE(player.items.empty());
        killTotal += player.scores.kills;
    }
    EXPECT_GT(killTotal, 300);
    EXPECT_EQ(snapshots.back().players.size(), 10U);
}

TEST(SyntheticGame, HasAfterGameDataWithRanksOnTwoTeams) {
    ASSERT_TRUE(game().document.matchData.has_value());
    const auto& participants = game().document.matchData->participants;
    ASSERT_EQ(participants.size(), 10U);
    const auto ranked = std::count_if(participants.begin(), participants.end(), [](const auto& participant) {
        return participant.currentRank.has_value();
    });
    EXPECT_GE(ranked, 5);
    std::set<std::int64_t> teams;
    for (const auto& participant : participants) teams.insert(participant.teamID);
    EXPECT_EQ(teams, (std::set<std::int64_t>{100, 200}));
    EXPECT_EQ(game().localChampionIdentifier, "Ahri");
}

}  // namespace
}  // namespace kestrum::synthetic

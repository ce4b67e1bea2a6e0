#include "core/telemetry/vocabulary/EventConversion.h"

#include "VocabularyFixtures.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace kestrum {
namespace {

using test::liveEvent;
using test::scoreboardPlayer;

std::vector<RecordingScoreboardPlayer> twoTeams() {
    auto azir = scoreboardPlayer("Frost Harbor", "Azir", "CHAOS");
    azir.rawChampionName = "game_character_displayname_Azir";
    auto leeSin = scoreboardPlayer("Gilded Moth", "Lee Sin", "chaos");
    leeSin.rawChampionName = "game_character_displayname_LeeSin";
    return {scoreboardPlayer("Ashen Kite", "Kayn", "ORDER"),
            scoreboardPlayer("Brine Sparrow", "Ahri", "ORDER"), azir, leeSin};
}

std::vector<RecordingEvent> convert(const std::vector<LiveEvent>& feed,
                                    const std::vector<RecordingScoreboardPlayer>& players = twoTeams(),
                                    std::optional<std::string> activePlayerName = "Ashen Kite",
                                    const KnownEventIDs& knownIDs = {}) {
    return convertEvents(feed, players, activePlayerName, 100.0, 100.0, knownIDs);
}

LiveEvent kill(std::int64_t id, double timeSeconds, std::string killer, std::string victim) {
    LiveEvent row = liveEvent(id, "ChampionKill", timeSeconds);
    row.killerName = std::move(killer);
    row.victimName = std::move(victim);
    return row;
}

TEST(convertEvents, EarliestChampionKillOfThisAnswerIsFirstBlood) {
    LiveEvent ownFirstBlood = liveEvent(9, "FirstBlood", 90.0);
    const std::vector<LiveEvent> feed{kill(1, 100.0, "Ashen Kite", "Frost Harbor"), ownFirstBlood,
                                      kill(2, 90.0, "Gilded Moth", "Brine Sparrow"),
                                      kill(3, 90.0, "Brine Sparrow", "Gilded Moth")};
    const auto events = convert(feed);
    ASSERT_EQ(events.size(), 3u);  // the feed's own "FirstBlood" row is dropped
    EXPECT_EQ(events[0].name, "ChampionKill");
    EXPECT_EQ(events[1].name, "FirstBlood");  // earliest time; the first of the two at 90.0
    EXPECT_EQ(events[1].detail, "Gilded Moth \u2192 Brine Sparrow");
    EXPECT_EQ(events[1].team, RecordingTeam::red);
    EXPECT_EQ(events[2].name, "ChampionKill");

    // A later answer that no longer holds kill 2 names the earliest kill it does hold, even a known one.
    const auto later = convert({kill(1, 100.0, "Ashen Kite", "Frost Harbor"), kill(3, 95.0, "A", "B")},
                               twoTeams(), "Ashen Kite", KnownEventIDs{3});
    ASSERT_EQ(later.size(), 1u);
    EXPECT_EQ(later[0].name, "ChampionKill");
    const auto withoutKnown = convert({kill(1, 100.0, "Ashen Kite", "Frost Harbor")});
    EXPECT_EQ(withoutKnown.at(0).name, "FirstBlood");
    EXPECT_EQ(withoutKnown.at(0).isLocalPlayerKill, true);  // the renamed kill keeps a kill's flags
}

TEST(convertEvents, MultikillTakesTheVictimOfItsKill) {
    struct Case {
        const char* label;
        std::vector<LiveEvent> kills;
        std::optional<std::string> expectedVictim;
    };
    const std::vector<Case> cases{
        {"exactly 2.0 seconds earlier counts",
         {kill(1, 98.0, "Brine Sparrow", "Frost Harbor")},
         "Frost Harbor"},
        {"2.01 seconds earlier does not", {kill(1, 97.99, "Brine Sparrow", "Frost Harbor")}, std::nullopt},
        {"a kill after the multikill does not",
         {kill(1, 100.5, "Brine Sparrow", "Frost Harbor")},
         std::nullopt},
        {"another killer does not", {kill(1, 99.5, "Gilded Moth", "Ashen Kite")}, std::nullopt},
        {"the killer's name in another case and spacing",
         {kill(1, 99.5, " brine sparrow\n", "Frost Harbor")},
         "Frost Harbor"},
        {"the latest kill wins",
         {kill(1, 99.0, "Brine Sparrow", "Frost Harbor"), kill(2, 99.5, "Brine Sparrow", "Gilded Moth"),
          kill(3, 98.5, "Brine Sparrow", "Ashen Kite")},
         "Gilded Moth"},
        {"the first in the feed wins a tie",
         {kill(1, 99.5, "Brine Sparrow", "Frost Harbor"), kill(2, 99.5, "Brine Sparrow", "Gilded Moth")},
         "Frost Harbor"},
        {"the kill at the same time counts", {kill(1, 100.0, "Brine Sparrow", "Gilded Moth")}, "Gilded Moth"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        std::vector<LiveEvent> feed = c.kills;
        LiveEvent multikill = liveEvent(50, "Multikill", 100.0);
        multikill.killerName = "Brine Sparrow";
        multikill.killStreak = 2;
        feed.push_back(multikill);
        KnownEventIDs known;
        for (const auto& row : c.kills) known.insert(row.id);
        const auto events = convert(feed, twoTeams(), "Ashen Kite", known);
        ASSERT_EQ(events.size(), 1u);
        EXPECT_EQ(events[0].victimName, c.expectedVictim);
        EXPECT_EQ(events[0].multiKillCount, 2);
        EXPECT_EQ(events[0].killerChampion, "Ahri");
    }
}

TEST(convertEvents, ObeliskRowsCreditTheSideOppositeAzir) {
    LiveEvent obelisk = liveEvent(7, "TurretKilled", 60.0);
    obelisk.killerName = " OBELISK ";
    obelisk.turretKilled = "Turret_T2_L_03_A";

    auto azirBlue = twoTeams();
    azirBlue[2].team = "ORDER";
    auto noAzir = twoTeams();
    noAzir.erase(noAzir.begin() + 2);
    auto azirWithoutSide = twoTeams();
    azirWithoutSide[2].team = "NEUTRAL";

    const std::vector<std::tuple<const char*, std::vector<RecordingScoreboardPlayer>, RecordingTeam>> cases{
        {"Azir on red", twoTeams(), RecordingTeam::blue},
        {"Azir on blue", azirBlue, RecordingTeam::red},
        // Without a known Azir the usual steps apply: the coded owner (red) lost the turret.
        {"no Azir", noAzir, RecordingTeam::blue},
        {"Azir without a side", azirWithoutSide, RecordingTeam::blue},
    };
    for (const auto& [label, players, team] : cases) {
        SCOPED_TRACE(label);
        const auto events = convert({obelisk}, players);
        ASSERT_EQ(events.size(), 1u);
        EXPECT_EQ(events[0].team, team);
        EXPECT_EQ(events[0].killerName, std::nullopt);
        EXPECT_EQ(events[0].victimName, "Obelisk");
        EXPECT_EQ(events[0].detail, " OBELISK ");  // the detail reads the row's own killer
        EXPECT_EQ(events[0].victimChampion, std::nullopt);
    }
}

TEST(convertEvents, TeamResolutionTakesTheFirstStepThatGivesATeam) {
    struct Case {
        const char* label;
        LiveEvent row;
        std::optional<RecordingTeam> team;
    };
    auto row = [](const char* name, std::optional<std::string> killer, std::optional<std::string> victim) {
        LiveEvent r = liveEvent(1, name, 50.0);
        r.killerName = std::move(killer);
        r.victimName = std::move(victim);
        return r;
    };
    auto with = [](LiveEvent r, auto member, std::string value) {
        r.*member = std::move(value);
        return r;
    };
    const std::vector<Case> cases{
        {"killer by name beats the victim", row("ChampionKill", "Gilded Moth", "Frost Harbor"),
         RecordingTeam::red},
        {"killer by champion name", row("ChampionKill", "lee sin", "Ashen Kite"), RecordingTeam::red},
        {"killer's structure code", row("ChampionKill", "Turret_T1_C_05_A", "Frost Harbor"),
         RecordingTeam::blue},
        {"minion code", row("TurretKilled", "Minion_T200L0S40N0999", std::nullopt), RecordingTeam::red},
        {"acer by name", with(row("Ace", std::nullopt, std::nullopt), &LiveEvent::acer, "Brine Sparrow"),
         RecordingTeam::blue},
        {"acing team word CHAOS",
         with(row("Ace", std::nullopt, std::nullopt), &LiveEvent::acingTeam, "CHAOS"), RecordingTeam::red},
        {"acing team word blue", with(row("Ace", "Someone", std::nullopt), &LiveEvent::acingTeam, "blue"),
         RecordingTeam::blue},
        {"acing team word Red", with(row("Ace", std::nullopt, std::nullopt), &LiveEvent::acingTeam, "Red"),
         RecordingTeam::red},
        {"unknown acing team word goes on",
         with(row("Ace", std::nullopt, "Gilded Moth"), &LiveEvent::acingTeam, "X"), RecordingTeam::blue},
        // A turret's code is met in the classic game (row 32).
        {"inhibitor code credits the other side",
         with(row("InhibKilled", std::nullopt, std::nullopt), &LiveEvent::inhibKilled, "Barracks_T2_R1"),
         RecordingTeam::blue},
        {"structure code from the victim name", row("InhibKilled", "Nobody", "Barracks_T2_C1"),
         RecordingTeam::blue},
        {"structure codes only on structure rows", row("BaronKill", "Nobody", "Barracks_T2_C1"),
         std::nullopt},
        {"victim by name gives the other side", row("ChampionKill", "Unknown", "Ashen Kite"),
         RecordingTeam::red},
        {"nothing known", row("DragonKill", "Unknown", "Unknown"), std::nullopt},
        {"absent names", row("GameStart", std::nullopt, std::nullopt), std::nullopt},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        const auto events = convert({c.row});
        ASSERT_EQ(events.size(), 1u);
        EXPECT_EQ(events[0].team, c.team);
    }
}

TEST(convertEvents, DetailReadsTheRowsOwnNames) {
    struct Case {
        const char* label;
        std::optional<std::string> killer;
        std::optional<std::string> victim;
        std::optional<std::string> dragonType;
        std::optional<std::string> detail;
    };
    const std::vector<Case> cases{
        {"dragon kind first", "Ashen Kite", "Elder", "Elder", "Elder"},
        {"an empty dragon kind is none", "Ashen Kite", std::nullopt, "", "Ashen Kite"},
        {"killer and victim", "Ashen Kite", "Frost Harbor", std::nullopt, "Ashen Kite \u2192 Frost Harbor"},
        {"empty victim", "Ashen Kite", "", std::nullopt, "Ashen Kite"},
        {"empty killer", "", "Frost Harbor", std::nullopt, ""},
        {"killer alone", "Ashen Kite", std::nullopt, std::nullopt, "Ashen Kite"},
        {"no killer", std::nullopt, "Frost Harbor", std::nullopt, std::nullopt},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        LiveEvent row = liveEvent(1, "DragonKill", 10.0);
        row.killerName = c.killer;
        row.victimName = c.victim;
        row.dragonType = c.dragonType;
        EXPECT_EQ(convert({row}).at(0).detail, c.detail);
    }
}

TEST(convertEvents, LocalPlayerFlagsFollowTheAliasesOfTheActivePlayer) {
    struct Case {
        const char* label;
        LiveEvent row;
        std::optional<std::string> activePlayerName;
        bool kill;
        bool death;
        bool assist;
    };
    LiveEvent assisted = kill(1, 10.0, "Brine Sparrow", "Frost Harbor");
    assisted.assisters = std::vector<std::string>{"Gilded Moth", "\tKAYN "};
    LiveEvent ace = liveEvent(1, "Ace", 10.0);
    ace.acer = "Ashen Kite";
    LiveEvent multikill = liveEvent(1, "Multikill", 10.0);
    multikill.killerName = "Kayn";
    LiveEvent dragon = liveEvent(1, "DragonKill", 10.0);
    dragon.killerName = "Ashen Kite";
    dragon.assisters = std::vector<std::string>{"Ashen Kite"};
    LiveEvent baronDeath = liveEvent(1, "BaronKill", 10.0);
    baronDeath.victimName = "Ashen Kite";
    const std::vector<Case> cases{
        {"kill by summoner name", kill(1, 10.0, "Ashen Kite", "Frost Harbor"), "Ashen Kite", true, false,
         false},
        {"kill by champion name", kill(1, 10.0, "Kayn", "Frost Harbor"), "ashen kite ", true, false, false},
        {"death", kill(1, 10.0, "Frost Harbor", " ashen KITE"), "Ashen Kite", false, true, false},
        {"assist by champion name", assisted, "Ashen Kite", false, false, true},
        {"ace by the acer", ace, "Ashen Kite", true, false, false},
        {"multikill", multikill, "Ashen Kite", true, false, false},
        {"a dragon is never a local kill", dragon, "Ashen Kite", false, false, false},
        {"only champion kills carry deaths", baronDeath, "Ashen Kite", false, false, false},
        {"no active name yet", kill(1, 10.0, "Ashen Kite", "Frost Harbor"), std::nullopt, false, false,
         false},
        {"an active name nobody has stands alone", kill(1, 10.0, "Somebody", "Ashen Kite"), "somebody", true,
         false, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        const auto events = convert({c.row}, twoTeams(), c.activePlayerName);
        ASSERT_EQ(events.size(), 1u);
        EXPECT_EQ(events[0].isLocalPlayerKill, c.kill);
        EXPECT_EQ(events[0].isLocalPlayerDeath, c.death);
        EXPECT_EQ(events[0].isLocalPlayerAssist, c.assist);
    }
}

TEST(convertEvents, PlacesRowsByTheOffsetOfThisPass) {
    const std::vector<std::tuple<double, double, double, double>> cases{
        // elapsed, gameTime, event time, videoTime
        {95.0, 100.0, 12.0, 7.0},
        {80.0, 100.0, 12.0, 0.0},
        {3.5, 0.25, 0.04, 3.29},
        {10.0, 10.0, 10.0, 10.0},
    };
    for (const auto& [elapsed, gameTime, time, videoTime] : cases) {
        SCOPED_TRACE(testing::Message() << elapsed << " " << gameTime << " " << time);
        const auto events = convertEvents({liveEvent(1, "GameStart", time)}, {}, std::nullopt, elapsed,
                                          gameTime, KnownEventIDs{});
        ASSERT_EQ(events.size(), 1u);
        EXPECT_DOUBLE_EQ(events[0].videoTime, videoTime);
    }
}

TEST(convertEvents, SkipsDroppedNamesKnownIDsAndRepeatedIDs) {
    LiveEvent quest = liveEvent(4, "PositionQUESTCompleted", 30.0);
    const std::vector<LiveEvent> feed{liveEvent(1, "GameStart", 0.1),   liveEvent(2, "MinionsSpawning", 65.0),
                                      liveEvent(3, "BaronKill", 20.0),  quest,
                                      liveEvent(3, "DragonKill", 21.0), liveEvent(5, "GameEnd", 40.0)};
    const auto events = convert(feed, {}, std::nullopt, KnownEventIDs{5});
    ASSERT_EQ(events.size(), 3u);
    EXPECT_EQ(events[0].name, "GameStart");
    EXPECT_EQ(events[1].name, "BaronKill");  // the first form of id 3 stands
    EXPECT_EQ(events[2].name, "PositionQUESTCompleted");
    for (const auto& event : events) {
        EXPECT_EQ(event.multiKillCount, std::nullopt);
        EXPECT_EQ(event.isLocalPlayerKill, false);  // present and false
        EXPECT_EQ(event.isLocalPlayerDeath, false);
        EXPECT_EQ(event.isLocalPlayerAssist, false);
    }
}

TEST(convertEvents, LaterPlayerWinsASharedAliasAndEmptyAliasesNameNobody) {
    // One for All: both sides play Ahri; the later player on the list owns the champion name.
    auto players = twoTeams();
    players.push_back(scoreboardPlayer("Jade Tern", "Ahri", "CHAOS"));
    players.push_back(scoreboardPlayer("", "", "ORDER"));
    LiveEvent byChampion = kill(1, 10.0, "Ahri", "Kayn");
    LiveEvent byNobody = kill(2, 11.0, "", "  ");
    byNobody.name = "DragonKill";
    const auto events = convert({byChampion, byNobody}, players);
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[0].team, RecordingTeam::red);
    EXPECT_EQ(events[0].killerChampion, "Ahri");
    EXPECT_EQ(events[0].victimChampion, "Kayn");
    EXPECT_EQ(events[1].team, std::nullopt);
    EXPECT_EQ(events[1].killerChampion, std::nullopt);
    EXPECT_EQ(events[1].victimChampion, std::nullopt);
}

}  // namespace
}  // namespace kestrum

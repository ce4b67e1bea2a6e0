#include "core/telemetry/vocabulary/EventConversion.h"
#include "core/telemetry/vocabulary/EventPresentation.h"
#include "core/telemetry/vocabulary/LiveGamePayloadCodec.h"

#include "VocabularyFixtures.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

// The expected rows below name only the members a row has; every member left out is meant to be absent.
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"

namespace kestrum {
namespace {

using test::vocabularyFixture;

constexpr auto blue = RecordingTeam::blue;
constexpr auto red = RecordingTeam::red;
constexpr double kMovieAheadOfGameSeconds = 3.5;

// What a row of a fixture game must become; absent members must be absent in the row.
struct ExpectedRow {
    std::int64_t id = 0;
    std::string name;
    std::optional<RecordingTeam> team;
    std::optional<std::string> detail;
    std::optional<std::string> killerName;
    std::optional<std::string> victimName;
    std::optional<std::string> killerChampion;
    std::optional<std::string> victimChampion;
    bool kill = false;
    bool death = false;
    bool assist = false;
    std::optional<std::int64_t> multiKillCount;
    std::string title;
};

struct Game {
    std::vector<LiveEvent> feed;
    std::vector<RecordingScoreboardPlayer> players;
    std::string activePlayerName;
};

Game loadGame(const std::string& name) {
    Game game;
    auto feed = decodeEventData(vocabularyFixture(("eventdata-" + name + ".json").c_str()));
    auto players = decodePlayerList(vocabularyFixture(("playerlist-" + name + ".json").c_str()));
    auto active = decodeActivePlayerName(vocabularyFixture(("activeplayername-" + name + ".json").c_str()));
    EXPECT_TRUE(feed.ok() && players.ok()) << name;
    if (feed.ok()) game.feed = std::move(feed).value();
    if (players.ok()) game.players = std::move(players).value();
    game.activePlayerName = active.ok() ? std::move(active).value() : "Ashen Kite";
    return game;
}

void expectGame(const std::string& name, const std::vector<ExpectedRow>& expected) {
    const Game game = loadGame(name);
    ASSERT_FALSE(game.feed.empty());
    const double gameTime = game.feed.back().time;
    const auto events = convertEvents(game.feed, game.players, game.activePlayerName,
                                      gameTime + kMovieAheadOfGameSeconds, gameTime, KnownEventIDs{});
    std::map<std::int64_t, double> timeByID;
    for (const auto& row : game.feed) timeByID.emplace(row.id, row.time);
    ASSERT_EQ(events.size(), expected.size());
    for (std::size_t i = 0; i < events.size(); ++i) {
        const RecordingEvent& e = events[i];
        const ExpectedRow& x = expected[i];
        SCOPED_TRACE(testing::Message() << name << " row " << x.id << " " << x.name);
        EXPECT_EQ(e.id, x.id);
        EXPECT_EQ(e.name, x.name);
        EXPECT_NEAR(e.videoTime, timeByID[x.id] + kMovieAheadOfGameSeconds, 1e-9);
        EXPECT_EQ(e.team, x.team);
        EXPECT_EQ(e.detail, x.detail);
        EXPECT_EQ(e.killerName, x.killerName);
        EXPECT_EQ(e.victimName, x.victimName);
        EXPECT_EQ(e.killerChampion, x.killerChampion);
        EXPECT_EQ(e.victimChampion, x.victimChampion);
        EXPECT_EQ(e.isLocalPlayerKill, x.kill);
        EXPECT_EQ(e.isLocalPlayerDeath, x.death);
        EXPECT_EQ(e.isLocalPlayerAssist, x.assist);
        EXPECT_EQ(e.multiKillCount, x.multiKillCount);
        EXPECT_EQ(eventDisplayTitle(e), x.title);
    }
}

ExpectedRow champKill(std::int64_t id, RecordingTeam team, std::string killer, std::string killerChampion,
                      std::string victim, std::string victimChampion) {
    return {.id = id,
            .name = "ChampionKill",
            .team = team,
            .detail = killer + " \u2192 " + victim,
            .killerName = killer,
            .victimName = victim,
            .killerChampion = killerChampion,
            .victimChampion = victimChampion,
            .title = "Champion kill"};
}

ExpectedRow multikill(std::int64_t id, std::int64_t count, std::string victim, std::string victimChampion,
                      std::string title) {
    return {.id = id,
            .name = "Multikill",
            .team = blue,
            .detail = "Dusk Lantern",
            .killerName = "Dusk Lantern",
            .victimName = victim,
            .killerChampion = "Jinx",
            .victimChampion = victimChampion,
            .multiKillCount = count,
            .title = title};
}

ExpectedRow dragon(std::int64_t id, RecordingTeam team, std::string kind, std::string killer,
                   std::string killerChampion) {
    return {.id = id,
            .name = "DragonKill",
            .team = team,
            .detail = kind,
            .killerName = killer,
            .killerChampion = killerChampion,
            .title = "Dragon"};
}

ExpectedRow objective(std::int64_t id, std::string name, RecordingTeam team, std::string killer,
                      std::string killerChampion, std::string title) {
    return {.id = id,
            .name = name,
            .team = team,
            .detail = killer,
            .killerName = killer,
            .killerChampion = killerChampion,
            .title = title};
}

// A structure row; a player who destroys it brings a champion, a minion or the obelisk none.
ExpectedRow structure(std::int64_t id, std::string name, RecordingTeam team,
                      std::optional<std::string> killer, std::string detail, std::string victim,
                      std::string title, std::optional<std::string> killerChampion = std::nullopt) {
    return {.id = id,
            .name = name,
            .team = team,
            .detail = detail,
            .killerName = killer,
            .victimName = victim,
            .killerChampion = killerChampion,
            .title = title};
}

TEST(convertEvents, ClassicGameFeedBecomesTheTimeline) {
    ExpectedRow firstBlood = champKill(2, red, "Gilded Moth", "LeeSin", "Ashen Kite", "Kayn");
    firstBlood.name = "FirstBlood";
    firstBlood.death = true;
    firstBlood.title = "First blood";
    ExpectedRow localKill = champKill(4, blue, "Ashen Kite", "Kayn", "Hollow Reed", "Darius");
    localKill.kill = true;
    ExpectedRow assisted = champKill(11, blue, "Brine Sparrow", "Ahri", "Frost Harbor", "Azir");
    assisted.assist = true;
    ExpectedRow doubleKill = multikill(13, 2, "Jade Tern", "Lulu", "Double kill");
    doubleKill.detail = doubleKill.killerName = "Brine Sparrow";
    doubleKill.killerChampion = "Ahri";
    ExpectedRow pentaKill = champKill(25, blue, "Dusk Lantern", "Jinx", "Jade Tern", "Lulu");
    pentaKill.assist = true;
    ExpectedRow ace{.id = 27,
                    .name = "Ace",
                    .team = blue,
                    .killerName = "Dusk Lantern",
                    .killerChampion = "Jinx",
                    .title = "Ace"};

    expectGame("classic-game",
               {
                   {.id = 0, .name = "GameStart", .title = "Game started"},
                   firstBlood,
                   localKill,
                   dragon(5, blue, "Fire", "Ashen Kite", "Kayn"),
                   objective(6, "HordeKill", red, "Gilded Moth", "LeeSin", "Void Grub"),
                   structure(8, "TurretKilled", blue, "Minion_T100L1S05N0106", "Minion_T100L1S05N0106",
                             "Turret_T2_C_05_A", "Turret"),
                   structure(9, "TurretKilled", blue, std::nullopt, "Obelisk", "Obelisk", "Turret"),
                   objective(10, "HeraldKill", blue, "Brine Sparrow", "Ahri", "Rift Herald"),
                   assisted,
                   champKill(12, blue, "Brine Sparrow", "Ahri", "Jade Tern", "Lulu"),
                   doubleKill,
                   dragon(14, red, "Earth", "Gilded Moth", "LeeSin"),
                   {.id = 15,
                    .name = "ChampionKill",
                    .team = red,
                    .detail = "Turret_T2_L_03_A \u2192 Copper Vale",
                    .killerName = "Turret_T2_L_03_A",
                    .victimName = "Copper Vale",
                    .victimChampion = "Garen",
                    .title = "Champion kill"},
                   dragon(16, blue, "Water", "Ashen Kite", "Kayn"),
                   {.id = 17, .name = "RoleQuestCompleted", .title = "Position quest completed"},
                   champKill(18, blue, "Dusk Lantern", "Jinx", "Frost Harbor", "Azir"),
                   champKill(19, blue, "Dusk Lantern", "Jinx", "Gilded Moth", "LeeSin"),
                   multikill(20, 2, "Gilded Moth", "LeeSin", "Double kill"),
                   champKill(21, blue, "Dusk Lantern", "Jinx", "Hollow Reed", "Darius"),
                   multikill(22, 3, "Hollow Reed", "Darius", "Triple kill"),
                   champKill(23, blue, "Dusk Lantern", "Jinx", "Iron Wren", "Kaisa"),
                   multikill(24, 4, "Iron Wren", "Kaisa", "Quadra kill"),
                   pentaKill,
                   multikill(26, 5, "Jade Tern", "Lulu", "Pentakill"),
                   ace,
                   dragon(28, red, "Air", "Gilded Moth", "LeeSin"),
                   objective(29, "BaronKill", red, "Gilded Moth", "LeeSin", "Baron"),
                   dragon(30, blue, "Hextech", "Ashen Kite", "Kayn"),
                   structure(31, "InhibKilled", red, "Hollow Reed", "Hollow Reed", "Barracks_T1_L1",
                             "Inhibitor", "Darius"),
                   structure(32, "TurretKilled", red, "SRU_RiftHerald17.1.1", "SRU_RiftHerald17.1.1",
                             "Turret_T1_C_06_A", "Turret"),
                   dragon(33, red, "Chemtech", "Gilded Moth", "LeeSin"),
                   dragon(35, blue, "Elder", "Ashen Kite", "Kayn"),
                   structure(36, "InhibKilled", blue, "Minion_T100L2S41N0813", "Minion_T100L2S41N0813",
                             "Barracks_T2_C1", "Inhibitor"),
                   {.id = 37, .name = "GameEnd", .title = "Game ended"},
               });
}

TEST(convertEvents, BotGameNamesPlayersByChampion) {
    ExpectedRow localKill = champKill(1, blue, "Annie", "Annie", "Brand", "Brand");
    localKill.name = "FirstBlood";
    localKill.title = "First blood";
    localKill.kill = true;
    ExpectedRow localDeath = champKill(2, red, "Nunu & Willump", "NunuWillump", "Annie", "Annie");
    localDeath.death = true;
    ExpectedRow localAssist = champKill(3, blue, "Garen", "Garen", "Nunu & Willump", "NunuWillump");
    localAssist.assist = true;
    expectGame("bot-game", {
                               {.id = 0, .name = "GameStart", .title = "Game started"},
                               localKill,
                               localDeath,
                               localAssist,
                               {.id = 4, .name = "GameEnd", .title = "Game ended"},
                           });
}

TEST(convertEvents, RecentSeasonGameNamesPlayersByGameName) {
    ExpectedRow localKill = champKill(1, blue, "Ashen Kite", "Kayn", "Gilded Moth", "LeeSin");
    localKill.name = "FirstBlood";
    localKill.title = "First blood";
    localKill.kill = true;
    ExpectedRow localDeath = champKill(3, red, "Gilded Moth", "LeeSin", "Ashen Kite", "Kayn");
    localDeath.death = true;
    ExpectedRow localAssist = champKill(4, blue, "Brine Sparrow", "Ahri", "Iron Wren", "Kaisa");
    localAssist.assist = true;
    expectGame("recent-season-game", {
                                         {.id = 0, .name = "GameStart", .title = "Game started"},
                                         localKill,
                                         champKill(2, red, "Iron Wren", "Kaisa", "Brine Sparrow", "Ahri"),
                                         localDeath,
                                         localAssist,
                                     });
}

TEST(convertEvents, ReplayingTheClassicFeedWithItsIDsKnownYieldsNothing) {
    const Game game = loadGame("classic-game");
    KnownEventIDs known;
    for (const auto& e :
         convertEvents(game.feed, game.players, game.activePlayerName, 0, 0, KnownEventIDs{})) {
        known.insert(e.id);
    }
    EXPECT_EQ(known.size(), 34u);
    EXPECT_TRUE(convertEvents(game.feed, game.players, game.activePlayerName, 0, 0, known).empty());
}

}  // namespace
}  // namespace kestrum

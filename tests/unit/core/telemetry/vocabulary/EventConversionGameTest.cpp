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

enum class Local { none, kill, death, assist };

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
    Local local = Local::none;
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
        EXPECT_EQ(e.isLocalPlayerKill, x.local == Local::kill);
        EXPECT_EQ(e.isLocalPlayerDeath, x.local == Local::death);
        EXPECT_EQ(e.isLocalPlayerAssist, x.local == Local::assist);
        EXPECT_EQ(e.multiKillCount, x.multiKillCount);
        EXPECT_EQ(eventDisplayTitle(e), x.title);
    }
}

// A champion kill; a turret that kills brings no champion. The first blood is a champion kill renamed.
ExpectedRow champKill(std::int64_t id, RecordingTeam team, std::string killer,
                      std::optional<std::string> killerChampion, std::string victim,
                      std::string victimChampion, Local local = Local::none,
                      std::string name = "ChampionKill") {
    const std::string title = name == "FirstBlood" ? "First blood" : "Champion kill";
    const std::string detail = killer + " \u2192 " + victim;
    return {id, name, team, detail, killer, victim, killerChampion, victimChampion, local, {}, title};
}

ExpectedRow multikill(std::int64_t id, std::int64_t count, std::string victim, std::string victimChampion,
                      std::string title, std::string killer = "Dusk Lantern",
                      std::string killerChampion = "Jinx") {
    return {id,          "Multikill", blue, killer, killer, victim, killerChampion, victimChampion,
            Local::none, count,       title};
}

// A kill of a monster (`detail` is the dragon's kind) or a structure; a minion or the obelisk brings no
// champion.
ExpectedRow objective(std::int64_t id, std::string name, RecordingTeam team,
                      std::optional<std::string> killer, std::optional<std::string> killerChampion,
                      std::string title, std::optional<std::string> detail = std::nullopt,
                      std::optional<std::string> victim = std::nullopt) {
    return {id,          name, team, detail ? detail : killer, killer, victim, killerChampion, {},
            Local::none, {},   title};
}

ExpectedRow dragon(std::int64_t id, RecordingTeam team, std::string kind, std::string killer,
                   std::string killerChampion) {
    return objective(id, "DragonKill", team, killer, killerChampion, "Dragon", kind);
}

TEST(convertEvents, ClassicGameFeedBecomesTheTimeline) {
    const std::string minion = "Minion_T100L1S05N0106";
    const std::string herald = "SRU_RiftHerald17.1.1";
    const std::string lateMinion = "Minion_T100L2S41N0813";
    expectGame(
        "classic-game",
        {
            {.id = 0, .name = "GameStart", .title = "Game started"},
            champKill(2, red, "Gilded Moth", "LeeSin", "Ashen Kite", "Kayn", Local::death, "FirstBlood"),
            champKill(4, blue, "Ashen Kite", "Kayn", "Hollow Reed", "Darius", Local::kill),
            dragon(5, blue, "Fire", "Ashen Kite", "Kayn"),
            objective(6, "HordeKill", red, "Gilded Moth", "LeeSin", "Void Grub"),
            objective(8, "TurretKilled", blue, minion, {}, "Turret", minion, "Turret_T2_C_05_A"),
            objective(9, "TurretKilled", blue, {}, {}, "Turret", "Obelisk", "Obelisk"),
            objective(10, "HeraldKill", blue, "Brine Sparrow", "Ahri", "Rift Herald"),
            champKill(11, blue, "Brine Sparrow", "Ahri", "Frost Harbor", "Azir", Local::assist),
            champKill(12, blue, "Brine Sparrow", "Ahri", "Jade Tern", "Lulu"),
            multikill(13, 2, "Jade Tern", "Lulu", "Double kill", "Brine Sparrow", "Ahri"),
            dragon(14, red, "Earth", "Gilded Moth", "LeeSin"),
            champKill(15, red, "Turret_T2_L_03_A", {}, "Copper Vale", "Garen"),
            dragon(16, blue, "Water", "Ashen Kite", "Kayn"),
            {.id = 17, .name = "RoleQuestCompleted", .title = "Position quest completed"},
            champKill(18, blue, "Dusk Lantern", "Jinx", "Frost Harbor", "Azir"),
            champKill(19, blue, "Dusk Lantern", "Jinx", "Gilded Moth", "LeeSin"),
            multikill(20, 2, "Gilded Moth", "LeeSin", "Double kill"),
            champKill(21, blue, "Dusk Lantern", "Jinx", "Hollow Reed", "Darius"),
            multikill(22, 3, "Hollow Reed", "Darius", "Triple kill"),
            champKill(23, blue, "Dusk Lantern", "Jinx", "Iron Wren", "Kaisa"),
            multikill(24, 4, "Iron Wren", "Kaisa", "Quadra kill"),
            champKill(25, blue, "Dusk Lantern", "Jinx", "Jade Tern", "Lulu", Local::assist),
            multikill(26, 5, "Jade Tern", "Lulu", "Pentakill"),
            {.id = 27,
             .name = "Ace",
             .team = blue,
             .killerName = "Dusk Lantern",
             .killerChampion = "Jinx",
             .title = "Ace"},
            dragon(28, red, "Air", "Gilded Moth", "LeeSin"),
            objective(29, "BaronKill", red, "Gilded Moth", "LeeSin", "Baron"),
            dragon(30, blue, "Hextech", "Ashen Kite", "Kayn"),
            objective(31, "InhibKilled", red, "Hollow Reed", "Darius", "Inhibitor", {}, "Barracks_T1_L1"),
            objective(32, "TurretKilled", red, herald, {}, "Turret", herald, "Turret_T1_C_06_A"),
            dragon(33, red, "Chemtech", "Gilded Moth", "LeeSin"),
            dragon(35, blue, "Elder", "Ashen Kite", "Kayn"),
            objective(36, "InhibKilled", blue, lateMinion, {}, "Inhibitor", lateMinion, "Barracks_T2_C1"),
            {.id = 37, .name = "GameEnd", .title = "Game ended"},
        });
}

TEST(convertEvents, BotGameNamesPlayersByChampion) {
    expectGame("bot-game",
               {
                   {.id = 0, .name = "GameStart", .title = "Game started"},
                   champKill(1, blue, "Annie", "Annie", "Brand", "Brand", Local::kill, "FirstBlood"),
                   champKill(2, red, "Nunu & Willump", "NunuWillump", "Annie", "Annie", Local::death),
                   champKill(3, blue, "Garen", "Garen", "Nunu & Willump", "NunuWillump", Local::assist),
                   {.id = 4, .name = "GameEnd", .title = "Game ended"},
               });
}

TEST(convertEvents, RecentSeasonGameNamesPlayersByGameName) {
    expectGame(
        "recent-season-game",
        {
            {.id = 0, .name = "GameStart", .title = "Game started"},
            champKill(1, blue, "Ashen Kite", "Kayn", "Gilded Moth", "LeeSin", Local::kill, "FirstBlood"),
            champKill(2, red, "Iron Wren", "Kaisa", "Brine Sparrow", "Ahri"),
            champKill(3, red, "Gilded Moth", "LeeSin", "Ashen Kite", "Kayn", Local::death),
            champKill(4, blue, "Brine Sparrow", "Ahri", "Iron Wren", "Kaisa", Local::assist),
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

#include "core/telemetry/vocabulary/LiveGamePayloadCodec.h"

#include "VocabularyFixtures.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace kestrum {
namespace {

using test::vocabularyFixture;

TEST(LiveGamePayloadCodec, RealShapedAnswersDecodeAndIgnoreUnknownKeys) {
    const Result<GameStats> stats = decodeGameStats(vocabularyFixture("gamestats-classic-game.json"));
    ASSERT_TRUE(stats.ok()) << stats.error().description.toStdString();
    EXPECT_EQ(stats.value(), (GameStats{"CLASSIC", 1234.567}));

    const Result<LiveGameData> data = decodeLiveGameData(vocabularyFixture("allgamedata-classic-game.json"));
    ASSERT_TRUE(data.ok()) << data.error().description.toStdString();
    EXPECT_EQ(data.value().activePlayer.summonerName, "Ashen Kite");
    EXPECT_EQ(data.value().gameData.gameMode, "CLASSIC");
    ASSERT_EQ(data.value().allPlayers.size(), 10u);
    EXPECT_EQ(
        data.value().allPlayers[6],
        (LiveGameData::Player{"Lee Sin", "JUNGLE", "game_character_displayname_LeeSin", "Gilded Moth"}));

    const Result<std::vector<LiveEvent>> feed =
        decodeEventData(vocabularyFixture("eventdata-classic-game.json"));
    ASSERT_TRUE(feed.ok()) << feed.error().description.toStdString();
    ASSERT_EQ(feed.value().size(), 38u);
    LiveEvent kill = test::liveEvent(2, "ChampionKill", 240.52);
    kill.killerName = "Gilded Moth";
    kill.victimName = "Ashen Kite";
    kill.assisters = std::vector<std::string>{"Frost Harbor"};
    EXPECT_EQ(feed.value()[2], kill);
    EXPECT_EQ(feed.value()[26].killStreak, 5);
    EXPECT_EQ(feed.value()[27].acer, "Dusk Lantern");
    EXPECT_EQ(feed.value()[27].acingTeam, "ORDER");
    EXPECT_EQ(feed.value()[9].turretKilled, "Turret_T1_L_03_A");
    EXPECT_EQ(feed.value()[31].inhibKilled, "Barracks_T1_L1");
    EXPECT_EQ(feed.value()[35].dragonType, "Elder");

    const auto players = decodePlayerList(vocabularyFixture("playerlist-recent-season-game.json"));
    ASSERT_TRUE(players.ok()) << players.error().description.toStdString();
    ASSERT_EQ(players.value().size(), 4u);
    EXPECT_EQ(players.value()[0].riotIdTagLine, "EUW");
    EXPECT_EQ(players.value()[0].items.at(0).itemID, 1055);
    EXPECT_EQ(players.value()[0].scores.creepScore, 120);

    const Result<std::string> name =
        decodeActivePlayerName(vocabularyFixture("activeplayername-recent-season-game.json"));
    ASSERT_TRUE(name.ok());
    EXPECT_EQ(name.value(), "Ashen Kite#EUW");
}

// The failure's description of a decoder on a body, or absent when the body decodes.
using FailureOf = std::optional<std::string> (*)(std::string_view);

template <auto Decoder>
std::optional<std::string> failureOf(std::string_view body) {
    const auto decoded = Decoder(body);
    if (decoded.ok()) return std::nullopt;
    return decoded.error().description.toStdString();
}

constexpr FailureOf acceptsGameStats = &failureOf<&decodeGameStats>;
constexpr FailureOf acceptsLiveGameData = &failureOf<&decodeLiveGameData>;
constexpr FailureOf acceptsEventData = &failureOf<&decodeEventData>;
constexpr FailureOf acceptsActivePlayerName = &failureOf<&decodeActivePlayerName>;
constexpr FailureOf acceptsPlayerList = &failureOf<&decodePlayerList>;

struct StrictnessCase {
    const char* label;
    FailureOf decode;
    std::string body;
    bool accepted;
    std::string errorFragment;  // part of the failure's description; empty when accepted
};

const std::string kPlayer =
    R"({"championName":"Ahri","isDead":false,"items":[],"level":3,"respawnTimer":0.0,)"
    R"("scores":{"assists":0,"creepScore":0,"deaths":0,"kills":0},"summonerName":"B","team":"ORDER"})";

std::vector<StrictnessCase> strictnessCases() {
    return {
        {"stats: integer game time is a number", acceptsGameStats, R"({"gameMode":"ARAM","gameTime":12})",
         true, ""},
        {"stats: missing gameTime", acceptsGameStats, R"({"gameMode":"ARAM"})", false, "gameTime: missing"},
        {"stats: null gameMode is missing", acceptsGameStats, R"({"gameMode":null,"gameTime":1.5})", false,
         "gameMode"},
        {"stats: gameTime as text", acceptsGameStats, R"({"gameMode":"ARAM","gameTime":"12.5"})", false,
         "gameTime"},
        {"stats: array at the root", acceptsGameStats, R"([{"gameMode":"ARAM","gameTime":1}])", false, ""},
        {"stats: truncated body", acceptsGameStats, R"({"gameMode":"ARAM","gameTi)", false, "invalid JSON"},
        {"stats: empty body", acceptsGameStats, "", false, "invalid JSON"},
        {"stats: trailing garbage", acceptsGameStats, R"({"gameMode":"ARAM","gameTime":1} x)", false,
         "invalid JSON"},
        {"stats: game time beyond double range", acceptsGameStats, R"({"gameMode":"ARAM","gameTime":1e999})",
         false, "invalid JSON"},
        {"all data: player without rawChampionName", acceptsLiveGameData,
         R"({"activePlayer":{"summonerName":"A"},"allPlayers":[{"championName":"Ahri","position":"",)"
         R"("summonerName":"A"}],"gameData":{"gameMode":"CLASSIC"}})",
         true, ""},
        {"all data: null rawChampionName", acceptsLiveGameData,
         R"({"activePlayer":{"summonerName":"A"},"allPlayers":[{"championName":"Ahri","position":"",)"
         R"("rawChampionName":null,"summonerName":"A"}],"gameData":{"gameMode":"CLASSIC"}})",
         true, ""},
        {"all data: rawChampionName as number", acceptsLiveGameData,
         R"({"activePlayer":{"summonerName":"A"},"allPlayers":[{"championName":"Ahri","position":"",)"
         R"("rawChampionName":7,"summonerName":"A"}],"gameData":{"gameMode":"CLASSIC"}})",
         false, "allPlayers[0].rawChampionName"},
        {"all data: player without position", acceptsLiveGameData,
         R"({"activePlayer":{"summonerName":"A"},"allPlayers":[{"championName":"Ahri","summonerName":"A"}],)"
         R"("gameData":{"gameMode":"CLASSIC"}})",
         false, "allPlayers[0].position"},
        {"all data: active player without a name (loading screen)", acceptsLiveGameData,
         R"({"activePlayer":{"error":"Spectator mode doesn't currently support this feature"},"allPlayers":[],)"
         R"("gameData":{"gameMode":"CLASSIC"}})",
         false, "activePlayer.summonerName"},
        {"all data: missing gameData", acceptsLiveGameData,
         R"({"activePlayer":{"summonerName":"A"},"allPlayers":[]})", false, "gameData"},
        {"events: empty feed", acceptsEventData, R"({"Events":[]})", true, ""},
        {"events: lower-case key is not the feed's", acceptsEventData, R"({"events":[]})", false, "Events"},
        {"events: bare array at the root", acceptsEventData, R"([])", false, ""},
        {"events: optional keys null", acceptsEventData,
         R"({"Events":[{"EventID":1,"EventName":"Ace","EventTime":2.5,"Acer":null,"AcingTeam":null,)"
         R"("Assisters":null,"KillStreak":null}]})",
         true, ""},
        {"events: fractional EventID", acceptsEventData,
         R"({"Events":[{"EventID":1.5,"EventName":"Ace","EventTime":2.5}]})", false, "Events[0].EventID"},
        {"events: EventID beyond 64 bits", acceptsEventData,
         R"({"Events":[{"EventID":99999999999999999999,"EventName":"Ace","EventTime":2.5}]})", false,
         "EventID"},
        {"events: EventID at the 64-bit limit", acceptsEventData,
         R"({"Events":[{"EventID":9223372036854775807,"EventName":"Ace","EventTime":2.5}]})", true, ""},
        {"events: missing EventTime in the second row", acceptsEventData,
         R"({"Events":[{"EventID":0,"EventName":"GameStart","EventTime":0.1},{"EventID":1,"EventName":"Ace"}]})",
         false, "Events[1].EventTime: missing"},
        {"events: KillStreak as text", acceptsEventData,
         R"({"Events":[{"EventID":1,"EventName":"Multikill","EventTime":2.5,"KillStreak":"2"}]})", false,
         "KillStreak"},
        {"events: an assister that is not text", acceptsEventData,
         R"({"Events":[{"EventID":1,"EventName":"ChampionKill","EventTime":2.5,"Assisters":["A",3]}]})",
         false, "Events[0].Assisters[1]"},
        {"events: truncated feed", acceptsEventData, R"({"Events":[{"EventID":1,"EventName":"Cham)", false,
         "invalid JSON"},
        {"events: a key given twice", acceptsEventData,
         R"({"Events":[{"EventID":1,"EventID":2,"EventName":"Ace","EventTime":2.5}]})", false, "EventID"},
        {"name: quoted string", acceptsActivePlayerName, R"("Ashen Kite#EUW")", true, ""},
        {"name: bare text is not JSON", acceptsActivePlayerName, "Ashen Kite", false, "invalid JSON"},
        {"name: object", acceptsActivePlayerName, R"({"summonerName":"A"})", false, ""},
        {"name: null", acceptsActivePlayerName, "null", false, ""},
        {"players: empty list", acceptsPlayerList, "[]", true, ""},
        {"players: one full row", acceptsPlayerList, "[" + kPlayer + "]", true, ""},
        {"players: object at the root", acceptsPlayerList, kPlayer, false, ""},
        {"players: a row without scores", acceptsPlayerList,
         R"([{"championName":"Ahri","isDead":false,"items":[],"level":3,"respawnTimer":0.0,)"
         R"("summonerName":"B","team":"ORDER"}])",
         false, "[0].scores"},
    };
}

TEST(LiveGamePayloadCodec, StrictnessTable) {
    for (const StrictnessCase& c : strictnessCases()) {
        SCOPED_TRACE(c.label);
        const std::optional<std::string> failure = c.decode(c.body);
        EXPECT_EQ(!failure.has_value(), c.accepted) << failure.value_or("");
        if (!failure) continue;
        EXPECT_NE(failure->find(c.errorFragment), std::string::npos) << *failure;
    }
}

TEST(LiveGamePayloadCodec, EscapedActivePlayerNameIsUnescaped) {
    const Result<std::string> name = decodeActivePlayerName(R"("Ashen\u0020Kite\n\u00e9")");
    ASSERT_TRUE(name.ok());
    EXPECT_EQ(name.value(), "Ashen Kite\n\xc3\xa9");
}

}  // namespace
}  // namespace kestrum

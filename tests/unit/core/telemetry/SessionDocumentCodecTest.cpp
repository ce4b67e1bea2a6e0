#include "core/telemetry/SessionDocumentCodec.h"

#include "SessionDocumentFixtures.h"

#include <rapidjson/document.h>

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace kestrum {
namespace {

using test::telemetryFixture;

std::string descriptionOf(const Error& error) {
    return error.description.toStdString();
}

// Checks, independently of the codec's tables, that every object at every depth lists its keys in
// strictly ascending byte order.
void expectSortedKeys(const rapidjson::Value& value, const std::string& where) {
    if (value.IsArray()) {
        for (rapidjson::SizeType i = 0; i < value.Size(); ++i)
            expectSortedKeys(value[i], where + "[" + std::to_string(i) + "]");
    }
    if (!value.IsObject()) return;
    std::string previous;
    bool first = true;
    for (const auto& member : value.GetObject()) {
        const std::string key(member.name.GetString(), member.name.GetStringLength());
        EXPECT_TRUE(first || previous < key) << where << ": \"" << key << "\" after \"" << previous << "\"";
        first = false;
        previous = key;
        expectSortedKeys(member.value, where + "." + key);
    }
}

TEST(SessionDocumentCodec, GoldenDocumentsReencodeToTheSameBytes) {
    for (const char* name : {"example-document.json", "full-document.json"}) {
        SCOPED_TRACE(name);
        const std::string bytes = telemetryFixture(name);
        ASSERT_FALSE(bytes.empty());
        const Result<RecordingSessionData> session = decodeSessionData(bytes);
        ASSERT_TRUE(session.ok()) << descriptionOf(session.error());
        const Result<std::string> encoded = encodeSessionData(session.value());
        ASSERT_TRUE(encoded.ok()) << descriptionOf(encoded.error());
        EXPECT_EQ(encoded.value(), bytes);
        rapidjson::Document document;
        document.Parse(encoded.value().c_str());
        ASSERT_FALSE(document.HasParseError());
        expectSortedKeys(document, "root");
    }
}

TEST(SessionDocumentCodec, FullDocumentReadsEveryDepth) {
    const Result<RecordingSessionData> decoded = decodeSessionData(telemetryFixture("full-document.json"));
    ASSERT_TRUE(decoded.ok()) << descriptionOf(decoded.error());
    const RecordingSessionData& s = decoded.value();
    EXPECT_EQ(s.recordingID, QUuid::fromString(QStringLiteral("7C1F0D7A-52AB-4E0E-8C56-0B8F3E1B6A11")));
    EXPECT_EQ(s.title, "Ranked Solo/Duo \xc2\xb7 Kayn \xc2\xb7 Jungle \"clean\"");
    ASSERT_EQ(s.events.size(), 2u);
    EXPECT_EQ(s.events[0].detail, "Kayn \xe2\x86\x92 Lux");
    EXPECT_EQ(s.events[0].victimName, "Light\tBinder\n");
    EXPECT_EQ(s.events[0].team, RecordingTeam::blue);
    EXPECT_EQ(s.events[1].team, RecordingTeam::red);
    EXPECT_EQ(s.events[1].videoTime, 1650.0000000000002);
    ASSERT_TRUE(s.enrichment);
    EXPECT_EQ(s.enrichment->status, RecordingEnrichmentState::Status::waitingForAPIKey);
    EXPECT_EQ(s.enrichment->lastAttempt, ReferenceDate{795305275.125});
    ASSERT_TRUE(s.matchData);
    EXPECT_EQ(s.matchData->gameEndTimestamp, 1773522475123);
    EXPECT_EQ(s.matchData->participants.at(1).seasonHighRank->tier, "PLATINUM");
    EXPECT_EQ(s.matchData->participants.at(0).riotIdTagline, "EUW");
    EXPECT_EQ(s.matchData->frames.at(0).participants.at(0).position->y, -581);
    const auto& player = s.scoreboard->at(0).players.at(1);
    EXPECT_EQ(player.items.at(0).count, 2);
    EXPECT_EQ(player.riotIdTagLine, "EUW");
    EXPECT_EQ(player.roleQuestCompleted, false);
    EXPECT_EQ(player.positionQuestCompleted, true);
}

struct FailureCase {
    const char* name;
    std::string document;
    std::string expected;  // the whole description, or its start for parse errors
};

// Well-formed JSON that breaks a rule of the records.
std::vector<FailureCase> recordFailureCases() {
    const std::string player =
        R"({"championName":"Lux","isDead":false,"items":[],"level":1,"respawnTimer":0,)"
        R"("scores":{"assists":0,"creepScore":0,"deaths":0,"kills":0},"summonerName":"a","team":"ORDER"})";
    const std::string noRespawn =
        R"({"championName":"Lux","isDead":false,"items":[],"level":1,)"
        R"("scores":{"assists":0,"creepScore":0,"deaths":0,"kills":0},"summonerName":"a","team":"ORDER"})";
    const std::string snapshot = R"({"gameTime":1,"players":[)" + player + R"(],"videoTime":2})";
    const std::string participant =
        R"({"assists":0,"championName":"Lux","deaths":0,"goldEarned":0,"goldSpent":0,"kills":0,)"
        R"("neutralMinionsKilled":0,"participantID":1,"puuid":"p","riotIdGameName":"a","riotIdTagLine":"EUW",)"
        R"("teamID":100,"teamPosition":"","totalDamageDealtToChampions":0,"totalMinionsKilled":0,"visionScore":0,"win":true})";
    const auto withEvent = [](const std::string& fields) {
        return R"({"events":[{"id":1,"name":"GameStart","videoTime":0)" + fields + "}]}";
    };
    return {
        {"events missing", R"({"schemaVersion":4,"scoreboard":[]})", "events: missing required key"},
        {"events null", R"({"events":null})", "events: required key is null"},
        {"player without respawnTimer",
         R"({"events":[],"scoreboard":[)" + snapshot + R"(,{"gameTime":1,"players":[)" + player + "," +
             noRespawn + R"(],"videoTime":2}]})",
         "scoreboard[1].players[1].respawnTimer: missing required key"},
        {"team green", withEvent(R"(,"team":"green")"), "events[0].team: unknown enumeration text \"green\""},
        {"team in capitals", withEvent(R"(,"team":"BLUE")"),
         "events[0].team: unknown enumeration text \"BLUE\""},
        {"enrichment status unknown", R"({"enrichment":{"attempts":0,"status":"done"},"events":[]})",
         "enrichment.status: unknown enumeration text \"done\""},
        {"events an object", R"({"events":{}})", "events: expected an array, found an object"},
        {"name a number", R"({"events":[{"id":1,"name":7,"videoTime":0}]})",
         "events[0].name: expected a string, found a number"},
        {"videoTime a string", R"({"events":[{"id":1,"name":"a","videoTime":"3.4"}]})",
         "events[0].videoTime: expected a number, found a string"},
        {"flag as 1", withEvent(R"(,"isLocalPlayerKill":1)"),
         "events[0].isLocalPlayerKill: expected a boolean, found a number"},
        {"assister not a string", withEvent(R"(,"assisterNames":["a",null])"),
         "events[0].assisterNames[1]: expected a string, found null"},
        {"item price text",
         R"({"events":[],"scoreboard":[{"gameTime":1,"players":[)" +
             player.substr(0, player.find("\"items\":[]")) +
             R"("items":[{"count":1,"displayName":"x","itemID":1,"price":"50","slot":0}])" +
             player.substr(player.find("\"items\":[]") + 10) + R"(],"videoTime":2}]})",
         "scoreboard[0].players[0].items[0].price: expected an integer, found a string"},
        {"position x a boolean",
         R"({"events":[],"matchData":{"frames":[{"participants":[{"currentGold":0,"jungleMinionsKilled":0,"level":1,)"
         R"("minionsKilled":0,"participantID":1,"position":{"x":true,"y":0},"totalGold":0,"xp":0}],"timestamp":0}],)"
         R"("gameDuration":1,"gameVersion":"v","matchID":"m","participants":[],"queueID":0}})",
         "matchData.frames[0].participants[0].position.x: expected an integer, found a boolean"},
        {"lastAttempt a string",
         R"({"enrichment":{"attempts":0,"lastAttempt":"2026","status":"pending"},"events":[]})",
         "enrichment.lastAttempt: expected a date (seconds since 2001), found a string"},
        {"fractional id", R"({"events":[{"id":1.5,"name":"a","videoTime":0}]})",
         "events[0].id: expected an integer, found a fraction"},
        {"revision out of range", R"({"events":[],"metadataRevision":1e19})",
         "metadataRevision: integer out of range"},
        {"bad recordingID", R"({"events":[],"recordingID":"7C1F0D7A-52AB-4E0E-8C56-0B8F3E1B6A1Z"})",
         "recordingID: invalid UUID"},
        {"braced sourceRecordingID",
         R"({"events":[],"sourceRecordingID":"{7C1F0D7A-52AB-4E0E-8C56-0B8F3E1B6A11}"})",
         "sourceRecordingID: invalid UUID"},
        {"null event name", R"({"events":[{"id":1,"name":null,"videoTime":0}]})",
         "events[0].name: required key is null"},
        {"duplicate events", R"({"events":[],"events":[]})", "events: duplicate key"},
        {"participant with the scoreboard's spelling",
         R"({"events":[],"matchData":{"frames":[],"gameDuration":1,"gameVersion":"v","matchID":"m","participants":[)" +
             participant + R"(],"queueID":0}})",
         "matchData.participants[0].riotIdTagline: missing required key"},
    };
}

// Documents that are not a JSON object at all.
std::vector<FailureCase> textFailureCases() {
    const std::string example = telemetryFixture("example-document.json");
    return {
        {"root an array", "[" + example + "]", "(root): expected an object, found an array"},
        {"root a string", R"("events")", "(root): expected an object, found a string"},
        {"root null", "null", "(root): expected an object, found null"},
        {"invalid UTF-8", R"({"events":[],"title":")" + std::string("\xc3\x28") + R"("})",
         "invalid JSON at byte offset"},
        {"escaped lone low surrogate", R"({"events":[{"id":0,"name":"\udc00","videoTime":0}]})",
         "events[0].name: text is not valid UTF-8"},
        {"truncated", example.substr(0, example.size() / 2), "invalid JSON at byte offset"},
        {"one brace short", example.substr(0, example.size() - 1), "invalid JSON at byte offset"},
        {"empty", "", "invalid JSON at byte offset 0"},
        {"trailing text", example + " {}", "invalid JSON at byte offset"},
        {"NUL after the root", example + std::string("\0{}", 3), "invalid JSON at byte offset 261"},
        {"NaN literal", R"({"events":[{"id":1,"name":"a","videoTime":NaN}]})", "invalid JSON at byte offset"},
    };
}

TEST(SessionDocumentCodec, OneErrorAnywhereFailsTheWholeDocument) {
    std::vector<FailureCase> cases = recordFailureCases();
    for (auto& c : textFailureCases()) cases.push_back(std::move(c));
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Result<RecordingSessionData> session = decodeSessionData(c.document);
        ASSERT_FALSE(session.ok());
        const std::string description = descriptionOf(session.error());
        if (c.expected.starts_with("invalid JSON")) {
            EXPECT_TRUE(description.starts_with(c.expected)) << description;
        } else {
            EXPECT_EQ(description, c.expected);
        }
    }
}

TEST(SessionDocumentCodec, EventsAloneIsACompleteDocument) {
    const Result<RecordingSessionData> session = decodeSessionData(R"({"events":[]})");
    ASSERT_TRUE(session.ok());
    EXPECT_EQ(session.value(), RecordingSessionData{});
    EXPECT_EQ(encodeSessionData(session.value()).value(), R"({"events":[]})");
}

TEST(SessionDocumentCodec, NullsAndUnknownKeysLeaveNoTrace) {
    const std::string input =
        R"({"future":{"nested":[1,2]},"events":[{"id":3,"name":"Ace","videoTime":9,"team":null,"extra":"x"}],)"
        R"("scoreboard":null,"apmSamples":null,"enrichment":null,"matchData":null,"title":null,"schemaVersion":3})";
    const Result<RecordingSessionData> session = decodeSessionData(input);
    ASSERT_TRUE(session.ok()) << descriptionOf(session.error());
    EXPECT_FALSE(session.value().scoreboard);
    EXPECT_FALSE(session.value().events.at(0).team);
    EXPECT_EQ(encodeSessionData(session.value()).value(),
              R"({"events":[{"id":3,"name":"Ace","videoTime":9}],"schemaVersion":3})");
}

TEST(SessionDocumentCodec, QuestFlagsAreIndependent) {
    struct QuestCase {
        std::optional<bool> position;
        std::optional<bool> role;
    };
    const std::vector<QuestCase> cases = {
        {std::nullopt, std::nullopt}, {std::nullopt, true}, {false, std::nullopt},
        {true, std::nullopt},         {false, true},        {true, false},
    };
    const auto flag = [](const char* key, std::optional<bool> value) {
        if (!value) return std::string();
        return "\"" + std::string(key) + "\":" + (*value ? "true," : "false,");
    };
    for (const auto& c : cases) {
        const std::string document = R"([{"championName":"Lux","isDead":false,"items":[],"level":1,)" +
                                     flag("positionQuestCompleted", c.position) + R"("respawnTimer":0,)" +
                                     flag("roleQuestCompleted", c.role) +
                                     R"("scores":{"assists":0,"creepScore":0,"deaths":0,"kills":0},)"
                                     R"("summonerName":"a","team":"ORDER"}])";
        SCOPED_TRACE(document);
        const auto players = decodeScoreboardPlayers(document);
        ASSERT_TRUE(players.ok()) << descriptionOf(players.error());
        EXPECT_EQ(players.value().at(0).positionQuestCompleted, c.position);
        EXPECT_EQ(players.value().at(0).roleQuestCompleted, c.role);
        EXPECT_EQ(encodeScoreboardPlayers(players.value()).value(), document);
    }
}

TEST(SessionDocumentCodec, PlayerListAnswerDecodesIntoScoreboardPlayers) {
    const auto players = decodeScoreboardPlayers(telemetryFixture("playerlist.json"));
    ASSERT_TRUE(players.ok()) << descriptionOf(players.error());
    ASSERT_EQ(players.value().size(), 2u);
    const auto& kayn = players.value()[0];
    EXPECT_EQ(kayn.items.at(0).displayName, "Youmuu's Ghostblade");
    EXPECT_EQ(kayn.scores.creepScore, 87);
    EXPECT_EQ(kayn.riotIdTagLine, "EUW");
    const auto& lux = players.value()[1];
    EXPECT_TRUE(lux.isDead);
    EXPECT_EQ(lux.respawnTimer, 17.392857);
    EXPECT_EQ(lux.position, "");
    EXPECT_FALSE(lux.riotIdTagLine);  // the fixture spells it "riotIdTagline", the participant's key
    EXPECT_EQ(decodeScoreboardPlayers(R"({"players":[]})").error().description.toStdString(),
              "(root): expected an array, found an object");
}

TEST(SessionDocumentCodec, NonFiniteOrBrokenValuesFailTheWrite) {
    RecordingSessionData session = decodeSessionData(telemetryFixture("full-document.json")).value();
    struct WriteCase {
        const char* name;
        std::function<void(RecordingSessionData&)> spoil;
        std::string expected;
    };
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    const std::vector<WriteCase> cases = {
        {"respawn NaN", [&](auto& s) { s.scoreboard->at(0).players.at(1).respawnTimer = nan; },
         "scoreboard[0].players[1].respawnTimer: non-finite number cannot be written (nan)"},
        {"event time infinite", [&](auto& s) { s.events.at(1).videoTime = -inf; },
         "events[1].videoTime: non-finite number cannot be written (-inf)"},
        {"lastAttempt infinite", [&](auto& s) { s.enrichment->lastAttempt = ReferenceDate{inf}; },
         "enrichment.lastAttempt: non-finite number cannot be written (inf)"},
        {"title not UTF-8", [&](auto& s) { s.title = "\xe2\x28\xa1"; }, "title: text is not valid UTF-8"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        RecordingSessionData spoiled = session;
        c.spoil(spoiled);
        const Result<std::string> encoded = encodeSessionData(spoiled);
        ASSERT_FALSE(encoded.ok());
        EXPECT_EQ(descriptionOf(encoded.error()), c.expected);
    }
}

TEST(SessionDocumentCodec, RandomDocumentsSurviveARoundTrip) {
    std::mt19937 random(14032026);
    for (int round = 0; round < 300; ++round) {
        SCOPED_TRACE(round);
        const RecordingSessionData session = test::randomSessionData(random);
        const Result<std::string> encoded = encodeSessionData(session);
        ASSERT_TRUE(encoded.ok()) << descriptionOf(encoded.error());
        const Result<RecordingSessionData> decoded = decodeSessionData(encoded.value());
        ASSERT_TRUE(decoded.ok()) << descriptionOf(decoded.error()) << "\n" << encoded.value();
        EXPECT_EQ(decoded.value(), session) << encoded.value();
        EXPECT_EQ(encodeSessionData(decoded.value()).value(), encoded.value());
    }
}

}  // namespace
}  // namespace kestrum

namespace kestrum {
namespace {

// The decode that streams the scoreboard away: whatever the whole decode reads or refuses, it reads or
// refuses too, and the snapshots it hands over are the scoreboard, in order.
struct StreamedDecode {
    Result<RecordingSessionData> session;
    std::vector<RecordingScoreboardSnapshot> snapshots;
};

StreamedDecode decodeStreaming(const std::string& bytes) {
    std::vector<RecordingScoreboardSnapshot> snapshots;
    Result<RecordingSessionData> session = decodeSessionData(
        bytes, [&](RecordingScoreboardSnapshot&& snapshot) { snapshots.push_back(std::move(snapshot)); });
    return {std::move(session), std::move(snapshots)};
}

void expectSameAsWholeDecode(const std::string& bytes) {
    const Result<RecordingSessionData> whole = decodeSessionData(bytes);
    StreamedDecode streamed = decodeStreaming(bytes);
    ASSERT_EQ(streamed.session.ok(), whole.ok())
        << (whole.ok() ? descriptionOf(streamed.session.error()) : descriptionOf(whole.error()));
    if (!whole.ok()) return;
    RecordingSessionData rebuilt = std::move(streamed.session).value();
    ASSERT_EQ(rebuilt.scoreboard.has_value(), whole.value().scoreboard.has_value());
    if (rebuilt.scoreboard) {
        EXPECT_TRUE(rebuilt.scoreboard->empty()) << "the snapshots are handed over, not kept";
        rebuilt.scoreboard = std::move(streamed.snapshots);
    } else {
        EXPECT_TRUE(streamed.snapshots.empty());
    }
    EXPECT_EQ(rebuilt, whole.value());
}

TEST(SessionDocumentCodec, StreamingTheScoreboardReadsAndRefusesWhatTheWholeDecodeDoes) {
    std::vector<FailureCase> cases = recordFailureCases();
    for (auto& c : textFailureCases()) cases.push_back(std::move(c));
    const std::string snapshot = R"({"gameTime":1,"players":[],"videoTime":2})";
    const std::vector<std::pair<const char*, std::string>> readable{
        {"golden", telemetryFixture("full-document.json")},
        {"no scoreboard", R"({"events":[]})"},
        {"a null scoreboard", R"({"events":[],"scoreboard":null})"},
        {"an empty scoreboard", R"({"events":[],"scoreboard":[]})"},
        {"a scoreboard key deeper down is no scoreboard",
         R"({"events":[],"future":{"scoreboard":[1]},"scoreboard":[)" + snapshot + "]}"},
    };
    const std::vector<std::pair<const char*, std::string>> refused{
        {"a scoreboard that is no array", R"({"events":[],"scoreboard":{}})"},
        {"a snapshot that is no object", R"({"events":[],"scoreboard":[)" + snapshot + ",7]}"},
        {"the scoreboard given twice", R"({"events":[],"scoreboard":[],"scoreboard":[]})"},
        {"a bad snapshot before the events", R"({"scoreboard":[{"gameTime":1}],"events":[]})"},
        {"a document cut in a snapshot", R"({"events":[],"scoreboard":[{"gameTime":1,"pla)"},
        {"a number too large in a snapshot", R"({"events":[],"scoreboard":[{"gameTime":1e999}]})"},
        {"text after a NUL byte", std::string(R"({"events":[],"scoreboard":[]})") + '\0' + "x"},
    };
    for (const auto& [name, bytes] : readable) {
        SCOPED_TRACE(name);
        ASSERT_TRUE(decodeSessionData(bytes).ok());
        expectSameAsWholeDecode(bytes);
    }
    for (const auto& [name, bytes] : refused) {
        SCOPED_TRACE(name);
        ASSERT_FALSE(decodeSessionData(bytes).ok());
        expectSameAsWholeDecode(bytes);
    }
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        expectSameAsWholeDecode(c.document);
    }
    std::mt19937 random(17032026);
    for (int round = 0; round < 100; ++round) {
        SCOPED_TRACE(round);
        expectSameAsWholeDecode(encodeSessionData(test::randomSessionData(random)).value());
    }
}

}  // namespace
}  // namespace kestrum

#include "core/telemetry/SessionDocumentBuilder.h"
#include "core/telemetry/SessionDocumentCodec.h"

#include "SessionDocumentFixtures.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace kestrum {
namespace {

RecordingEvent event(std::int64_t id, double videoTime) {
    RecordingEvent e;
    e.id = id;
    e.name = "ChampionKill";
    e.videoTime = videoTime;
    return e;
}

RecordingTelemetry sampleTelemetry() {
    RecordingTelemetry telemetry;
    telemetry.events = {event(4, 30), event(1, 5.5), event(2, 30), event(3, 2), event(5, 30)};
    RecordingScoreboardSnapshot snapshot;
    snapshot.videoTime = 12;
    snapshot.gameTime = 3;
    telemetry.scoreboard = {snapshot};
    telemetry.apmSamples = {RecordingAPMSample{1, 120, 110}};
    return telemetry;
}

TEST(SessionDocumentBuilder, NewDocumentFollowsTheSavePathRecipe) {
    const RecordingSessionData session = makeSessionData(RecordingMetadata{}, sampleTelemetry());
    EXPECT_EQ(session.schemaVersion, 4);
    EXPECT_EQ(session.metadataRevision, 1);
    ASSERT_TRUE(session.recordingID);
    EXPECT_FALSE(session.recordingID->isNull());
    EXPECT_NE(session.recordingID, makeSessionData(std::nullopt, {}).recordingID);
    std::vector<std::int64_t> order;
    for (const auto& e : session.events) order.push_back(e.id);
    EXPECT_EQ(order, (std::vector<std::int64_t>{3, 1, 4, 2, 5}));  // equal times keep the collector's order
    EXPECT_EQ(session.scoreboard, sampleTelemetry().scoreboard);
    EXPECT_EQ(session.apmSamples, std::vector<RecordingAPMSample>{});
    EXPECT_FALSE(session.matchData);
    EXPECT_FALSE(session.mediaKind);
    EXPECT_FALSE(session.title);
    EXPECT_FALSE(session.sourceRecordingID);
}

// The save path writes exactly the form of the example document.
TEST(SessionDocumentBuilder, NewDocumentEncodesLikeTheExample) {
    RecordingTelemetry telemetry;
    RecordingEvent start = event(0, 3.4);
    start.name = "GameStart";
    start.isLocalPlayerKill = start.isLocalPlayerDeath = start.isLocalPlayerAssist = false;
    telemetry.events = {start};
    RecordingSessionData session = makeSessionData(std::nullopt, telemetry);
    session.recordingID = QUuid::fromString(QStringLiteral("7C1F0D7A-52AB-4E0E-8C56-0B8F3E1B6A11"));
    EXPECT_EQ(encodeSessionData(session).value(), test::telemetryFixture("example-document.json"));
}

TEST(SessionDocumentBuilder, GameIDAndEnrichmentComeFromTheMetadata) {
    struct Case {
        const char* name;
        std::optional<RecordingMetadata> metadata;
        std::optional<std::string> gameID;
    };
    const std::vector<Case> cases = {
        {"no metadata", std::nullopt, std::nullopt},
        {"metadata without gameID", RecordingMetadata{std::nullopt, "CLASSIC", "Kayn", "JUNGLE"},
         std::nullopt},
        {"metadata with gameID", RecordingMetadata{"EUW1-70", "CLASSIC", std::nullopt, std::nullopt},
         "EUW1-70"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const RecordingSessionData session = makeSessionData(c.metadata, {});
        EXPECT_EQ(session.gameID, c.gameID);
        EXPECT_EQ(session.enrichment, c.gameID ? std::optional(initialEnrichmentState()) : std::nullopt);
    }
    EXPECT_EQ(initialEnrichmentState(), (RecordingEnrichmentState{RecordingEnrichmentState::Status::pending,
                                                                  0, std::nullopt, std::nullopt}));
}

TEST(SessionDocumentBuilder, RetitleRaisesTheRevision) {
    constexpr auto kMax = std::numeric_limits<std::int64_t>::max();
    const std::vector<std::pair<std::optional<std::int64_t>, std::int64_t>> cases = {
        {1, 2}, {std::nullopt, 2}, {7, 8}, {0, 1}, {kMax, kMax}};
    for (const auto& [before, after] : cases) {
        SCOPED_TRACE(before.value_or(-1));
        RecordingSessionData session;
        session.metadataRevision = before;
        EXPECT_EQ(retitledSessionData(session, "t").metadataRevision, after);
    }
}

TEST(SessionDocumentBuilder, RetitleForcesVersionAndKeepsIdentity) {
    const QUuid kept = QUuid::createUuid();
    for (const std::optional<std::int64_t> version :
         {std::optional<std::int64_t>{}, std::optional<std::int64_t>{3}, std::optional<std::int64_t>{9}}) {
        RecordingSessionData session;
        session.schemaVersion = version;
        session.recordingID = kept;
        const RecordingSessionData retitled = retitledSessionData(session, "Ranked Solo/Duo");
        EXPECT_EQ(retitled.schemaVersion, 4);
        EXPECT_EQ(retitled.recordingID, kept);
        EXPECT_EQ(retitled.title, "Ranked Solo/Duo");
    }
    const RecordingSessionData made = retitledSessionData({}, "x");
    ASSERT_TRUE(made.recordingID);
    EXPECT_FALSE(made.recordingID->isNull());
}

TEST(SessionDocumentBuilder, RetitleCopiesEverythingElse) {
    std::mt19937 random(7);
    for (int round = 0; round < 50; ++round) {
        const RecordingSessionData original = test::randomSessionData(random);
        RecordingSessionData expected = original;
        RecordingSessionData retitled = retitledSessionData(original, "New");
        // Put back the fields that a retitle may change; the rest must be untouched.
        expected.schemaVersion = retitled.schemaVersion;
        expected.recordingID = retitled.recordingID;
        expected.metadataRevision = retitled.metadataRevision;
        expected.title = retitled.title;
        expected.enrichment = retitled.enrichment;
        EXPECT_EQ(retitled, expected);
        if (original.enrichment) {
            EXPECT_EQ(retitled.enrichment, original.enrichment);
        }
    }
}

TEST(SessionDocumentBuilder, RetitleAppliesTheEnrichmentRule) {
    const RecordingEnrichmentState failed{RecordingEnrichmentState::Status::failed, 5, ReferenceDate{1.5},
                                          "HTTP 404"};
    struct Case {
        const char* name;
        std::optional<RecordingEnrichmentState> enrichment;
        std::optional<std::string> gameID;
        std::optional<RecordingEnrichmentState> expected;
    };
    const std::vector<Case> cases = {
        {"present with gameID kept", failed, "EUW1-1", failed},
        {"present without gameID kept", failed, std::nullopt, failed},
        {"absent with gameID made initial", std::nullopt, "EUW1-1", initialEnrichmentState()},
        {"absent without gameID stays absent", std::nullopt, std::nullopt, std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        RecordingSessionData session;
        session.enrichment = c.enrichment;
        session.gameID = c.gameID;
        EXPECT_EQ(retitledSessionData(session, "t").enrichment, c.expected);
    }
}

TEST(SessionDocumentBuilder, DocumentPathReplacesTheMovieExtension) {
    const std::vector<std::pair<QString, QString>> cases = {
        {"/m/2026-03-14_21-07-55.mov", "/m/2026-03-14_21-07-55.json"},
        {"/m/2026-03-14_21-07-55_Ranked_Kayn_JUNGLE.mp4", "/m/2026-03-14_21-07-55_Ranked_Kayn_JUNGLE.json"},
        {"/m/game.v2.mov", "/m/game.v2.json"},
        {"/m/game", "/m/game.json"},
        {"/m.d/game", "/m.d/game.json"},
        {"/m/.mov", "/m/.mov.json"},
        {"/m/game.", "/m/game.json"},
        {"relative.MOV", "relative.json"},
        {"/m/Vidéos/partie.mov", "/m/Vidéos/partie.json"},
    };
    for (const auto& [movie, document] : cases) {
        SCOPED_TRACE(movie.toStdString());
        EXPECT_EQ(sessionDocumentPath(movie), document);
    }
}

}  // namespace
}  // namespace kestrum

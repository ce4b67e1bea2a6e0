#include "LiveClientHarness.h"
#include "LiveServiceBodies.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace kestrum {
namespace {

using namespace test;
using namespace std::chrono_literals;

struct FailingAnswer {
    const char* name;
    ScriptedLiveService::Handler handler;
    const char* detail;  // the reason in the failure line; empty: the decoder's own words
};

std::vector<FailingAnswer> failingAnswers() {
    return {
        {"refused", [] { return ScriptedLiveService::refused(); }, "Connection refused"},
        {"404", [] { return ScriptedLiveService::status(404); }, "unexpected response 404"},
        {"500", [] { return ScriptedLiveService::status(500); }, "unexpected response 500"},
        {"204", [] { return ScriptedLiveService::status(204, ""); }, "unexpected response 204"},
        {"non-HTTP",
         [] {
             return Result<LiveServiceResponse>(LiveServiceResponse{std::nullopt, "{}"});
         },
         "unexpected response non-HTTP"},
        {"malformed", [] { return ScriptedLiveService::status(200, "{\"gameMode\":"); }, ""},
        {"wrong shape", [] { return ScriptedLiveService::status(200, "7"); }, ""},
    };
}

// Every fetch gives absent on every kind of failure; the three logged endpoints write their word's line.
TEST(LeagueLiveClient, EveryFailureGivesAbsentAndOnlyTheLoggedEndpointsLog) {
    struct Fetch {
        QString path;
        const char* word;  // nullptr: failures are not logged
        std::function<bool(LiveClientHarness&)> succeeded;
    };
    const std::vector<Fetch> fetches = {
        {kGameStatsPath, "gamestats", [](auto& h) { return h.drive(h.client.fetchGameStats()).has_value(); }},
        {kPlayerListPath, nullptr, [](auto& h) { return h.drive(h.client.fetchPlayerList()).has_value(); }},
        {kEventDataPath, nullptr, [](auto& h) { return h.drive(h.client.fetchEventData()).has_value(); }},
        {kAllGameDataPath, "allgamedata",
         [](auto& h) { return h.drive(h.client.fetchLiveGameData()).has_value(); }},
        {kActivePlayerNamePath, "activeplayername",
         [](auto& h) { return h.drive(h.client.fetchActivePlayerName()).has_value(); }},
    };
    for (const Fetch& fetch : fetches) {
        for (const FailingAnswer& answer : failingAnswers()) {
            SCOPED_TRACE(testing::Message() << fetch.path.toStdString() << " " << answer.name);
            LiveClientHarness harness;
            harness.service->on(fetch.path, answer.handler);
            EXPECT_FALSE(fetch.succeeded(harness));
            EXPECT_FALSE(fetch.succeeded(harness));
            const QStringList lines = harness.log.lines();
            if (!fetch.word) {
                EXPECT_TRUE(lines.isEmpty()) << lines.join(u'\n').toStdString();
                continue;
            }
            // Two failures in a row, one line; the fallback of activeplayername (refused here) logs nothing.
            ASSERT_EQ(lines.size(), 1) << lines.join(u'\n').toStdString();
            const QString prefix =
                QStringLiteral("Live Client Data API /%1 failed: ").arg(QLatin1String(fetch.word));
            EXPECT_TRUE(lines[0].startsWith(prefix)) << lines[0].toStdString();
            if (*answer.detail) {
                EXPECT_EQ(lines[0], prefix + QString::fromUtf8(answer.detail));
            } else {
                EXPECT_GT(lines[0].size(), prefix.size());
            }
        }
    }
}

TEST(LeagueLiveClient, ActivePlayerNameFallsBackToAllGameDataSilently) {
    struct Case {
        const char* name;
        ScriptedLiveService::Handler allGameData;
        std::optional<std::string> expected;
    };
    const std::vector<Case> cases = {
        {"fallback answers",
         [] { return ScriptedLiveService::ok(allGameDataBody(QStringLiteral("Kestrel"), {})); }, "Kestrel"},
        {"fallback fails", [] { return ScriptedLiveService::status(503); }, std::nullopt},
        {"fallback malformed", [] { return ScriptedLiveService::status(200, "{}"); }, std::nullopt},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        LiveClientHarness h;
        h.service->on(kActivePlayerNamePath, [] { return ScriptedLiveService::status(404); });
        h.service->on(kAllGameDataPath, c.allGameData);
        EXPECT_EQ(h.drive(h.client.fetchActivePlayerName()), c.expected);
        EXPECT_EQ(h.log.lines(),
                  QStringList{QStringLiteral(
                      "Live Client Data API /activeplayername failed: unexpected response 404")});
        EXPECT_EQ(h.service->requests(), (QStringList{kActivePlayerNamePath, kAllGameDataPath}));
    }
}

TEST(LeagueLiveClient, FailureLinesOfEachWordAreThrottledApart) {
    LiveClientHarness h;
    h.service->on(kGameStatsPath, [] { return ScriptedLiveService::status(500); });
    h.service->on(kAllGameDataPath, [] { return ScriptedLiveService::status(500); });
    // Four calls a second for 65 seconds: gamestats lines at 0, 30 and 60 seconds, allgamedata lines at
    // 2.5, 32.5 and 62.5 seconds, each word on its own interval.
    for (int quarter = 0; quarter <= 260; ++quarter) {
        (void)h.drive(h.client.fetchGameStats());
        if (quarter % 20 == 10) (void)h.drive(h.client.fetchLiveGameData());
        h.clock.advance(250ms);
    }
    EXPECT_EQ(h.log.lines().count(
                  QStringLiteral("Live Client Data API /gamestats failed: unexpected response 500")),
              3);
    EXPECT_EQ(h.log.lines().count(
                  QStringLiteral("Live Client Data API /allgamedata failed: unexpected response 500")),
              3);
}

TEST(LeagueLiveClient, ClassifiesAReplayByTheFirst200InTenAttempts) {
    struct Case {
        const char* name;
        int firstSuccess;  // attempt answering 200; 0: none
        ScriptedLiveService::Handler otherwise;
        bool replay;
        int requests;
    };
    const auto notFound = [] { return ScriptedLiveService::status(404); };
    const auto refused = [] { return ScriptedLiveService::refused(); };
    const std::vector<Case> cases = {
        {"first attempt", 1, notFound, true, 1},
        {"third attempt", 3, notFound, true, 3},
        {"tenth attempt", 10, refused, true, 10},
        {"never, 404", 0, notFound, false, 10},
        {"never, refused", 0, refused, false, 10},
        {"never, 500", 0, [] { return ScriptedLiveService::status(500); }, false, 10},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        LiveClientHarness h;
        int attempt = 0;
        h.service->on(kReplayPath, [&] {
            ++attempt;
            return attempt == c.firstSuccess ? ScriptedLiveService::status(200) : c.otherwise();
        });
        int steps = 0;
        EXPECT_EQ(h.drive(h.client.classifyGameProcess(), 250ms, &steps), c.replay);
        EXPECT_EQ(h.service->count(kReplayPath), c.requests);
        EXPECT_EQ(steps, c.requests - 1);  // 0.25 seconds between attempts, none after the last
        EXPECT_TRUE(h.log.lines().isEmpty());
    }
}

TEST(LeagueLiveClient, RecordingMetadataIsRetriedUntilTheGameAnswers) {
    struct Case {
        const char* name;
        int answersFrom;  // first attempt with an answer; 0: never
        int attempts;
        int requests;
        std::optional<RecordingMetadata> expected;
        QString activeName = QStringLiteral("Kestrel");
    };
    const RecordingMetadata wukong{std::nullopt, "CLASSIC", "MonkeyKing", "JUNGLE"};
    const std::vector<Case> cases = {
        {"at once", 1, 15, 1, wukong},
        {"after loading", 6, 15, 6, wukong},
        {"at the last attempt", 15, 15, 15, wukong},
        {"too late", 16, 15, 15, std::nullopt},
        {"never", 0, 3, 3, std::nullopt},
        // Untrimmed, the name matches no player; an answer all the same, which ends the retries.
        {"an answer without the active player", 1, 15, 1,
         RecordingMetadata{std::nullopt, "CLASSIC", std::nullopt, std::nullopt}, QStringLiteral("Kestrel ")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        LiveClientHarness h;
        int attempt = 0;
        h.service->on(kAllGameDataPath, [&] {
            ++attempt;
            if (c.answersFrom == 0 || attempt < c.answersFrom) return ScriptedLiveService::status(404);
            return ScriptedLiveService::ok(allGameDataBody(
                c.activeName, {allGameDataPlayer(QStringLiteral("kestrel"), QStringLiteral("Wukong"),
                                                 QStringLiteral("JUNGLE"),
                                                 QStringLiteral("game_character_displayname_MonkeyKing"))}));
        });
        int steps = 0;
        const auto metadata =
            h.drive(h.client.fetchRecordingMetadata(c.attempts, 1s, CancellationToken()), 1000ms, &steps);
        EXPECT_EQ(h.service->count(kAllGameDataPath), c.requests);
        EXPECT_EQ(steps, c.requests - 1);
        EXPECT_EQ(metadata, c.expected);
    }
}

TEST(LeagueLiveClient, RecordingMetadataHonoursCancellation) {
    LiveClientHarness h;
    h.service->on(kAllGameDataPath, [] { return ScriptedLiveService::status(404); });

    const CancellationToken before;
    before.cancel();
    EXPECT_EQ(h.drive(h.client.fetchRecordingMetadata(15, 1s, before)), std::nullopt);
    EXPECT_EQ(h.service->count(kAllGameDataPath), 0);

    const CancellationToken during;
    auto task = h.client.fetchRecordingMetadata(15, 1s, during);
    h.clock.advance(1s);
    h.clock.advance(1s);
    during.cancel();
    EXPECT_EQ(QCoro::waitFor(std::move(task)), std::nullopt);
    EXPECT_EQ(h.service->count(kAllGameDataPath), 3);
}

}  // namespace
}  // namespace kestrum

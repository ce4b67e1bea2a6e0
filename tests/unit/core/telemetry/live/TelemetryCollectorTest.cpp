#include "LiveClientHarness.h"
#include "LiveServiceBodies.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QTemporaryDir>

#include <functional>
#include <vector>

namespace kestrum {
namespace {

using namespace test;
using namespace std::chrono_literals;

// A game whose clock reads `gameTimeAtStart` when the harness's clock starts and runs with it. Events
// are fed once the game clock has reached them; each endpoint can be switched off.
struct ScriptedGame {
    explicit ScriptedGame(LiveClientHarness& harness) : h(harness) {
        h.service->on(kGameStatsPath, [this]() -> Result<LiveServiceResponse> {
            if (!statsUp) return ScriptedLiveService::status(404);
            return ScriptedLiveService::ok(gameStatsBody(gameTime()));
        });
        h.service->on(kPlayerListPath, [this]() -> Result<LiveServiceResponse> {
            if (!playersUp) return ScriptedLiveService::refused();
            return ScriptedLiveService::status(200, playerListBody(players));
        });
        h.service->on(kEventDataPath, [this]() -> Result<LiveServiceResponse> {
            if (!eventsUp) return ScriptedLiveService::status(500);
            QJsonArray feed;
            for (const QJsonObject& event : events) {
                if (event.value(QStringLiteral("EventTime")).toDouble() <= gameTime()) feed.append(event);
            }
            return ScriptedLiveService::ok(eventDataBody(feed));
        });
        h.service->on(kActivePlayerNamePath, [this]() -> Result<LiveServiceResponse> {
            if (activeName.isEmpty()) return ScriptedLiveService::status(404);
            return ScriptedLiveService::status(200, nameBody(activeName));
        });
    }

    double gameTime() const {
        return gameTimeAtStart + std::chrono::duration<double>(h.clock.now() - h.clockStart).count();
    }

    // Runs a collection whose movie began `elapsedAtStart` seconds before the clock's start, for
    // `passes` passes, calling `beforePass(k)` ahead of pass k; then cancels it and returns the result.
    RecordingTelemetry collect(double elapsedAtStart, int passes,
                               const std::function<void(int)>& beforePass = {}) {
        const ReferenceDate startDate{LiveClientHarness::kWallStart.secondsSince2001 - elapsedAtStart};
        const CancellationToken token;
        if (beforePass) beforePass(0);
        auto task = h.client.collectTelemetry(startDate, journal, token);
        for (int pass = 1; pass < passes; ++pass) {
            if (beforePass) beforePass(pass);
            h.clock.advance(250ms);
        }
        // Read before the end of the run: the journal holds what the run had gathered by then.
        if (journal) journal->close();
        token.cancel();
        return QCoro::waitFor(std::move(task));
    }

    LiveClientHarness& h;
    double gameTimeAtStart = 100;
    std::vector<QJsonObject> events;
    std::vector<RecordingScoreboardPlayer> players = {scoreboardPlayer("Kestrel", "Ahri", "ORDER"),
                                                      scoreboardPlayer("Rook", "Garen", "CHAOS")};
    QString activeName = QStringLiteral("Kestrel");
    bool statsUp = true;
    bool playersUp = true;
    std::shared_ptr<RecordingTelemetryJournal> journal;
    bool eventsUp = true;
};

TEST(collectTelemetry, ACancellationBeforeTheFirstPassSendsNothing) {
    LiveClientHarness h;
    ScriptedGame game(h);
    const CancellationToken token;
    token.cancel();
    const RecordingTelemetry telemetry =
        QCoro::waitFor(h.client.collectTelemetry(h.wallNow(), nullptr, token));
    EXPECT_EQ(telemetry, RecordingTelemetry{});
    EXPECT_TRUE(h.service->requests().isEmpty());
}

TEST(collectTelemetry, PlacesAnEventByTheOffsetOfThePassThatSeesIt) {
    struct Case {
        double eventTime;
        double gameTime;
        double elapsed;
        double videoTime;
    };
    const std::vector<Case> cases = {
        {12, 100, 95, 7},    {12, 100, 80, 0}, {100, 100, 3, 3},  {99.5, 100, 0.25, 0},
        {50, 100, 200, 150}, {0, 100, 100, 0}, {88, 100, 95, 83},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message()
                     << "event " << c.eventTime << ", game " << c.gameTime << ", elapsed " << c.elapsed);
        LiveClientHarness h;
        ScriptedGame game(h);
        game.gameTimeAtStart = c.gameTime;
        game.events = {championKill(7, c.eventTime, QStringLiteral("Rook"), QStringLiteral("Kestrel"))};
        const RecordingTelemetry telemetry = game.collect(c.elapsed, 1);
        ASSERT_EQ(telemetry.events.size(), 1u);
        EXPECT_DOUBLE_EQ(telemetry.events[0].videoTime, c.videoTime);
        EXPECT_EQ(telemetry.events[0].id, 7);
        EXPECT_TRUE(telemetry.apmSamples.empty());
    }
}

TEST(collectTelemetry, SnapshotsFollowChangesAndTheSecond) {
    struct Case {
        const char* name;
        int passes;
        std::function<void(ScriptedGame&, int)> beforePass;
        std::vector<double> snapshotTimes;
    };
    const auto unchanged = [](ScriptedGame&, int) {};
    const std::vector<Case> cases = {
        // The rule itself is tested on its own; here, that the pass hands it movie and game time of
        // one moment, and that a pass without players or statistics takes nothing.
        {"a kill",
         2,
         [](ScriptedGame& g, int pass) {
             if (pass == 1) g.players[0].scores.kills = 1;
         },
         {5.0, 5.25}},
        {"unchanged for a second", 6, unchanged, {5.0, 6.0}},
        {"no players listed", 3, [](ScriptedGame& g, int) { g.playersUp = false; }, {}},
        {"no statistics", 3, [](ScriptedGame& g, int) { g.statsUp = false; }, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        LiveClientHarness h;
        ScriptedGame game(h);
        const RecordingTelemetry telemetry =
            game.collect(5.0, c.passes, [&](int pass) { c.beforePass(game, pass); });
        std::vector<double> times;
        for (const auto& snapshot : telemetry.scoreboard) {
            times.push_back(snapshot.videoTime);
            EXPECT_DOUBLE_EQ(snapshot.gameTime - snapshot.videoTime, 95.0);
            EXPECT_EQ(snapshot.players.size(), 2u);
        }
        EXPECT_EQ(times, c.snapshotTimes);
    }
}

TEST(collectTelemetry, MeasuresThePassWhenTheStatisticsArriveNotThePlayers) {
    LiveClientHarness h;
    ScriptedGame game(h);
    game.events = {championKill(1, 99, QStringLiteral("Rook"), QStringLiteral("Kestrel"))};
    h.service->delay(kPlayerListPath, h.clock, 1500ms);
    const CancellationToken token;
    auto task = h.client.collectTelemetry(ReferenceDate{LiveClientHarness::kWallStart.secondsSince2001 - 5.0},
                                          nullptr, token);
    h.clock.advance(1500ms);  // the player list arrives; the statistics came at once, at game time 100
    token.cancel();
    const RecordingTelemetry telemetry = QCoro::waitFor(std::move(task));
    ASSERT_EQ(telemetry.scoreboard.size(), 1u);
    EXPECT_DOUBLE_EQ(telemetry.scoreboard[0].videoTime, 5.0);
    EXPECT_DOUBLE_EQ(telemetry.scoreboard[0].gameTime, 100.0);
    ASSERT_EQ(telemetry.events.size(), 1u);
    EXPECT_DOUBLE_EQ(telemetry.events[0].videoTime, 4.0);
}

TEST(collectTelemetry, FetchesEventsAtMostOnceASecondAndNotWithoutStatistics) {
    struct Case {
        const char* name;
        int passes;
        bool statsUp;
        int eventRequests;
    };
    const std::vector<Case> cases = {
        {"one pass", 1, true, 1},    {"just under a second", 4, true, 1}, {"a second", 5, true, 2},
        {"two seconds", 9, true, 3}, {"statistics absent", 9, false, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        LiveClientHarness h;
        ScriptedGame game(h);
        game.statsUp = c.statsUp;
        (void)game.collect(0, c.passes);
        EXPECT_EQ(h.service->count(kEventDataPath), c.eventRequests);
        EXPECT_EQ(h.service->count(kGameStatsPath), c.passes);
        EXPECT_EQ(h.service->count(kPlayerListPath), c.passes);
        EXPECT_EQ(h.service->count(kActivePlayerNamePath), 1);  // known from the first pass on
    }
}

TEST(collectTelemetry, TenSecondsOfFailingEventAnswersLoseNothing) {
    LiveClientHarness h;
    ScriptedGame game(h);
    game.gameTimeAtStart = 10;  // the movie starts at game time 10
    for (int second = 1; second <= 9; ++second) {
        game.events.push_back(
            championKill(second, 10 + second, QStringLiteral("Rook"), QStringLiteral("Kestrel")));
    }
    game.eventsUp = false;
    const RecordingTelemetry telemetry = game.collect(0, 45, [&](int pass) { game.eventsUp = pass >= 40; });
    ASSERT_EQ(telemetry.events.size(), 9u);
    for (std::size_t i = 0; i < telemetry.events.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(telemetry.events[i].id, static_cast<std::int64_t>(i) + 1);
        EXPECT_DOUBLE_EQ(telemetry.events[i].videoTime, static_cast<double>(i) + 1);
    }
}

TEST(collectTelemetry, KeepsTheFirstFormOfAnEventAndSortsByVideoTime) {
    LiveClientHarness h;
    ScriptedGame game(h);
    game.events = {championKill(3, 90, QStringLiteral("Kestrel"), QStringLiteral("Rook")),
                   championKill(2, 60, QStringLiteral("Rook"), QStringLiteral("Kestrel"))};
    const RecordingTelemetry telemetry = game.collect(100, 6, [&](int pass) {
        if (pass != 4) return;
        game.events[0] = championKill(3, 95, QStringLiteral("Someone"), QStringLiteral("Else"));
        game.events.push_back(championKill(1, 99, QStringLiteral("Rook"), QStringLiteral("Kestrel")));
    });
    ASSERT_EQ(telemetry.events.size(), 3u);
    EXPECT_EQ(telemetry.events[0].id, 2);
    EXPECT_EQ(telemetry.events[1].id, 3);
    EXPECT_EQ(telemetry.events[1].killerName, "Kestrel");
    EXPECT_DOUBLE_EQ(telemetry.events[1].videoTime, 90);
    EXPECT_EQ(telemetry.events[2].id, 1);
    // Seen at the pass 1.0 second in: elapsed 101, game time 101.
    EXPECT_DOUBLE_EQ(telemetry.events[2].videoTime, 99);
}

TEST(collectTelemetry, WhatItGathersReachesTheJournalAsItComes) {
    LiveClientHarness h;
    ScriptedGame game(h);
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("kestrum_1.mov.telemetry"));
    auto created = RecordingTelemetryJournal::create(path, ReferenceDate{800000000});
    ASSERT_TRUE(created.ok());
    game.journal = created.value();
    game.events = {championKill(2, 100.4, QStringLiteral("Rook"), QStringLiteral("Kestrel")),
                   championKill(1, 101.2, QStringLiteral("Kestrel"), QStringLiteral("Rook"))};
    const RecordingTelemetry telemetry = game.collect(5.0, 10, [&](int pass) {
        if (pass == 6) game.players[1].scores.deaths = 1;
    });
    const RecordingTelemetryJournalContents journaled =
        decodeRecordingTelemetryJournal(readFileBytes(path).toStdString());
    EXPECT_EQ(journaled.skippedLines, 0);
    EXPECT_EQ(journaled.recordingStartedAt, ReferenceDate{800000000});
    ASSERT_EQ(telemetry.events.size(), 2u);
    EXPECT_EQ(telemetry.scoreboard.size(), 3u);  // the first, the death, and a second after the first
    EXPECT_EQ(journaled.telemetry, telemetry);
}

TEST(collectTelemetry, RowsConvertedBeforeTheLocalPlayerIsKnownStayUnflagged) {
    LiveClientHarness h;
    ScriptedGame game(h);
    game.activeName.clear();
    game.events = {championKill(1, 99, QStringLiteral("Kestrel"), QStringLiteral("Rook"))};
    const RecordingTelemetry telemetry = game.collect(0, 6, [&](int pass) {
        if (pass == 2) game.activeName = QStringLiteral("Kestrel");
        if (pass == 4)
            game.events.push_back(championKill(2, 100.5, QStringLiteral("Kestrel"), QStringLiteral("Rook")));
    });
    ASSERT_EQ(telemetry.events.size(), 2u);
    EXPECT_EQ(telemetry.events[0].isLocalPlayerKill, false);
    EXPECT_EQ(telemetry.events[1].isLocalPlayerKill, true);
    // Asked at every pass until it answered at the third; the fallback was asked each time it failed.
    EXPECT_EQ(h.service->count(kActivePlayerNamePath), 3);
    EXPECT_EQ(h.service->count(kAllGameDataPath), 2);
}

}  // namespace
}  // namespace kestrum

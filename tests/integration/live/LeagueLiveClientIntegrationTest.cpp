// The client and the collector over real TLS on loopback, against kestrum-game-simulator.
#include "SimulatorProcess.h"

#include "support/CapturedLog.h"
#include "support/TestEnvironment.h"

#include "core/telemetry/live/LeagueLiveClient.h"
#include "core/telemetry/live/NetworkLiveServiceTransport.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QTimer>

#include <chrono>
#include <cmath>
#include <set>

namespace kestrum {
namespace {

using test::CapturedLog;
using test::SimulatorProcess;
using namespace std::chrono_literals;

// How far a placed event may lie from its true movie time: the offset is measured at each pass, so the
// error is the latency between the service reading its clock and the client reading the wall clock;
// one second leaves ample room for a loaded machine.
constexpr double kPlacementBoundSeconds = 1.0;

LeagueLiveClient clientFor(int port) {
    return LeagueLiveClient(std::make_shared<NetworkLiveServiceTransport>(port));
}

RecordingTelemetry collectFor(LeagueLiveClient& client, ReferenceDate startDate,
                              std::chrono::milliseconds duration) {
    const CancellationToken token;
    QTimer::singleShot(duration, Qt::PreciseTimer, [token] { token.cancel(); });
    return QCoro::waitFor(client.collectTelemetry(startDate, nullptr, token));
}

// Checks the timeline against the script: every kept event up to `requiredUntilGameTime` is there once,
// nothing else is, and each event lies at its true movie time. Events the game clock reached later may
// or may not have been fetched before the cancellation.
void expectScriptTimeline(const RecordingTelemetry& telemetry, const QJsonObject& script,
                          double clockStartUnix, ReferenceDate startDate, double requiredUntilGameTime) {
    const std::set<QString> dropped = {QStringLiteral("MinionsSpawning")};
    std::map<std::int64_t, const RecordingEvent*> byID;
    for (const auto& event : telemetry.events) byID[event.id] = &event;
    ASSERT_EQ(byID.size(), telemetry.events.size()) << "an id appears twice";
    std::size_t matched = 0;
    std::int64_t eventID = 0;
    for (const QJsonValue& value : script.value(QStringLiteral("events")).toArray()) {
        const QJsonObject row = value.toObject();
        const double time = row.value(QStringLiteral("EventTime")).toDouble();
        const QString name = row.value(QStringLiteral("EventName")).toString();
        const auto found = byID.find(eventID++);
        SCOPED_TRACE(name.toStdString());
        if (dropped.count(name) != 0) {
            EXPECT_EQ(found, byID.end());
            continue;
        }
        if (found == byID.end()) {
            EXPECT_GT(time, requiredUntilGameTime) << "lost";
            continue;
        }
        ++matched;
        const double truth = std::max(0.0, clockStartUnix + time - startDate.unixSeconds());
        EXPECT_NEAR(found->second->videoTime, truth, kPlacementBoundSeconds);
    }
    EXPECT_EQ(matched, telemetry.events.size()) << "events the script does not have";
    for (std::size_t i = 1; i < telemetry.events.size(); ++i) {
        EXPECT_LE(telemetry.events[i - 1].videoTime, telemetry.events[i].videoTime);
    }
}

// The game time this many seconds before now, by the simulator's clock start.
double gameTimeBefore(double seconds, double clockStartUnix) {
    return ReferenceDate::now().unixSeconds() - clockStartUnix - seconds;
}

TEST(LeagueLiveClient, TellsALiveGameFromAReplay) {
    for (const bool replay : {false, true}) {
        SCOPED_TRACE(replay ? "replay" : "live");
        SimulatorProcess simulator;
        ASSERT_TRUE(simulator.start(SimulatorProcess::shortGame({{QStringLiteral("replay"), replay}})));
        LeagueLiveClient client = clientFor(simulator.port());
        EXPECT_EQ(QCoro::waitFor(client.classifyGameProcess()), replay);
    }
}

TEST(LeagueLiveClient, RecordingMetadataWaitsForTheGameToLeaveLoading) {
    CapturedLog log;
    SimulatorProcess simulator;
    ASSERT_TRUE(simulator.start(SimulatorProcess::shortGame({{QStringLiteral("loadingSeconds"), 2.5}})));
    LeagueLiveClient client = clientFor(simulator.port());
    const auto metadata = QCoro::waitFor(client.fetchRecordingMetadata(15, 1s, CancellationToken()));
    ASSERT_TRUE(metadata.has_value());
    EXPECT_EQ(*metadata, (RecordingMetadata{std::nullopt, "CLASSIC", "Ahri", "MIDDLE"}));
    // The loading screen's answers were logged once, however many attempts met them.
    EXPECT_EQ(log.countStartingWith(
                  QStringLiteral("Live Client Data API /allgamedata failed: unexpected response 404")),
              1);
}

TEST(collectTelemetry, PlacesEveryEventOfTheScriptAtItsMovieTime) {
    SimulatorProcess simulator;
    const QJsonObject script = SimulatorProcess::shortGame();
    // The movie starts during the loading screen, before the game clock.
    const ReferenceDate startDate = ReferenceDate::now();
    ASSERT_TRUE(simulator.start(script));
    LeagueLiveClient client = clientFor(simulator.port());
    // Until the game has been over for two and a half seconds.
    const auto untilOver = std::chrono::milliseconds(
        std::llround(-gameTimeBefore(16.5, simulator.gameClockStartUnixSeconds()) * 1000.0));
    const RecordingTelemetry telemetry = collectFor(client, startDate, untilOver);
    // The game ended at 14 seconds, more than two seconds ago: the whole script must be there.
    ASSERT_GT(gameTimeBefore(2.0, simulator.gameClockStartUnixSeconds()), 14.0);
    expectScriptTimeline(telemetry, script, simulator.gameClockStartUnixSeconds(), startDate, 14.0);
    ASSERT_FALSE(telemetry.scoreboard.empty());
    EXPECT_EQ(telemetry.scoreboard.front().players.size(), 4u);
    for (const auto& snapshot : telemetry.scoreboard) {
        if (snapshot.gameTime >= 14.0) continue;  // the end screen's clock stands still
        const double truth =
            simulator.gameClockStartUnixSeconds() + snapshot.gameTime - startDate.unixSeconds();
        EXPECT_NEAR(snapshot.videoTime, truth, kPlacementBoundSeconds);
    }
}

TEST(collectTelemetry, TenSecondsOfFailingEventAnswersLoseNoEvent) {
    SimulatorProcess simulator;
    const QJsonObject script = SimulatorProcess::shortGame({{QStringLiteral("loadingSeconds"), 0.5}});
    const ReferenceDate startDate = ReferenceDate::now();
    ASSERT_TRUE(
        simulator.start(script, {QStringLiteral("--fault"), QStringLiteral("eventdata:http500:1:11")}));
    LeagueLiveClient client = clientFor(simulator.port());
    const RecordingTelemetry telemetry = collectFor(client, startDate, 14000ms);
    // Answers fail for the first 11 seconds; everything up to two seconds before the end must be there.
    const double required = gameTimeBefore(2.0, simulator.gameClockStartUnixSeconds());
    ASSERT_GT(required, 11.0);
    expectScriptTimeline(telemetry, script, simulator.gameClockStartUnixSeconds(), startDate, required);
}

TEST(LeagueLiveClient, LogsOneFailureLinePerEndpointWord) {
    CapturedLog log;
    SimulatorProcess simulator;
    ASSERT_TRUE(simulator.start(SimulatorProcess::shortGame(),
                                {QStringLiteral("--fault"), QStringLiteral("gamestats:http500:0:600"),
                                 QStringLiteral("--fault"), QStringLiteral("allgamedata:malformed:0:600")}));
    LeagueLiveClient client = clientFor(simulator.port());
    for (int i = 0; i < 8; ++i) {
        EXPECT_FALSE(QCoro::waitFor(client.fetchGameStats()).has_value());
        EXPECT_FALSE(QCoro::waitFor(client.fetchLiveGameData()).has_value());
        test::processEventsFor(100);
    }
    EXPECT_EQ(log.countStartingWith(
                  QStringLiteral("Live Client Data API /gamestats failed: unexpected response 500")),
              1);
    EXPECT_EQ(log.countStartingWith(QStringLiteral("Live Client Data API /allgamedata failed: ")), 1);
    EXPECT_EQ(log.countStartingWith(QStringLiteral("Live Client Data API /")), 2)
        << log.lines().join(u'\n').toStdString();
}

TEST(LeagueLiveClient, AnswersSlowerThanTheTimeoutAndAClosedPortGiveAbsent) {
    for (const char* fault : {"gamestats:slow:0:600", "closed:0:600"}) {
        SCOPED_TRACE(fault);
        SimulatorProcess simulator;
        ASSERT_TRUE(simulator.start(SimulatorProcess::runningGame(),
                                    {QStringLiteral("--fault"), QString::fromLatin1(fault)}));
        LeagueLiveClient client = clientFor(simulator.port());
        EXPECT_FALSE(QCoro::waitFor(client.fetchGameStats()).has_value());
    }
}

}  // namespace
}  // namespace kestrum

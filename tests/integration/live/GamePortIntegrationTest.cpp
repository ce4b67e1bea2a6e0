// The client as the application makes it, with no overrides, against a service on port 2999.
#include "CapturedLog.h"
#include "SimulatorProcess.h"

#include "core/telemetry/live/LeagueLiveClient.h"

#include <gtest/gtest.h>

namespace kestrum {
namespace {

using test::CapturedLog;
using test::SimulatorProcess;

TEST(LeagueLiveClient, TheDefaultClientReachesTheGamePortThroughTheBundledAnchor) {
    CapturedLog log;
    SimulatorProcess simulator;
    ASSERT_TRUE(simulator.start(2999, SimulatorProcess::script(QStringLiteral("short-game.json"),
                                                               {{QStringLiteral("loadingSeconds"), 0}})))
        << simulator.output().toStdString();
    LeagueLiveClient client;
    const auto stats = QCoro::waitFor(client.fetchGameStats());
    ASSERT_TRUE(stats.has_value());
    EXPECT_EQ(stats->gameMode, "CLASSIC");
    EXPECT_FALSE(QCoro::waitFor(client.classifyGameProcess()));
    EXPECT_EQ(log.countStartingWith(
                  QStringLiteral("Riot local API is using legacy certificate compatibility mode: ")),
              1);
}

}  // namespace
}  // namespace kestrum

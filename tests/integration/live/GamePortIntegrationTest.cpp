// The client as the application makes it, with no overrides, against a service on port 2999.
#include "SimulatorProcess.h"

#include "support/CapturedLog.h"

#include "core/telemetry/live/LeagueLiveClient.h"

#include <gtest/gtest.h>

namespace kestrum {
namespace {

TEST(LeagueLiveClient, TheDefaultClientReachesTheGamePortThroughTheBundledAnchor) {
    test::CapturedLog log;
    test::SimulatorProcess simulator;
    ASSERT_TRUE(simulator.start(test::SimulatorProcess::runningGame(), {}, 2999));
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

#include "base/async/ManualClock.h"
#include "core/telemetry/live/LiveFailureLogThrottle.h"
#include "support/CapturedLog.h"

#include <gtest/gtest.h>

#include <chrono>
#include <vector>

namespace kestrum {
namespace {

using namespace std::chrono_literals;

struct Claim {
    std::chrono::milliseconds atMs;
    const char* word;
    bool allowed;
};

TEST(LiveFailureLogThrottle, OneLinePerWordPerThirtySeconds) {
    const std::vector<Claim> claims = {
        {0ms, "gamestats", true},
        {1ms, "gamestats", false},
        {250ms, "allgamedata", true},
        {29'999ms, "gamestats", false},
        {30'000ms, "gamestats", true},
        {30'249ms, "allgamedata", false},
        {30'250ms, "allgamedata", true},
        {59'999ms, "gamestats", false},
        {60'000ms, "gamestats", true},
        {60'000ms, "activeplayername", true},
        {60'000ms, "activeplayername", false},
    };
    ManualClock clock;
    const auto start = clock.now();
    LiveFailureLogThrottle throttle(clock);
    for (const Claim& claim : claims) {
        SCOPED_TRACE(testing::Message() << claim.word << " at " << claim.atMs.count() << " ms");
        clock.advance(start + claim.atMs - clock.now());
        EXPECT_EQ(throttle.claim(QString::fromLatin1(claim.word)), claim.allowed);
    }
}

// The client's tests read the lines with a reason; an empty one is written as "unknown error".
TEST(LiveFailureLogThrottle, WritesOneErrorLineAndNamesAnEmptyReason) {
    test::CapturedLog log;
    ManualClock clock;
    LiveFailureLogThrottle throttle(clock);
    throttle.logFailure(QStringLiteral("gamestats"), QString());
    throttle.logFailure(QStringLiteral("gamestats"), QStringLiteral("suppressed"));
    EXPECT_EQ(log.sink->lines(),
              (QList<FakeSystemLog::Line>{
                  {SystemLog::Level::Error,
                   QStringLiteral("❌ Live Client Data API /gamestats failed: unknown error")}}));
}

}  // namespace
}  // namespace kestrum

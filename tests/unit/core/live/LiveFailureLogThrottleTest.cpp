#include "core/async/ManualClock.h"
#include "core/log/CaptureLog.h"
#include "core/telemetry/live/LiveFailureLogThrottle.h"
#include "platform/fake/FakeSystemLog.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
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

TEST(LiveFailureLogThrottle, WritesTheFailureLineWithItsDetail) {
    struct Case {
        const char* detail;
        const char* expected;
    };
    const std::vector<Case> cases = {
        {"unexpected response 404", "Live Client Data API /gamestats failed: unexpected response 404"},
        {"", "Live Client Data API /gamestats failed: unknown error"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.expected);
        auto log = std::make_shared<FakeSystemLog>();
        installCaptureSystemLog(log);
        ManualClock clock;
        LiveFailureLogThrottle throttle(clock);
        throttle.logFailure(QStringLiteral("gamestats"), QString::fromUtf8(c.detail));
        throttle.logFailure(QStringLiteral("gamestats"), QStringLiteral("suppressed"));
        installCaptureSystemLog(nullptr);
        const auto lines = log->lines();
        ASSERT_EQ(lines.size(), 1);
        EXPECT_EQ(lines[0].level, SystemLog::Level::Error);
        EXPECT_EQ(lines[0].message, QStringLiteral("❌ ") + QString::fromUtf8(c.expected));
    }
    waitForCaptureLogWrites();
}

}  // namespace
}  // namespace kestrum

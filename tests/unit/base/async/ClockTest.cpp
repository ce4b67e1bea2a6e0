#include "base/async/ManualClock.h"
#include "base/async/SystemClock.h"

#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QCoroTask>

#include <algorithm>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace kestrum {
namespace {

using std::chrono::milliseconds;

struct SleepOutcome {
    std::optional<bool> fullDurationPassed;
    Clock::TimePoint startedAt;
    Clock::TimePoint resumedAt;
};

QCoro::Task<void> sleepInto(Clock& clock, Clock::Duration duration, CancellationToken token,
                            SleepOutcome& outcome) {
    outcome.startedAt = clock.now();
    const bool passed = co_await clock.sleep(duration, token);
    outcome.resumedAt = clock.now();
    outcome.fullDurationPassed = passed;
}

enum class CancelWhen { Before, DuringOnThisThread, DuringFromAnotherThread };

// The contract both clocks share: a cancelled sleep yields false, at once when cancelled before, and
// otherwise through the sleeper's event loop, never inline inside cancel().
void expectCancellationWakesWithFalse(Clock& clock) {
    for (const CancelWhen when :
         {CancelWhen::Before, CancelWhen::DuringOnThisThread, CancelWhen::DuringFromAnotherThread}) {
        SCOPED_TRACE(static_cast<int>(when));
        CancellationToken token;
        SleepOutcome outcome;
        if (when == CancelWhen::Before) token.cancel();
        sleepInto(clock, std::chrono::hours(1), token, outcome);
        if (when == CancelWhen::Before) {
            EXPECT_EQ(outcome.fullDurationPassed, std::optional<bool>(false))
                << "an early cancel does not suspend";
            continue;
        }
        if (when == CancelWhen::DuringOnThisThread) token.cancel();
        if (when == CancelWhen::DuringFromAnotherThread) std::thread([token] { token.cancel(); }).join();
        EXPECT_FALSE(outcome.fullDurationPassed.has_value()) << "a cancellation never resumes inline";
        ASSERT_TRUE(test::waitUntil([&] { return outcome.fullDurationPassed.has_value(); }, 10'000));
        EXPECT_EQ(outcome.fullDurationPassed, std::optional<bool>(false));
    }
}

TEST(SystemClock, CancellationWakesTheSleeperWithFalseThroughItsEventLoop) {
    expectCancellationWakesWithFalse(Clock::system());
}

TEST(ManualClock, CancellationWakesTheSleeperWithFalseThroughItsEventLoop) {
    ManualClock clock;
    expectCancellationWakesWithFalse(clock);
    EXPECT_EQ(clock.pendingSleepCount(), 0u);
}

TEST(SystemClock, SleepEndsOnlyAfterTheFullDuration) {
    for (const Clock::Duration duration :
         {Clock::Duration(milliseconds(30)), Clock::Duration(std::chrono::microseconds(300)),
          Clock::Duration::zero()}) {
        SCOPED_TRACE(duration.count());
        SleepOutcome outcome;
        sleepInto(Clock::system(), duration, {}, outcome);
        ASSERT_TRUE(test::waitUntil([&] { return outcome.fullDurationPassed.has_value(); }, 10'000));
        EXPECT_EQ(outcome.fullDurationPassed, std::optional<bool>(true));
        EXPECT_GE(outcome.resumedAt - outcome.startedAt, duration) << "a sleep never ends early";
    }
}

// One sleeper: sleeps `firstMs`, then, when `againMs` is set, `againMs` more. Each wake is recorded as
// "label@elapsedMs" with the clock's time as the sleeper sees it.
struct Sleeper {
    std::string label;
    int firstMs;
    std::optional<int> againMs;
};

QCoro::Task<void> runSleeper(ManualClock& clock, Sleeper sleeper, std::vector<std::string>& wakes) {
    const auto record = [&] {
        const auto elapsed =
            std::chrono::duration_cast<milliseconds>(clock.now() - ManualClock::kDefaultStart);
        wakes.push_back(sleeper.label + "@" + std::to_string(elapsed.count()));
    };
    co_await clock.sleep(milliseconds(sleeper.firstMs), {});
    record();
    if (!sleeper.againMs) co_return;
    co_await clock.sleep(milliseconds(*sleeper.againMs), {});
    record();
}

struct OrderCase {
    std::string name;
    std::vector<Sleeper> sleepers;  // started in this order, all at time 0
    std::vector<int> advancesMs;
    std::vector<std::string> expectedWakes;
    std::size_t expectedPending;
};

TEST(ManualClock, AdvanceResumesDueSleepersInDeadlineThenStartOrder) {
    const std::vector<OrderCase> cases = {
        {"equal deadlines keep start order",
         {{"a", 10, {}}, {"b", 10, {}}, {"c", 10, {}}},
         {10},
         {"a@10", "b@10", "c@10"},
         0},
        {"different deadlines by deadline",
         {{"a", 30, {}}, {"b", 10, {}}, {"c", 20, {}}},
         {30},
         {"b@10", "c@20", "a@30"},
         0},
        {"only deadlines within the advance", {{"a", 10, {}}, {"b", 50, {}}}, {20}, {"a@10"}, 1},
        {"sleeping again within the window",
         {{"a", 10, 5}, {"b", 12, {}}},
         {20},
         {"a@10", "b@12", "a@15"},
         0},
        {"sleeping again beyond the window", {{"a", 10, 30}}, {20}, {"a@10"}, 1},
        {"a tie with a later sleep goes to the earlier",
         {{"a", 10, 5}, {"b", 15, {}}},
         {15},
         {"a@10", "b@15", "a@15"},
         0},
        {"several small advances", {{"a", 10, {}}, {"b", 25, {}}}, {5, 5, 5, 5, 5}, {"a@10", "b@25"}, 0},
        {"a negative advance does not go back", {{"a", 10, {}}}, {-5, 0, 10}, {"a@10"}, 0},
    };
    for (const OrderCase& testCase : cases) {
        SCOPED_TRACE(testCase.name);
        ManualClock clock;
        std::vector<std::string> wakes;
        for (const Sleeper& sleeper : testCase.sleepers) runSleeper(clock, sleeper, wakes);
        int totalMs = 0;
        for (const int advanceMs : testCase.advancesMs) {
            clock.advance(milliseconds(advanceMs));
            totalMs += std::max(advanceMs, 0);
        }
        EXPECT_EQ(wakes, testCase.expectedWakes);
        EXPECT_EQ(clock.pendingSleepCount(), testCase.expectedPending);
        EXPECT_EQ(clock.now(), ManualClock::kDefaultStart + milliseconds(totalMs));
        clock.advance(std::chrono::hours(1));  // ends the sleepers left, so their frames are freed
    }
}

TEST(ManualClock, NonPositiveDurationsCompleteAtOnceWithoutRegistering) {
    for (const Clock::Duration duration : {Clock::Duration::zero(), -Clock::Duration(milliseconds(5))}) {
        SCOPED_TRACE(duration.count());
        ManualClock clock;
        SleepOutcome outcome;
        sleepInto(clock, duration, {}, outcome);
        EXPECT_EQ(outcome.fullDurationPassed, std::optional<bool>(true));
        EXPECT_EQ(clock.pendingSleepCount(), 0u);
    }
}

}  // namespace
}  // namespace kestrum

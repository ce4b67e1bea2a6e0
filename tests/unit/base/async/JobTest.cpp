#include "base/async/Job.h"

#include "base/async/ManualClock.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QCoroTask>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace kestrum {
namespace {

using std::chrono::seconds;

// A job that sleeps one second on `clock` and then returns `value`, or "cancelled" when woken early.
Job<std::string> sleepingJob(Clock& clock, std::string value) {
    return Job<std::string>::start([&clock, value](CancellationToken token) -> QCoro::Task<std::string> {
        if (!co_await clock.sleep(seconds(1), token)) co_return std::string("cancelled");
        co_return value;
    });
}

QCoro::Task<void> awaitInto(Job<std::string> job, std::optional<std::string>& into) {
    into = co_await job;
}

bool allSet(const std::vector<std::optional<std::string>>& values) {
    return std::all_of(values.begin(), values.end(), [](const auto& value) { return value.has_value(); });
}

TEST(Job, EveryAwaiterGetsTheValueWhetherItCameBeforeOrAfterTheEnd) {
    const std::vector<std::tuple<std::string, int, int>> cases = {
        {"one awaiter", 1, 0},
        {"awaiters before and after", 3, 2},
        {"awaiters only after the end", 0, 2},
    };
    for (const auto& [name, awaitersBeforeEnd, awaitersAfterEnd] : cases) {
        SCOPED_TRACE(name);
        ManualClock clock;
        const Job<std::string> job = sleepingJob(clock, "movie.mov");
        std::vector<std::optional<std::string>> before(awaitersBeforeEnd);
        for (auto& into : before) awaitInto(job, into);
        EXPECT_EQ(job.result(), std::nullopt);

        clock.advance(seconds(1));
        EXPECT_TRUE(job.isFinished());
        EXPECT_EQ(job.result(), std::optional<std::string>("movie.mov"));
        for (const auto& into : before) EXPECT_EQ(into, std::nullopt) << "waiting awaiters resume queued";
        ASSERT_TRUE(test::waitUntil([&] { return allSet(before); }));
        for (const auto& into : before) EXPECT_EQ(into, std::optional<std::string>("movie.mov"));

        std::vector<std::optional<std::string>> after(awaitersAfterEnd);
        for (auto& into : after) awaitInto(job, into);
        for (const auto& into : after) EXPECT_EQ(into, std::optional<std::string>("movie.mov")) << "at once";
    }
}

TEST(Job, VoidBodyRunsAtOnceAndCompletesWhenEveryHandleWasDropped) {
    ManualClock clock;
    auto steps = std::make_shared<std::vector<std::string>>();
    int awaitersResumed = 0;
    {
        // The body's captures must stay valid after the last handle is gone.
        const Job<void> job = Job<void>::start(
            [&clock, steps, label = std::string("woke")](CancellationToken token) -> QCoro::Task<void> {
                steps->push_back("started");
                co_await clock.sleep(seconds(1), token);
                steps->push_back(label);
            });
        EXPECT_EQ(*steps, std::vector<std::string>{"started"});
        [](Job<void> awaited, int& resumed) -> QCoro::Task<void> {
            co_await awaited;
            ++resumed;
        }(job, awaitersResumed);
    }
    clock.advance(seconds(1));
    EXPECT_EQ(*steps, (std::vector<std::string>{"started", "woke"}));
    EXPECT_TRUE(test::waitUntil([&awaitersResumed] { return awaitersResumed == 1; }));
}

enum class Canceller { SameThread, OtherThread, CopyOfHandle, Token };

TEST(Job, CancelWakesTheSleepingBodyWhichStillReturnsToAwaiters) {
    const std::vector<std::pair<std::string, Canceller>> cases = {
        {"cancel on this thread", Canceller::SameThread},
        {"cancel from another thread", Canceller::OtherThread},
        {"cancel through a copy", Canceller::CopyOfHandle},
        {"cancel the token", Canceller::Token},
    };
    for (const auto& [name, canceller] : cases) {
        SCOPED_TRACE(name);
        ManualClock clock;
        const Job<std::string> job = sleepingJob(clock, "not reached");
        std::optional<std::string> awaited;
        awaitInto(job, awaited);
        switch (canceller) {
            case Canceller::SameThread:
                job.cancel();
                break;
            case Canceller::OtherThread:
                std::thread([job] { job.cancel(); }).join();
                break;
            case Canceller::CopyOfHandle:
                Job<std::string>(job).cancel();
                break;
            case Canceller::Token:
                job.token().cancel();
                break;
        }
        EXPECT_TRUE(job.isCancelled());
        EXPECT_FALSE(job.isFinished()) << "cancelling only asks; the body ends by itself";
        ASSERT_TRUE(test::waitUntil([&awaited] { return awaited.has_value(); }));
        EXPECT_EQ(awaited, std::optional<std::string>("cancelled"));
        EXPECT_EQ(job.result(), std::optional<std::string>("cancelled"));
    }
}

}  // namespace
}  // namespace kestrum

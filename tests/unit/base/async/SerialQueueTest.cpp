#include "base/async/SerialQueue.h"

#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QCoroFuture>
#include <QCoroTask>
#include <QThread>

#include <pthread.h>

#include <atomic>
#include <latch>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace kestrum {
namespace {

using std::chrono::milliseconds;

constexpr int kGenerousTimeoutMs = 10'000;

TEST(SerialQueue, KeepsEachProducersOrderAndLosesNothingUnderLoad) {
    constexpr int kProducers = 4;
    constexpr int kTasksEach = 5000;
    SerialQueue queue(QStringLiteral("com.kestrum.test.fifo"));
    std::vector<std::pair<int, int>> ran;  // touched only on the queue
    std::latch go(kProducers);
    std::vector<std::thread> producers;
    for (int producer = 0; producer < kProducers; ++producer) {
        producers.emplace_back([&, producer] {
            go.arrive_and_wait();
            for (int index = 0; index < kTasksEach; ++index) {
                queue.async([&ran, producer, index] { ran.emplace_back(producer, index); });
            }
        });
    }
    for (std::thread& producer : producers) producer.join();
    std::vector<std::pair<int, int>> snapshot;
    queue.sync([&] { snapshot = ran; });

    ASSERT_EQ(snapshot.size(), static_cast<std::size_t>(kProducers * kTasksEach));
    std::vector<int> nextExpected(kProducers, 0);
    for (const auto& [producer, index] : snapshot) {
        ASSERT_EQ(index, nextExpected[producer]) << "producer " << producer;
        ++nextExpected[producer];
    }
}

TEST(SerialQueue, SyncFromTwoThreadsAtOnceRunsEveryTaskBeforeReturning) {
    SerialQueue queue(QStringLiteral("com.kestrum.test.sync"));
    int counter = 0;  // touched only on the queue
    std::atomic<int> mismatches = 0;
    std::latch go(2);
    const auto caller = [&] {
        go.arrive_and_wait();
        for (int index = 0; index < 1000; ++index) {
            bool ran = false;
            queue.sync([&] {
                ++counter;
                ran = true;
            });
            if (!ran) ++mismatches;
        }
    };
    std::thread first(caller);
    std::thread second(caller);
    first.join();
    second.join();
    int total = 0;
    queue.sync([&] { total = counter; });
    EXPECT_EQ(total, 2000);
    EXPECT_EQ(mismatches.load(), 0);
}

TEST(SerialQueue, SyncFromTheQueueItselfRunsInline) {
    SerialQueue queue(QStringLiteral("com.kestrum.test.reentrant"));
    std::vector<std::string> steps;
    queue.sync([&] {
        steps.push_back("outer");
        queue.sync([&] { steps.push_back("inner"); });
        steps.push_back("after inner");
    });
    EXPECT_EQ(steps, (std::vector<std::string>{"outer", "inner", "after inner"}));
}

TEST(SerialQueue, NamesItsThreadWithTheLabelCutTo15Bytes) {
    const std::vector<std::pair<QString, std::string>> cases = {
        {QStringLiteral("com.kestrum.capture.queue"), "com.kestrum.cap"},
        {QStringLiteral("short"), "short"},
        {QStringLiteral("exactly15bytes!"), "exactly15bytes!"},
    };
    for (const auto& [label, expectedName] : cases) {
        SCOPED_TRACE(label.toStdString());
        SerialQueue queue(label);
        char name[16] = {};
        queue.sync([&name] { pthread_getname_np(pthread_self(), name, sizeof name); });
        EXPECT_EQ(std::string(name), expectedName);
    }
}

QCoro::Task<void> submitAndAwait(SerialQueue& queue, std::optional<int>& value, bool& ranOnQueue,
                                 QThread*& resumedOn) {
    value = co_await queue.submit([&queue, &ranOnQueue] {
        ranOnQueue = queue.isCurrent();
        return 42;
    });
    resumedOn = QThread::currentThread();
}

TEST(SerialQueue, SubmitCarriesTheValueBackToAnAwaitingCoroutine) {
    SerialQueue queue(QStringLiteral("com.kestrum.test.submit"));
    std::optional<int> value;
    bool ranOnQueue = false;
    QThread* resumedOn = nullptr;
    submitAndAwait(queue, value, ranOnQueue, resumedOn);
    ASSERT_TRUE(test::waitUntil([&value] { return value.has_value(); }, kGenerousTimeoutMs));
    EXPECT_EQ(value, std::optional<int>(42));
    EXPECT_TRUE(ranOnQueue);
    EXPECT_EQ(resumedOn, QThread::currentThread());

    // Move-only work and work without a value go through too.
    auto owned = std::make_unique<std::string>("unique");
    EXPECT_EQ(
        QCoro::waitFor(qCoro(queue.submit([owned = std::move(owned)] { return *owned; })).waitForFinished()),
        "unique");
    bool ran = false;
    QCoro::waitFor(qCoro(queue.submit([&ran] { ran = true; })).waitForFinished());
    EXPECT_TRUE(ran);
}

TEST(SerialQueue, DestructionRunsQueuedTasksAndMayHappenFromItsOwnTask) {
    std::atomic<int> ran = 0;
    {
        SerialQueue queue(QStringLiteral("com.kestrum.test.drain"));
        std::latch release(1);
        queue.async([&release] { release.wait(); });
        for (int index = 0; index < 100; ++index) {
            queue.async([&] {
                if (++ran == 100) queue.async([&ran] { ++ran; });  // queued during the drain: runs too
            });
        }
        release.count_down();
    }
    EXPECT_EQ(ran.load(), 101);

    auto* selfDestroying = new SerialQueue(QStringLiteral("com.kestrum.test.self"));
    std::atomic<bool> laterTaskRan = false;
    selfDestroying->async([selfDestroying, &laterTaskRan] {
        selfDestroying->async([&laterTaskRan] { laterTaskRan = true; });
        delete selfDestroying;
    });
    EXPECT_TRUE(test::waitUntil([&laterTaskRan] { return laterTaskRan.load(); }, kGenerousTimeoutMs));
}

struct RepeatCase {
    std::string name;
    int nowMs;  // since the first deadline
    int expectedNextMs;
};

TEST(SerialQueue, RepeatingDeadlinesStayOnTheGridAndSkipMissedFirings) {
    const SerialQueue::TimePoint first = SerialQueue::TimePoint(std::chrono::hours(1));
    const std::vector<RepeatCase> cases = {
        {"handler returned at once", 0, 400},
        {"handler took a while", 150, 400},
        {"handler ended exactly on the next point", 400, 800},
        {"handler overran two points: no catch-up", 1000, 1200},
        {"late first firing", 399, 400},
        {"clock read before the first deadline", -5, 400},
    };
    for (const RepeatCase& testCase : cases) {
        SCOPED_TRACE(testCase.name);
        EXPECT_EQ(
            SerialQueue::nextRepeatDeadline(first, milliseconds(400), first + milliseconds(testCase.nowMs)),
            first + milliseconds(testCase.expectedNextMs));
    }
}

// Lets real time pass so that a wrongly armed timer would have had every chance to fire, then waits
// for the queue to be idle. Never an assertion on how long anything took.
void letTimePass(SerialQueue& queue) {
    std::this_thread::sleep_for(milliseconds(100));
    queue.sync([] {});
}

TEST(SerialQueueTimer, OneShotFiresOnceOnTheQueueAndNeverBeforeItsDelay) {
    SerialQueue queue(QStringLiteral("com.kestrum.test.oneshot"));
    std::atomic<int> fired = 0;
    std::atomic<bool> onQueue = false;
    std::atomic<std::chrono::steady_clock::time_point> firedAt{};
    const auto scheduledAt = std::chrono::steady_clock::now();
    SerialQueueTimer timer = queue.scheduleTimer(milliseconds(30), std::nullopt, [&] {
        firedAt = std::chrono::steady_clock::now();
        onQueue = queue.isCurrent();
        ++fired;
    });
    ASSERT_TRUE(test::waitUntil([&fired] { return fired.load() > 0; }, kGenerousTimeoutMs));
    letTimePass(queue);
    EXPECT_EQ(fired.load(), 1);
    EXPECT_TRUE(onQueue.load());
    EXPECT_GE(firedAt.load() - scheduledAt, milliseconds(30));
}

enum class Disarm { Cancel, DropHandle, MoveAssignOver };

// The queue is held busy while the timer comes due, so the disarm always lands before the firing would
// have run: the outcome does not depend on scheduling luck.
TEST(SerialQueueTimer, DisarmedBeforeItRunsItNeverRuns) {
    const std::vector<std::pair<std::string, Disarm>> cases = {
        {"cancel()", Disarm::Cancel},
        {"dropping the handle", Disarm::DropHandle},
        {"assigning another handle over it", Disarm::MoveAssignOver},
    };
    for (const auto& [name, disarm] : cases) {
        SCOPED_TRACE(name);
        SerialQueue queue(QStringLiteral("com.kestrum.test.disarm"));
        std::latch busy(1);
        std::latch release(1);
        queue.async([&] {
            busy.count_down();
            release.wait();
        });
        busy.wait();
        std::atomic<int> fired = 0;
        std::optional<SerialQueueTimer> timer =
            queue.scheduleTimer(SerialQueue::Duration::zero(), milliseconds(1), [&fired] { ++fired; });
        switch (disarm) {
            case Disarm::Cancel:
                timer->cancel();
                break;
            case Disarm::DropHandle:
                timer.reset();
                break;
            case Disarm::MoveAssignOver:
                *timer = SerialQueueTimer();
                break;
        }
        release.count_down();
        letTimePass(queue);
        EXPECT_EQ(fired.load(), 0);
    }
}

// Cancelled from another thread while it fires, or from its own handler: no firing follows the cancel.
TEST(SerialQueueTimer, RepeatingTimerFiresUntilCancelled) {
    for (const bool fromHandler : {false, true}) {
        SCOPED_TRACE(fromHandler ? "from its handler" : "from another thread");
        SerialQueue queue(QStringLiteral("com.kestrum.test.repeat"));
        std::mutex mutex;
        std::optional<SerialQueueTimer> timer;  // guarded by mutex
        std::atomic<int> fired = 0;
        {
            std::lock_guard lock(mutex);
            timer.emplace(queue.scheduleTimer(milliseconds(1), milliseconds(1), [&] {
                std::lock_guard handlerLock(mutex);
                if (++fired == 3 && fromHandler) timer->cancel();
            }));
        }
        ASSERT_TRUE(test::waitUntil([&fired] { return fired.load() >= 3; }, kGenerousTimeoutMs));
        if (!fromHandler) {
            std::lock_guard lock(mutex);
            timer->cancel();
            EXPECT_FALSE(timer->isArmed());
        }
        queue.sync([] {});  // an invocation that had already begun has ended now
        const int afterCancel = fired.load();
        letTimePass(queue);
        EXPECT_EQ(fired.load(), afterCancel);
        EXPECT_TRUE(!fromHandler || afterCancel == 3) << afterCancel;
    }
}

}  // namespace
}  // namespace kestrum

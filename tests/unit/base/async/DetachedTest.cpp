#include "base/async/Detached.h"

#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QtGlobal>

#include <QCoroFuture>
#include <QCoroTask>
#include <QThread>

#include <optional>

namespace kestrum {
namespace {

struct DetachedOutcome {
    std::optional<qint64> value;
    QThread* workedOn = nullptr;
    QThread* resumedOn = nullptr;
};

QCoro::Task<void> measureDetached(DetachedOutcome& outcome) {
    outcome.value = co_await detached([&outcome] {
        outcome.workedOn = QThread::currentThread();
        qint64 sum = 0;
        for (qint64 bytes = 1; bytes <= 1000; ++bytes) sum += bytes;
        return sum;
    });
    outcome.resumedOn = QThread::currentThread();
}

TEST(Detached, CoroutineAwaitsTheValueBackOnTheMainThread) {
    DetachedOutcome outcome;
    measureDetached(outcome);
    ASSERT_TRUE(test::waitUntil([&outcome] { return outcome.value.has_value(); }, 10'000));
    EXPECT_EQ(outcome.value, std::optional<qint64>(500500));
    EXPECT_NE(outcome.workedOn, QThread::currentThread());
    EXPECT_EQ(outcome.resumedOn, QThread::currentThread());
}

}  // namespace
}  // namespace kestrum

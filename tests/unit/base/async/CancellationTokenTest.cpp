#include "base/async/CancellationToken.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <latch>
#include <optional>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

namespace kestrum {
namespace {

enum class Step { Register, Cancel, DropRegistration, MoveRegistrationAway };

TEST(CancellationToken, CallbackRunsAtMostOnceAndOnlyWhileRegistered) {
    const std::vector<std::tuple<std::string, std::vector<Step>, int>> cases = {
        {"registered then cancelled", {Step::Register, Step::Cancel}, 1},
        {"cancelled twice", {Step::Register, Step::Cancel, Step::Cancel}, 1},
        {"registered after cancel runs at once", {Step::Cancel, Step::Register}, 1},
        {"dropped before cancel", {Step::Register, Step::DropRegistration, Step::Cancel}, 0},
        {"moved registration still holds", {Step::Register, Step::MoveRegistrationAway, Step::Cancel}, 1},
    };
    for (const auto& [name, steps, expectedCalls] : cases) {
        SCOPED_TRACE(name);
        CancellationToken token;
        const CancellationToken copy = token;
        int calls = 0;
        std::optional<CancellationToken::Registration> registration;
        std::optional<CancellationToken::Registration> movedTo;
        for (const Step step : steps) {
            switch (step) {
                case Step::Register:
                    registration.emplace(token.onCancel([&calls] { ++calls; }));
                    break;
                case Step::Cancel:
                    copy.cancel();
                    break;
                case Step::DropRegistration:
                    registration.reset();
                    break;
                case Step::MoveRegistrationAway:
                    movedTo.emplace(std::move(*registration));
                    break;
            }
        }
        EXPECT_EQ(calls, expectedCalls);
        EXPECT_TRUE(token.isCancelled());
    }
}

TEST(CancellationToken, CallbacksRunOnceInOrderOnTheCancellingThreadWhenManyCancel) {
    CancellationToken token;
    std::vector<int> order;  // written only by the one cancel that runs the callbacks
    std::vector<std::thread::id> threads;
    std::vector<CancellationToken::Registration> registrations;
    for (int index = 0; index < 3; ++index) {
        registrations.push_back(token.onCancel([&, index] {
            order.push_back(index);
            threads.push_back(std::this_thread::get_id());
        }));
    }
    std::latch go(4);
    std::vector<std::thread> cancellers;
    for (int index = 0; index < 4; ++index) {
        cancellers.emplace_back([&] {
            go.arrive_and_wait();
            token.cancel();
        });
    }
    std::vector<std::thread::id> cancellerIds;
    for (std::thread& canceller : cancellers) {
        cancellerIds.push_back(canceller.get_id());
        canceller.join();
    }
    EXPECT_EQ(order, (std::vector<int>{0, 1, 2}));
    ASSERT_EQ(threads.size(), 3u);
    EXPECT_NE(std::find(cancellerIds.begin(), cancellerIds.end(), threads[0]), cancellerIds.end());
    EXPECT_EQ(std::count(threads.begin(), threads.end(), threads[0]), 3);
}

TEST(CancellationToken, CallbackMayUnregisterItselfAndOthersWithoutDeadlock) {
    CancellationToken token;
    std::optional<CancellationToken::Registration> self;
    std::optional<CancellationToken::Registration> later;
    int laterCalls = 0;
    self.emplace(token.onCancel([&] {
        self.reset();
        later.reset();
    }));
    later.emplace(token.onCancel([&laterCalls] { ++laterCalls; }));
    token.cancel();
    EXPECT_EQ(laterCalls, 0);
}

}  // namespace
}  // namespace kestrum

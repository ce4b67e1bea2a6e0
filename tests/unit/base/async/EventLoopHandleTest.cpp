#include "base/async/EventLoopHandle.h"

#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <optional>
#include <thread>

namespace kestrum {
namespace {

TEST(EventLoopHandle, PostRunsAtTheNextTurnAndIsRefusedOnceTheThreadEnded) {
    const EventLoopHandle loop = EventLoopHandle::current();
    bool ran = false;
    ASSERT_TRUE(loop.post([&ran] { ran = true; }));
    EXPECT_FALSE(ran) << "never inline, even on the handle's own thread";
    EXPECT_TRUE(test::waitUntil([&ran] { return ran; }));

    std::optional<EventLoopHandle> ended;
    std::thread([&ended] { ended = EventLoopHandle::current(); }).join();
    bool ranOnEnded = false;
    EXPECT_FALSE(ended->post([&ranOnEnded] { ranOnEnded = true; }));
    test::processEventsFor(20);
    EXPECT_FALSE(ranOnEnded);
}

}  // namespace
}  // namespace kestrum

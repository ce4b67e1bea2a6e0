#include "base/async/ManualClock.h"
#include "core/shell/KestrumAppDelegate.h"
#include "platform/fake/FakeApplicationWindows.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QSignalSpy>

#include <chrono>

namespace kestrum::test {
namespace {

using namespace std::chrono_literals;

// A quit whose finalisation takes `finalisation` on a manual clock (zero: no recording is active).
struct TerminationRig {
    explicit TerminationRig(Clock::Duration finalisation) : finalisation(finalisation) {}

    FakeApplicationWindows windows;
    ManualClock clock;
    Clock::Duration finalisation;
    int finalisations = 0;
    int leagueShareStops = 0;
    KestrumAppDelegate delegate{windows,
                                {{},
                                 {},
                                 [this] { ++leagueShareStops; },
                                 [this]() -> QCoro::Task<void> {
                                     ++finalisations;
                                     co_await clock.sleep(finalisation, {});
                                 }}};
    QSignalSpy replies{&delegate, &KestrumAppDelegate::terminationReplied};
};

TEST(Termination, QuitWithNoRecordingRepliesWithinOneTurn) {
    TerminationRig rig(0s);
    rig.delegate.applicationShouldTerminate();
    EXPECT_TRUE(rig.delegate.isTerminationPending());
    EXPECT_EQ(rig.leagueShareStops, 1) << "League Share stops synchronously";
    EXPECT_EQ(rig.replies.count(), 0) << "the reply never comes from inside the request";
    QCoreApplication::processEvents();
    ASSERT_EQ(rig.replies.count(), 1);
    EXPECT_EQ(rig.replies.at(0).at(0).toBool(), true);
    EXPECT_EQ(rig.finalisations, 1);
}

// However long the finalisation takes, the reply waits for it; further quit requests (the quit command,
// SIGTERM, SIGINT, the end of the session) change nothing.
TEST(Termination, QuitTwiceDuringAFinalisationGivesOneFinalisationAndOneReply) {
    struct Case {
        const char* name;
        Clock::Duration finalisation;
        int laterRequests;
    };
    const std::vector<Case> cases = {
        {"a short finalisation, one more request", 2s, 1},
        {"an hour, three more requests", 1h, 3},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        TerminationRig rig(c.finalisation);
        rig.delegate.applicationShouldTerminate();
        processEventsFor(20);
        for (int request = 0; request < c.laterRequests; ++request) rig.delegate.applicationShouldTerminate();
        rig.clock.advance(c.finalisation - 1ms);
        processEventsFor(20);
        EXPECT_EQ(rig.replies.count(), 0) << "no time-out of our own";
        rig.clock.advance(1ms);
        EXPECT_TRUE(waitUntil([&] { return rig.replies.count() == 1; }));
        for (int request = 0; request < c.laterRequests; ++request) rig.delegate.applicationShouldTerminate();
        processEventsFor(20);
        EXPECT_EQ(rig.replies.count(), 1);
        EXPECT_EQ(rig.finalisations, 1);
        EXPECT_EQ(rig.leagueShareStops, 1);
    }
}

TEST(Termination, WithoutAFinalisationHookTheReplyStillComes) {
    FakeApplicationWindows windows;
    KestrumAppDelegate delegate(windows, {});
    QSignalSpy replies(&delegate, &KestrumAppDelegate::terminationReplied);
    delegate.applicationShouldTerminate();
    delegate.applicationWillTerminate();  // no League Share yet: nothing to stop, nothing fails
    QCoreApplication::processEvents();
    EXPECT_EQ(replies.count(), 1);
}

}  // namespace
}  // namespace kestrum::test

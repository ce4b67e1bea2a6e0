#include "platform/linux/x11/X11ScreenCaptureAccess.h"

#include "base/async/ManualClock.h"
#include "support/DisplayServers.h"

#include <gtest/gtest.h>

#include <chrono>

namespace {

using namespace std::chrono_literals;

TEST(X11ScreenCaptureAccess, GrantedWhileADisplayAnswersCachedForOneSecond) {
    kestrum::ManualClock clock;
    kestrum::test::XvfbServer first;
    if (!first.start()) GTEST_SKIP() << first.failure().toStdString();
    kestrum::X11ScreenCaptureAccess access({}, clock);
    EXPECT_TRUE(access.preflight());

    first.stop();
    qputenv("DISPLAY", ":4242");  // a display nobody serves
    EXPECT_TRUE(access.preflight()) << "from the cache";
    clock.advance(999ms);
    EXPECT_TRUE(access.preflight()) << "from the cache";
    clock.advance(1ms);
    EXPECT_FALSE(access.preflight());

    kestrum::test::XvfbServer second;
    ASSERT_TRUE(second.start()) << second.failure().toStdString();
    EXPECT_FALSE(access.preflight()) << "from the cache";
    EXPECT_TRUE(access.request()) << "a request always asks the display";
    qputenv("DISPLAY", ":4242");
    EXPECT_TRUE(access.preflight()) << "the request renewed the cache";
}

}  // namespace

#include "core/shell/SingleInstanceLaunch.h"
#include "platform/fake/FakeSingleInstanceChannel.h"

#include <gtest/gtest.h>

namespace kestrum::test {
namespace {

TEST(SingleInstanceLaunch, ASecondLaunchShowsTheFirstOnesReviewWindowAndExitsZero) {
    const auto registry = std::make_shared<FakeSingleInstanceChannel::Registry>();
    FakeSingleInstanceChannel firstChannel(registry);
    SingleInstanceLaunch first(firstChannel);
    std::vector<ActivationToken> shown;
    EXPECT_EQ(first.claim(
                  {}, [&](const SingleInstanceChannel::Request& request) { shown.push_back(request.token); }),
              std::nullopt);

    struct Case {
        const char* name;
        ActivationToken token;
    };
    const std::vector<Case> cases = {
        {"from a launcher", {QStringLiteral("kestrum-1234-host_TIME5678"), std::nullopt}},
        {"from a terminal", {QString(), 99'000u}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        FakeSingleInstanceChannel laterChannel(registry);
        SingleInstanceLaunch later(laterChannel);
        int laterShows = 0;
        EXPECT_EQ(later.claim({c.token}, [&](const SingleInstanceChannel::Request&) { ++laterShows; }),
                  std::optional<int>(0));
        ASSERT_FALSE(shown.empty());
        EXPECT_EQ(shown.back(), c.token);
        EXPECT_EQ(laterShows, 0);
    }
    EXPECT_EQ(shown.size(), cases.size());
}

TEST(SingleInstanceLaunch, AChannelThatFailsLetsTheLaunchRunOnItsOwn) {
    const auto registry = std::make_shared<FakeSingleInstanceChannel::Registry>();
    registry->canListen = false;
    FakeSingleInstanceChannel channel(registry);
    SingleInstanceLaunch launch(channel);
    EXPECT_EQ(launch.claim({}, [](const SingleInstanceChannel::Request&) {}), std::nullopt);
    EXPECT_EQ(registry->listener, nullptr);
}

TEST(SingleInstanceLaunch, TheLaunchTokenPrefersTheStartupID) {
    struct Case {
        QByteArray startupID;
        std::optional<quint32> serverTime;
        ActivationToken expected;
    };
    const std::vector<Case> cases = {
        {"kde-launch_TIME42", 7u, {QStringLiteral("kde-launch_TIME42"), std::nullopt}},
        {"  spaced\n", std::nullopt, {QStringLiteral("spaced"), std::nullopt}},
        {{}, 7u, {QString(), 7u}},
        {{}, std::nullopt, {}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(SingleInstanceLaunch::launchToken(c.startupID, c.serverTime), c.expected)
            << c.startupID.data();
    }
}

}  // namespace
}  // namespace kestrum::test

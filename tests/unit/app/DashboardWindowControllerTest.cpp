// The review window's controller over faked windows: a request brings the review window forward with
// the application in the task switcher, and carries another launch's proof of the user's request; a build
// without the review window changes nothing.
#include "app/DashboardWindowController.h"
#include "platform/fake/FakeApplicationWindows.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

namespace kestrum {
namespace {

TEST(DashboardWindowController, ShowsTheReviewWindowInTheTaskSwitcherWithTheLaunchsToken) {
    struct Row {
        const char* name;
        ActivationToken token;
    };
    const std::vector<Row> rows{{"from the panel", {}},
                                {"from another launch", {QStringLiteral("launcher-7_TIME42"), std::nullopt}}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        FakeApplicationWindows windows;
        windows.setActivationPolicy(ActivationPolicy::accessory);
        AppWindowPresenter presenter(windows);
        std::optional<ApplicationWindowID> review;
        int builds = 0;
        DashboardWindowController controller(windows, presenter, [&] {
            // Built on the first request, only shown again later.
            if (!review) {
                ++builds;
                review =
                    windows.addWindow(QStringLiteral("Kestrum Dashboard"), QStringLiteral("dashboard"), true);
            }
            windows.setVisible(*review, true);
        });
        controller.showDashboard(row.token);
        controller.showDashboard(row.token);
        QCoreApplication::processEvents();
        EXPECT_EQ(builds, 1);
        EXPECT_EQ(windows.activationPolicy(), ActivationPolicy::regular);
        ASSERT_FALSE(windows.frontRequests().empty());
        EXPECT_EQ(windows.frontRequests().back().first, *review);
        EXPECT_EQ(windows.frontRequests().back().second, row.token);
    }
}

TEST(DashboardWindowController, WithoutTheReviewWindowARequestChangesNothing) {
    FakeApplicationWindows windows;
    windows.setActivationPolicy(ActivationPolicy::accessory);
    AppWindowPresenter presenter(windows);
    DashboardWindowController controller(windows, presenter, {});
    controller.showDashboard();
    QCoreApplication::processEvents();
    EXPECT_EQ(windows.activationPolicy(), ActivationPolicy::accessory);
    EXPECT_TRUE(windows.frontRequests().empty());
}

}  // namespace
}  // namespace kestrum

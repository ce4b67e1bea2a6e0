#include "core/shell/AppWindowPresenter.h"
#include "platform/fake/FakeApplicationWindows.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

namespace kestrum::test {
namespace {

using Notice = ApplicationWindows::Notice;

struct PresenterRig {
    FakeApplicationWindows windows;
    AppWindowPresenter presenter{windows};
    ApplicationWindowID panel =
        windows.addWindow(QStringLiteral("Kestrum"), QStringLiteral("menubar"), true, true);
    ApplicationWindowID review =
        windows.addWindow(QStringLiteral("Kestrum Dashboard"), QStringLiteral("dashboard"), false);
    ApplicationWindowID settings =
        windows.addWindow(QStringLiteral("Settings"), QStringLiteral("settings"), false);
    int actions = 0;

    void present(std::optional<ActivationPolicy> policy, std::optional<ApplicationWindowID> target,
                 ActivationToken token = {}) {
        presenter.present(
            policy, [this] { ++actions; }, [target] { return target; }, token);
    }
    int frontRequestsFor(ApplicationWindowID window) const {
        int count = 0;
        for (const auto& request : windows.frontRequests()) count += request.first == window ? 1 : 0;
        return count;
    }
};

TEST(AppWindowPresenter, PresentsOnceOrAgainAfterTheSourcePanelLetsTheFocusGo) {
    struct Case {
        const char* name;
        std::optional<ApplicationWindowID> keyWindow;  // by index: 0 panel, 1 review
        bool panelResignsBeforeTheQueuedTurn;
        int expectedFrontRequests;
    };
    const std::vector<Case> cases = {
        {"no window has the focus", std::nullopt, false, 1},
        {"the review window itself has the focus", 1, false, 1},
        {"from the panel: again on the next turn", 0, false, 2},
        {"from the panel resigning at once: the second queued step does nothing", 0, true, 2},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        PresenterRig rig;
        if (c.keyWindow) rig.windows.setKeyWindow(*c.keyWindow == 0 ? rig.panel : rig.review);
        const ActivationToken token{QStringLiteral("launcher_TIME42"), std::nullopt};
        rig.present(ActivationPolicy::regular, rig.review, token);
        EXPECT_EQ(rig.actions, 1);
        EXPECT_EQ(rig.frontRequestsFor(rig.review), 1) << "brought to the front at once";
        if (c.panelResignsBeforeTheQueuedTurn) rig.windows.setKeyWindow(rig.review);
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
        EXPECT_EQ(rig.frontRequestsFor(rig.review), c.expectedFrontRequests);
        EXPECT_EQ(rig.windows.frontRequests().back().second, token) << "the launch's proof is passed on";
        EXPECT_EQ(rig.windows.activationPolicy(), ActivationPolicy::regular);
        EXPECT_FALSE(rig.presenter.isObservingSourcePanel()) << "the presentation is over";
        rig.windows.setKeyWindow(rig.panel);
        rig.windows.setKeyWindow(std::nullopt);
        QCoreApplication::processEvents();
        EXPECT_EQ(rig.frontRequestsFor(rig.review), c.expectedFrontRequests) << "a later resign does nothing";
    }
}

TEST(AppWindowPresenter, AStalePresentationTokenDoesNothing) {
    PresenterRig rig;
    rig.windows.setKeyWindow(rig.panel);
    rig.present(ActivationPolicy::regular, rig.review);
    const QUuid first = rig.presenter.presentationID();
    rig.present(std::nullopt, rig.settings);  // a second request before the first one's queued step
    EXPECT_NE(rig.presenter.presentationID(), first);
    QCoreApplication::processEvents();
    EXPECT_EQ(rig.frontRequestsFor(rig.review), 1)
        << "the first presentation's queued step found another token";
    EXPECT_EQ(rig.frontRequestsFor(rig.settings), 2);
    rig.windows.setKeyWindow(std::nullopt);  // the panel resigns late
    QCoreApplication::processEvents();
    EXPECT_EQ(rig.windows.frontRequests().size(), 3u);
}

TEST(AppWindowPresenter, AnAbsentTargetLeavesThePolicyChangeDoneAndNothingMadeKey) {
    for (const bool fromPanel : {false, true}) {
        SCOPED_TRACE(fromPanel ? "from the panel" : "from nowhere");
        PresenterRig rig;
        if (fromPanel) rig.windows.setKeyWindow(rig.panel);
        rig.present(ActivationPolicy::regular, std::nullopt);
        QCoreApplication::processEvents();
        EXPECT_EQ(rig.actions, 1);
        EXPECT_TRUE(rig.windows.frontRequests().empty());
        EXPECT_EQ(rig.windows.activationPolicy(), ActivationPolicy::regular);
    }
}

TEST(AppWindowPresenter, APanelThatIsItselfTheTargetIsNoSource) {
    PresenterRig rig;
    rig.windows.setKeyWindow(rig.panel);
    rig.present(std::nullopt, rig.panel);
    EXPECT_FALSE(rig.presenter.isObservingSourcePanel());
    QCoreApplication::processEvents();
    EXPECT_EQ(rig.frontRequestsFor(rig.panel), 1);
    EXPECT_EQ(rig.windows.policyRequests().size(), 0u) << "an absent policy is not set";
}

TEST(AppWindowPresenter, AQueuedStepOfADestroyedPresenterIsDropped) {
    FakeApplicationWindows windows;
    const ApplicationWindowID panel = windows.addWindow(QStringLiteral("Kestrum"), {}, true, true);
    const ApplicationWindowID review = windows.addWindow(QStringLiteral("Kestrum Dashboard"), {}, false);
    windows.setKeyWindow(panel);
    {
        AppWindowPresenter presenter(windows);
        presenter.present(ActivationPolicy::regular, {}, [review] { return std::optional(review); });
    }
    windows.setKeyWindow(std::nullopt);
    QCoreApplication::processEvents();
    EXPECT_EQ(windows.frontRequests().size(), 1u);
    EXPECT_EQ(windows.observerCount(Notice::windowDidResignKey), 0u);
}

}  // namespace
}  // namespace kestrum::test

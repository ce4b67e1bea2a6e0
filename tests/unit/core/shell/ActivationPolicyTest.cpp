#include "core/shell/ActivationPolicyRules.h"
#include "core/shell/ApplicationWindowKinds.h"
#include "core/shell/KestrumAppDelegate.h"
#include "platform/fake/FakeApplicationWindows.h"

#include <gtest/gtest.h>

namespace kestrum::test {
namespace {

using Policy = ActivationPolicy;
using Notice = ApplicationWindows::Notice;

TEST(ApplicationWindowKinds, TitlesCompareExactlyAndIdentifiersByCaseFreeContainment) {
    struct Case {
        QString title;
        QString identifier;
        bool review, settings, share;
    };
    const std::vector<Case> cases = {
        {QStringLiteral("Kestrum Dashboard"), {}, true, false, false},
        {QStringLiteral("kestrum dashboard"), {}, false, false, false},  // the title is exact
        {QStringLiteral("Recordings"), QStringLiteral("main-Dashboard-1"), true, false, false},
        {QStringLiteral("Kestrum Settings"), {}, false, true, false},
        {QStringLiteral("SETTINGS"), {}, false, true, false},
        {QStringLiteral("Preferences"), QStringLiteral("com.kestrum.Settings"), false, true, false},
        {QStringLiteral("Kestrum Share"), {}, false, false, true},
        {QStringLiteral("Kestrum share"), {}, false, false, false},
        {{}, QStringLiteral("League-Share"), false, false, true},
        {QStringLiteral("Kestrum"), QStringLiteral("menubar"), false, false, false},
        {QStringLiteral("Dashboard settings"), QStringLiteral("dashboard"), true, true, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.title.toStdString() + " / " + c.identifier.toStdString());
        const ApplicationWindow window{1, c.title, c.identifier, true, false};
        EXPECT_EQ(isReviewWindow(window), c.review);
        EXPECT_EQ(isSettingsWindow(window), c.settings);
        EXPECT_EQ(isShareWindow(window), c.share);
    }
}

ApplicationWindow review(ApplicationWindowID id, bool visible = true) {
    return {id, QStringLiteral("Kestrum Dashboard"), QStringLiteral("dashboard"), visible, false};
}
ApplicationWindow settings(ApplicationWindowID id, bool visible = true) {
    return {id, QStringLiteral("Kestrum Settings"), QStringLiteral("settings"), visible, false};
}
ApplicationWindow share(ApplicationWindowID id, bool visible = true) {
    return {id, QStringLiteral("Kestrum Share"), QStringLiteral("league-share"), visible, false};
}
ApplicationWindow panel(ApplicationWindowID id, bool visible = true) {
    return {id, QStringLiteral("Kestrum"), QStringLiteral("menubar"), visible, true};
}

TEST(ActivationPolicyRules, ClosingAReviewWindowLeavesTheSwitcherUnlessAnotherWindowKeepsIt) {
    struct Case {
        const char* name;
        std::optional<ApplicationWindow> closing;
        std::vector<ApplicationWindow> windows;
        std::optional<Policy> expected;
    };
    const std::vector<Case> cases = {
        {"the review window alone", review(1), {review(1), panel(2)}, Policy::accessory},
        {"a settings window stays", review(1), {review(1), settings(2)}, std::nullopt},
        {"a share window stays", review(1), {review(1), share(2)}, std::nullopt},
        {"another review window stays", review(1), {review(1), review(3)}, std::nullopt},
        {"a hidden settings window does not count",
         review(1),
         {review(1), settings(2, false)},
         Policy::accessory},
        {"a hidden second review window does not count",
         review(1),
         {review(1), review(3, false)},
         Policy::accessory},
        {"the closing window is skipped though visible", review(1), {review(1)}, Policy::accessory},
        {"closing the settings window changes nothing",
         settings(2),
         {review(1, false), settings(2)},
         std::nullopt},
        {"closing the share window changes nothing", share(2), {share(2)}, std::nullopt},
        {"closing the panel changes nothing", panel(4), {panel(4)}, std::nullopt},
        {"no window of ours", std::nullopt, {review(1, false)}, std::nullopt},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(policyAfterWindowWillClose(c.closing, c.windows), c.expected);
    }
}

TEST(ActivationPolicyRules, ResigningLooksAtReviewWindowsOnly) {
    struct Case {
        const char* name;
        std::vector<ApplicationWindow> windows;
        std::optional<Policy> expected;
    };
    const std::vector<Case> cases = {
        {"a visible review window keeps the entry", {review(1), settings(2)}, std::nullopt},
        {"a settings window alone does not", {review(1, false), settings(2)}, Policy::accessory},
        {"a share window alone does not", {share(3)}, Policy::accessory},
        {"no window", {}, Policy::accessory},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(policyAfterResignActive(c.windows), c.expected);
    }
}

struct DelegateRig {
    FakeApplicationWindows windows;
    int appearanceApplications = 0;
    int dashboardShows = 0;
    int leagueShareStops = 0;
    KestrumAppDelegate delegate{windows,
                                {[this] { ++appearanceApplications; },
                                 [this] { ++dashboardShows; },
                                 [this] { ++leagueShareStops; },
                                 {}}};
};

TEST(KestrumAppDelegate, LaunchAppliesTheAppearanceObservesAndLeavesTheSwitcher) {
    DelegateRig rig;
    EXPECT_EQ(rig.windows.observerCount(Notice::windowWillClose), 0u);
    rig.delegate.applicationDidFinishLaunching();
    EXPECT_EQ(rig.appearanceApplications, 1);
    EXPECT_EQ(rig.windows.observerCount(Notice::windowWillClose), 1u);
    EXPECT_EQ(rig.windows.observerCount(Notice::applicationDidResignActive), 1u);
    EXPECT_EQ(rig.windows.policyRequests(), std::vector<Policy>{Policy::accessory});
}

// Each row starts after launch with the review window shown (regular), then plays its steps.
TEST(KestrumAppDelegate, ObserversFollowTheirAsymmetricRules) {
    struct Case {
        const char* name;
        std::function<void(FakeApplicationWindows& windows, ApplicationWindowID review,
                           ApplicationWindowID settings)>
            steps;
        Policy expected;
    };
    const std::vector<Case> cases = {
        {"closing the review window alone", [](auto& w, auto r, auto) { w.close(r); }, Policy::accessory},
        {"closing the review window while the settings window is visible keeps the entry",
         [](auto& w, auto r, auto s) {
             w.setVisible(s, true);
             w.close(r);
         },
         Policy::regular},
        {"... until the application resigns",
         [](auto& w, auto r, auto s) {
             w.setVisible(s, true);
             w.close(r);
             w.post(Notice::applicationDidResignActive, std::nullopt);
         },
         Policy::accessory},
        {"resigning with the review window visible keeps the entry",
         [](auto& w, auto, auto) { w.post(Notice::applicationDidResignActive, std::nullopt); },
         Policy::regular},
        {"closing the settings window keeps the entry", [](auto& w, auto, auto s) { w.close(s); },
         Policy::regular},
        {"a notice about no window is ignored",
         [](auto& w, auto, auto) { w.post(Notice::windowWillClose, std::nullopt); }, Policy::regular},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        DelegateRig rig;
        const ApplicationWindowID reviewWindow =
            rig.windows.addWindow(QStringLiteral("Kestrum Dashboard"), QStringLiteral("dashboard"), false);
        const ApplicationWindowID settingsWindow =
            rig.windows.addWindow(QStringLiteral("Settings"), QStringLiteral("settings"), false);
        rig.delegate.applicationDidFinishLaunching();
        rig.windows.setVisible(reviewWindow, true);
        rig.windows.setActivationPolicy(Policy::regular);  // what showing the review window does
        c.steps(rig.windows, reviewWindow, settingsWindow);
        EXPECT_EQ(rig.windows.activationPolicy(), c.expected);
    }
}

TEST(KestrumAppDelegate, ClosingTheSettingsWindowWhileTheReviewWindowIsClosedChangesNoPolicy) {
    DelegateRig rig;
    const ApplicationWindowID settingsWindow =
        rig.windows.addWindow(QStringLiteral("Settings"), QStringLiteral("settings"), true);
    rig.delegate.applicationDidFinishLaunching();
    rig.windows.close(settingsWindow);
    EXPECT_EQ(rig.windows.policyRequests(), std::vector<Policy>{Policy::accessory}) << "only launch set one";
}

TEST(KestrumAppDelegate, ReopenShowsTheReviewWindowWhateverIsVisibleAndTheEndRemovesTheObservers) {
    DelegateRig rig;
    rig.delegate.applicationDidFinishLaunching();
    EXPECT_FALSE(rig.delegate.applicationShouldHandleReopen(false));
    EXPECT_FALSE(rig.delegate.applicationShouldHandleReopen(true));
    EXPECT_EQ(rig.dashboardShows, 2);

    rig.delegate.applicationWillTerminate();
    EXPECT_EQ(rig.leagueShareStops, 1);
    EXPECT_FALSE(rig.delegate.isObservingWindows());
    EXPECT_EQ(rig.windows.observerCount(Notice::windowWillClose), 0u);
    EXPECT_EQ(rig.windows.observerCount(Notice::applicationDidResignActive), 0u);
    const ApplicationWindowID reviewWindow =
        rig.windows.addWindow(QStringLiteral("Kestrum Dashboard"), {}, true);
    rig.windows.close(reviewWindow);
    EXPECT_EQ(rig.windows.policyRequests().size(), 1u) << "no observer acts after the end";
}

}  // namespace
}  // namespace kestrum::test

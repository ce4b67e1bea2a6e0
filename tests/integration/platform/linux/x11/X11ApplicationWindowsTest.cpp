#include "ShellWindowsTestMain.h"
#include "TestWindowClient.h"
#include "platform/linux/x11/X11ApplicationWindows.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QWindow>

#include <memory>

namespace kestrum::test {
namespace {

using Notice = ApplicationWindows::Notice;

#define REQUIRE_MANAGED_DISPLAY() \
    if (!managedDisplayMissing().isEmpty()) GTEST_SKIP() << managedDisplayMissing().toStdString()

std::unique_ptr<QWindow> makeWindow(const QString& title, const QString& identifier,
                                    Qt::WindowType type = Qt::Window) {
    auto window = std::make_unique<QWindow>();
    window->setTitle(title);
    window->setObjectName(identifier);
    window->setFlags(type);
    window->resize(320, 200);
    return window;
}

bool showAndWaitExposed(QWindow& window) {
    window.show();
    return waitUntil([&] { return window.isExposed(); }, 5000);
}

// Reads what the window manager did, on a connection of the test's own.
class DesktopReader {
  public:
    DesktopReader() : connection_(XcbConnection::open().value()), state_(*connection_) {}

    bool skipsTaskSwitcher(const QWindow& window) {
        return state_.skipsTaskSwitcher(static_cast<xcb_window_t>(window.winId()));
    }
    xcb_window_t activeWindow() {
        const auto reply = connection_->wait(
            xcb_get_property_reply,
            connection_->requestProperty(connection_->root(), connection_->ewmh()._NET_ACTIVE_WINDOW,
                                         XCB_ATOM_WINDOW));
        const std::vector<std::uint32_t> values = XcbConnection::values32(reply.get(), XCB_ATOM_WINDOW);
        return values.empty() ? xcb_window_t{XCB_WINDOW_NONE} : values.front();
    }
    std::optional<QString> startupID(const QWindow& window) {
        const auto reply = connection_->wait(
            xcb_get_property_reply,
            connection_->requestProperty(static_cast<xcb_window_t>(window.winId()),
                                         connection_->atom("_NET_STARTUP_ID"), XCB_ATOM_ANY));
        return connection_->text(reply.get());
    }

  private:
    std::unique_ptr<XcbConnection> connection_;
    X11TaskSwitcherState state_;
};

TEST(X11ApplicationWindows, ThePolicyDecidesWhichMappedWindowsSkipTheTaskSwitcher) {
    REQUIRE_MANAGED_DISPLAY();
    X11ApplicationWindows windows;
    DesktopReader desktop;
    const auto review = makeWindow(QStringLiteral("Kestrum Dashboard"), QStringLiteral("dashboard"));
    const auto settings = makeWindow(QStringLiteral("Kestrum Settings"), QStringLiteral("settings"));
    const auto share = makeWindow(QStringLiteral("Kestrum Share"), QStringLiteral("league-share"));
    for (QWindow* window : {review.get(), settings.get(), share.get()})
        ASSERT_TRUE(showAndWaitExposed(*window));

    struct Step {
        ActivationPolicy policy;
        bool reviewSkips, settingsSkips, shareSkips;
    };
    for (const Step& step : {Step{ActivationPolicy::accessory, true, true, true},
                             Step{ActivationPolicy::regular, false, false, true},
                             Step{ActivationPolicy::accessory, true, true, true}}) {
        windows.setActivationPolicy(step.policy);
        EXPECT_TRUE(waitUntil([&] {
            return desktop.skipsTaskSwitcher(*review) == step.reviewSkips &&
                   desktop.skipsTaskSwitcher(*settings) == step.settingsSkips &&
                   desktop.skipsTaskSwitcher(*share) == step.shareSkips;
        })) << (step.policy == ActivationPolicy::regular ? "regular" : "accessory");
    }

    // A window shown later, and one hidden and shown again (the manager forgets the state of a withdrawn
    // window), both take the policy in force when they are mapped.
    const auto later = makeWindow(QStringLiteral("Guide"), QStringLiteral("guide"));
    ASSERT_TRUE(showAndWaitExposed(*later));
    EXPECT_TRUE(waitUntil([&] { return desktop.skipsTaskSwitcher(*later); }));
    review->hide();
    processEventsFor(100);
    ASSERT_TRUE(showAndWaitExposed(*review));
    EXPECT_TRUE(waitUntil([&] { return desktop.skipsTaskSwitcher(*review); }));
    const WId reviewID = review->winId();
    EXPECT_EQ(review->winId(), reviewID) << "the window was never made anew";
}

TEST(X11ApplicationWindows, ListsOurWindowsAndDeliversCloseFocusAndResignNotices) {
    REQUIRE_MANAGED_DISPLAY();
    X11ApplicationWindows windows;
    const auto review = makeWindow(QStringLiteral("Kestrum Dashboard"), QStringLiteral("dashboard"));
    const auto panel = makeWindow(QStringLiteral("Kestrum"), QStringLiteral("menubar"), Qt::Tool);
    ASSERT_TRUE(showAndWaitExposed(*review));

    std::vector<std::pair<Notice, std::optional<ApplicationWindow>>> notices;
    std::vector<Subscription> observers;
    for (const Notice notice : {Notice::windowWillClose, Notice::windowDidBecomeKey,
                                Notice::windowDidResignKey, Notice::applicationDidResignActive}) {
        observers.push_back(
            windows.observe(notice, [&notices, notice](const std::optional<ApplicationWindow>& w) {
                notices.emplace_back(notice, w);
            }));
    }
    const std::vector<ApplicationWindow> listed = windows.windows();
    const auto describedPanel = std::find_if(listed.begin(), listed.end(), [&](const ApplicationWindow& w) {
        return w.identifier == QLatin1String("menubar");
    });
    ASSERT_NE(describedPanel, listed.end());
    EXPECT_TRUE(describedPanel->isPanel);
    EXPECT_FALSE(describedPanel->isVisible);
    EXPECT_EQ(X11ApplicationWindows::describe(*review).title, QStringLiteral("Kestrum Dashboard"));

    review->requestActivate();
    ASSERT_TRUE(
        waitUntil([&] { return windows.keyWindow() && windows.keyWindow()->identifier == "dashboard"; }));
    ASSERT_TRUE(showAndWaitExposed(*panel));
    panel->requestActivate();
    ASSERT_TRUE(waitUntil([&] { return windows.keyWindow() && windows.keyWindow()->isPanel; }));
    const auto resigned = std::find_if(notices.begin(), notices.end(), [](const auto& n) {
        return n.first == Notice::windowDidResignKey && n.second && n.second->identifier == "dashboard";
    });
    EXPECT_NE(resigned, notices.end()) << "the review window resigned when the panel took the focus";

    // Another application's window takes the focus: the application resigns.
    TestWindowClient foreign;
    ASSERT_TRUE(foreign.connected());
    const xcb_window_t foreignWindow =
        foreign.create({QRect(600, 400, 200, 150), QByteArray("Other"), {}, {}, false});
    foreign.focus(foreignWindow);
    EXPECT_TRUE(waitUntil([&] {
        return std::any_of(notices.begin(), notices.end(), [](const auto& n) {
            return n.first == Notice::applicationDidResignActive && !n.second;
        });
    }));

    notices.clear();
    review->close();
    ASSERT_FALSE(notices.empty());
    EXPECT_EQ(notices.front().first, Notice::windowWillClose);
    ASSERT_TRUE(notices.front().second.has_value());
    EXPECT_EQ(notices.front().second->identifier, QStringLiteral("dashboard"));
    EXPECT_TRUE(notices.front().second->isVisible) << "delivered before the window goes";
}

TEST(X11ApplicationWindows, MakingKeyPassesTheLaunchsProofToTheWindowManager) {
    REQUIRE_MANAGED_DISPLAY();
    X11ApplicationWindows windows;
    DesktopReader desktop;
    const auto other = makeWindow(QStringLiteral("Guide"), QStringLiteral("guide"));
    ASSERT_TRUE(showAndWaitExposed(*other));
    other->requestActivate();
    ASSERT_TRUE(waitUntil([&] { return desktop.activeWindow() == other->winId(); }));

    const std::optional<quint32> now = windows.serverTimeMs();
    ASSERT_TRUE(now.has_value());
    for (const bool alreadyShown : {true, false}) {
        SCOPED_TRACE(alreadyShown ? "a window already shown" : "a window not shown yet");
        const auto review = makeWindow(QStringLiteral("Kestrum Dashboard"), QStringLiteral("dashboard"));
        if (alreadyShown) {
            ASSERT_TRUE(showAndWaitExposed(*review));
            other->requestActivate();
            ASSERT_TRUE(waitUntil([&] { return desktop.activeWindow() == other->winId(); }));
        }
        const QString startupID = QStringLiteral("kestrum-launch-%1_TIME%2").arg(alreadyShown).arg(*now);
        windows.makeKeyAndOrderFront(X11ApplicationWindows::describe(*review).windowID,
                                     {startupID, std::nullopt});
        EXPECT_TRUE(waitUntil([&] { return desktop.activeWindow() == review->winId(); }));
        EXPECT_EQ(desktop.startupID(*review), startupID);
        EXPECT_TRUE(review->isVisible());
    }
    windows.makeKeyAndOrderFront(0, {});  // a window that does not exist is ignored
    const std::optional<quint32> later = windows.serverTimeMs();
    ASSERT_TRUE(later.has_value());
    EXPECT_GE(*later, *now);
}

TEST(X11WindowActivation, TheTimeOfAStartupIDIsItsTimePart) {
    const std::vector<std::pair<QString, std::optional<quint32>>> cases = {
        {QStringLiteral("kde-1234-host_TIME56789"), 56789u},
        {QStringLiteral("_TIME0"), 0u},
        {QStringLiteral("gnome-shell/kestrum/1-0-host_TIME99999999999"), std::nullopt},  // beyond 32 bits
        {QStringLiteral("no-time-here"), std::nullopt},
        {QStringLiteral("TIME42"), std::nullopt},
        {QString(), std::nullopt},
    };
    for (const auto& [id, expected] : cases) {
        EXPECT_EQ(X11WindowActivation::timeFromStartupID(id), expected) << id.toStdString();
    }
}

}  // namespace
}  // namespace kestrum::test

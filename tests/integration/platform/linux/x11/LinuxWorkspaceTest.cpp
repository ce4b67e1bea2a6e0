#include "platform/linux/x11/LinuxWorkspace.h"

#include "core/recording/RecordingBundleIdentifiers.h"
#include "integration/platform/linux/x11/NamedChildProcess.h"
#include "integration/platform/linux/x11/TestWindowClient.h"
#include "support/DesktopPrinters.h"
#include "support/DisplayServers.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QProcess>

#include <algorithm>
#include <functional>
#include <memory>
#include <tuple>
#include <vector>

namespace {

using kestrum::RunningApplication;
using kestrum::Workspace;
using kestrum::test::NamedChildProcess;
using kestrum::test::waitUntil;
namespace ids = kestrum::RecordingBundleIdentifiers;

TEST(LinuxWorkspace, LaunchAndTerminateNoticesOfRealProcesses) {
    kestrum::LinuxWorkspace workspace;
    // (handler, application, whether the snapshot held it during the call), for the watched process only:
    // other programs of the user come and go meanwhile.
    using Seen = std::tuple<int, RunningApplication, bool>;
    std::vector<Seen> seen;
    qint32 watched = 0;
    const auto record = [&](int handler) {
        return [&, handler](const RunningApplication& application) {
            const auto snapshot = workspace.runningApplications();
            if (application.processIdentifier != watched) return;
            seen.emplace_back(handler, application,
                              std::find(snapshot.begin(), snapshot.end(), application) != snapshot.end());
        };
    };
    const auto first = workspace.observe(Workspace::Notice::didLaunch, record(1));
    const auto second = workspace.observe(Workspace::Notice::didLaunch, record(2));
    workspace.observe(Workspace::Notice::didLaunch, record(3)).reset();
    const auto ended = workspace.observe(Workspace::Notice::didTerminate, record(0));

    const std::vector<std::pair<QString, std::optional<QString>>> rows = {
        {QStringLiteral("League of Legends.exe"), QString(ids::gameClient)},
        {QStringLiteral("LeagueClientUx.exe"), QString(ids::leagueClientUx)},
        {QStringLiteral("kestrum-test-helper"), std::nullopt}};
    for (const auto& [name, identifier] : rows) {
        seen.clear();
        NamedChildProcess child(name);
        watched = child.processIdentifier();
        const RunningApplication expected{identifier, watched, name};
        // Handlers in the order added, the dropped one never; the snapshot already holds the new one.
        EXPECT_TRUE(waitUntil([&] { return seen.size() >= 2; }));
        EXPECT_EQ(seen, (std::vector<Seen>{{1, expected, true}, {2, expected, true}}));
        seen.clear();
        child.stop();
        // The application as it was known; the snapshot no longer holds it.
        EXPECT_TRUE(waitUntil([&] { return !seen.empty(); }));
        EXPECT_EQ(seen, (std::vector<Seen>{{0, expected, false}}));
    }
}

// Windows of the game, of another program and of no process, and a workspace watching the desktop.
class WorkspaceActivation : public testing::Test {
  protected:
    void startDesktop(bool withWindowManager) {
        if (!server_.start()) GTEST_SKIP() << server_.failure().toStdString();
        if (withWindowManager && !server_.startWindowManager())
            GTEST_SKIP() << server_.failure().toStdString();
        client_ = std::make_unique<kestrum::test::TestWindowClient>();
        ASSERT_TRUE(client_->connected());
        if (withWindowManager) {
            ASSERT_TRUE(client_->awaitWindowManager());
        }
        const auto pid = [](const NamedChildProcess& process) {
            return static_cast<std::uint32_t>(process.processIdentifier());
        };
        gameWindow_ = client_->create(
            {QRect(0, 0, 640, 360), QByteArray("League of Legends (TM) Client"), {}, pid(game_)});
        editorWindow_ = client_->create({QRect(700, 0, 300, 200), {}, QByteArray("notes"), pid(editor_)});
        bareWindow_ = client_->create({QRect(0, 500, 100, 100), {}, {}, {}});
        workspace_ = std::make_unique<kestrum::LinuxWorkspace>();
        subscription_ = workspace_->observe(
            Workspace::Notice::didActivate,
            [this](const RunningApplication& application) { activated_.push_back(application); });
    }

    // Brings a window to the front by `bring`; expects a notice of `expected`, and it as the front when
    // known.
    void expectActivation(const std::function<void()>& bring, const RunningApplication& expected) {
        activated_.clear();
        bring();
        EXPECT_TRUE(waitUntil([&] { return !activated_.empty() && activated_.back() == expected; }))
            << testing::PrintToString(activated_);
        const bool known = expected.localizedName.has_value();
        EXPECT_EQ(workspace_->frontmostApplication(), known ? std::optional(expected) : std::nullopt);
    }

    RunningApplication game() const {
        return {QString(ids::gameClient), game_.processIdentifier(), QStringLiteral("League of Legends.exe")};
    }
    RunningApplication editor() const {
        return {std::nullopt, editor_.processIdentifier(), QStringLiteral("kestrum-editor")};
    }
    const RunningApplication nobody{std::nullopt, 0, std::nullopt};

    kestrum::test::XvfbServer server_;
    NamedChildProcess game_{QStringLiteral("League of Legends.exe")};
    NamedChildProcess editor_{QStringLiteral("kestrum-editor")};
    std::unique_ptr<kestrum::test::TestWindowClient> client_;
    xcb_window_t gameWindow_ = XCB_WINDOW_NONE;
    xcb_window_t editorWindow_ = XCB_WINDOW_NONE;
    xcb_window_t bareWindow_ = XCB_WINDOW_NONE;
    std::unique_ptr<kestrum::LinuxWorkspace> workspace_;
    kestrum::WorkspaceSubscription subscription_;
    std::vector<RunningApplication> activated_;
};

TEST_F(WorkspaceActivation, FollowsTheWindowManagersActiveWindow) {
    startDesktop(true);
    if (IsSkipped() || HasFatalFailure()) return;
    const auto activate = [](xcb_window_t window) {
        return [window] {
            QProcess::execute(QStringLiteral("xdotool"), {QStringLiteral("windowactivate"),
                                                          QStringLiteral("--sync"), QString::number(window)});
        };
    };
    expectActivation(activate(gameWindow_), game());
    expectActivation(activate(editorWindow_), editor());
    expectActivation(activate(gameWindow_), game());
}

TEST_F(WorkspaceActivation, FollowsTheActiveWindowPropertyWithoutAManager) {
    startDesktop(false);
    if (IsSkipped() || HasFatalFailure()) return;
    const auto publish = [this](xcb_window_t window) {
        return [this, window] { client_->publishActiveWindow(window); };
    };
    expectActivation(publish(gameWindow_), game());
    expectActivation(publish(editorWindow_), editor());
    // Leaving for no window, or for a window of no process, still tells observers the front changed.
    expectActivation(publish(XCB_WINDOW_NONE), nobody);
    expectActivation(publish(gameWindow_), game());
    expectActivation(publish(bareWindow_), nobody);
}

TEST_F(WorkspaceActivation, FallsBackToTheInputFocusWhenNothingIsPublished) {
    startDesktop(false);
    if (IsSkipped() || HasFatalFailure()) return;
    const auto focus = [this](xcb_window_t window) { return [this, window] { client_->focus(window); }; };
    expectActivation(focus(gameWindow_), game());
    expectActivation(focus(editorWindow_), editor());
    expectActivation(focus(gameWindow_), game());
}

}  // namespace

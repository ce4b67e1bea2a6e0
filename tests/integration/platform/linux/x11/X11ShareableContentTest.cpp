#include "platform/linux/x11/X11ShareableContent.h"

#include "core/recording/RecordingBundleIdentifiers.h"
#include "integration/platform/linux/x11/NamedChildProcess.h"
#include "integration/platform/linux/x11/TestWindowClient.h"
#include "support/DesktopPrinters.h"
#include "support/DisplayServers.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>

#include <unistd.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

using kestrum::ShareableApplication;
using kestrum::ShareableContentSnapshot;
using kestrum::ShareableWindow;
using kestrum::test::TestWindowClient;

qsizetype positionOf(const ShareableContentSnapshot& snapshot, xcb_window_t window) {
    const auto found = std::find_if(snapshot.windows.begin(), snapshot.windows.end(),
                                    [&](const ShareableWindow& listed) { return listed.windowID == window; });
    return found == snapshot.windows.end() ? -1 : found - snapshot.windows.begin();
}

// The same cases on a bare X server and under openbox, which reparents, decorates and lists the clients.
class X11ShareableContentTest : public testing::TestWithParam<bool> {
  protected:
    void SetUp() override {
        if (!server_.start(1600, 900)) GTEST_SKIP() << server_.failure().toStdString();
        if (managed() && !server_.startWindowManager()) GTEST_SKIP() << server_.failure().toStdString();
        client_ = std::make_unique<TestWindowClient>();  // once DISPLAY names the server
        ASSERT_TRUE(client_->connected());
        if (managed()) {
            ASSERT_TRUE(client_->awaitWindowManager());
        }
    }

    bool managed() const { return GetParam(); }

    // The content once every one of `windows` is listed: a manager lists a client after its map, and maps
    // the client's frame a moment after it lists it.
    ShareableContentSnapshot listing(const std::vector<xcb_window_t>& windows, bool excludingDesktop = false,
                                     bool onScreenOnly = false) {
        ShareableContentSnapshot snapshot;
        kestrum::test::waitUntil([&] {
            auto content = content_.currentContent(excludingDesktop, onScreenOnly);
            if (content.ok()) snapshot = std::move(content).value();
            return std::all_of(windows.begin(), windows.end(),
                               [&](xcb_window_t w) { return positionOf(snapshot, w) >= 0; });
        });
        return snapshot;
    }

    void xdotool(const QString& command, xcb_window_t window) {
        QProcess::execute(QStringLiteral("xdotool"),
                          {command, QStringLiteral("--sync"), QString::number(window)});
    }

    kestrum::test::XvfbServer server_;
    std::unique_ptr<TestWindowClient> client_;
    kestrum::X11ShareableContent content_;
};

TEST_P(X11ShareableContentTest, DescribesTitlesFramesOwnersAndDisplays) {
    kestrum::test::NamedChildProcess game(QStringLiteral("League of Legends.exe"));
    const ShareableApplication gameOwner{game.processIdentifier(),
                                         QString(kestrum::RecordingBundleIdentifiers::gameClient),
                                         QStringLiteral("League of Legends.exe")};
    const ShareableApplication ownOwner{getpid(), QString(),
                                        QFileInfo(QCoreApplication::applicationFilePath()).fileName()};
    struct Row {
        TestWindowClient::Window wanted;
        std::optional<QString> title;
        std::optional<ShareableApplication> owner;
    };
    const std::vector<Row> rows = {
        {{QRect(100, 120, 640, 360), QByteArray("Ωmega – League of Legends"), QByteArray("fallback"),
          static_cast<std::uint32_t>(gameOwner.processID)},
         QStringLiteral("Ωmega – League of Legends"),
         gameOwner},
        {{QRect(800, 100, 300, 200), {}, QByteArray("Plain \xC5"), static_cast<std::uint32_t>(getpid())},
         QStringLiteral("Plain Å"),
         ownOwner},
        {{QRect(900, 500, 200, 150), QByteArray(""), {}, {}},
         QString(),
         std::nullopt},  // an empty title is one
        {{QRect(50, 600, 200, 100), {}, {}, {}}, std::nullopt, std::nullopt},
    };
    std::vector<xcb_window_t> windows;
    for (const Row& row : rows) windows.push_back(client_->create(row.wanted));
    const ShareableContentSnapshot snapshot = listing(windows, false, true);

    for (std::size_t index = 0; index < rows.size(); ++index) {
        const qsizetype position = positionOf(snapshot, windows[index]);
        ASSERT_GE(position, 0) << "row " << index;
        const ShareableWindow& window = snapshot.windows[static_cast<std::size_t>(position)];
        EXPECT_EQ(window.title, rows[index].title) << "row " << index;
        EXPECT_EQ(window.owningApplication, rows[index].owner) << "row " << index;
        EXPECT_TRUE(window.isOnScreen) << "row " << index;
        EXPECT_EQ(window.frame.size(), QSizeF(rows[index].wanted.frame.size())) << "row " << index;
        // A manager puts its frame at the asked place, and the client inside it below the title bar.
        const QPointF offset = window.frame.topLeft() - QPointF(rows[index].wanted.frame.topLeft());
        EXPECT_TRUE(managed() ? offset.x() >= 0 && offset.x() <= 20 && offset.y() >= 0 && offset.y() <= 60
                              : offset.isNull())
            << "row " << index << " offset " << offset.x() << "," << offset.y();
    }
    ASSERT_EQ(snapshot.displays.size(), 1u);
    EXPECT_EQ(snapshot.displays.front().frame, QRectF(0, 0, 1600, 900));
    EXPECT_EQ(snapshot.applications.size(), 2u);
    for (const ShareableApplication& owner : {gameOwner, ownOwner}) {
        EXPECT_NE(std::find(snapshot.applications.begin(), snapshot.applications.end(), owner),
                  snapshot.applications.end());
    }
}

TEST_P(X11ShareableContentTest, StackingVisibilityAndDesktopWindows) {
    const xcb_window_t lower = client_->create({QRect(0, 0, 300, 300), QByteArray("lower"), {}, {}});
    const xcb_window_t upper = client_->create({QRect(100, 100, 300, 300), QByteArray("upper"), {}, {}});
    const xcb_window_t dock = client_->create({QRect(0, 860, 1600, 40), QByteArray("panel"), {}, {}, true});
    for (const xcb_window_t top : {lower, upper, lower}) {
        managed() ? xdotool(QStringLiteral("windowactivate"), top) : client_->raise(top);
        const xcb_window_t other = top == lower ? upper : lower;
        EXPECT_TRUE(kestrum::test::waitUntil([&] {
            const ShareableContentSnapshot snapshot = listing({lower, upper});
            return positionOf(snapshot, top) < positionOf(snapshot, other);
        })) << "top-most first";
    }

    EXPECT_GE(positionOf(listing({lower, upper, dock}, false), dock), 0);
    EXPECT_EQ(positionOf(listing({lower, upper}, true), dock), -1);

    managed() ? xdotool(QStringLiteral("windowminimize"), upper) : client_->unmap(upper);
    EXPECT_TRUE(kestrum::test::waitUntil([&] {
        const ShareableContentSnapshot snapshot = listing({upper});
        const qsizetype position = positionOf(snapshot, upper);
        return position >= 0 && !snapshot.windows[static_cast<std::size_t>(position)].isOnScreen;
    })) << "still listed, no longer on screen";
    EXPECT_EQ(positionOf(listing({lower}, false, true), upper), -1);
}

INSTANTIATE_TEST_SUITE_P(Desktops, X11ShareableContentTest, testing::Values(false, true),
                         [](const testing::TestParamInfo<bool>& info) {
                             return info.param ? "Openbox" : "Bare";
                         });

TEST(X11ShareableContent, AnErrorWhenNoDisplayAnswersOrTheServerGoesAway) {
    for (const char* display : {"", ":4242", "unix:4243.0"}) {
        *display == '\0' ? qunsetenv("DISPLAY") : qputenv("DISPLAY", display);
        const auto content = kestrum::X11ShareableContent().currentContent(true, true);
        ASSERT_FALSE(content.ok()) << display;
        EXPECT_TRUE(content.error().description.contains(*display == '\0' ? "DISPLAY is not set" : display))
            << content.error().description.toStdString();
    }
    kestrum::test::XvfbServer server;
    if (!server.start()) GTEST_SKIP() << server.failure().toStdString();
    kestrum::X11ShareableContent content;
    ASSERT_TRUE(content.currentContent(false, false).ok());
    server.stop();
    EXPECT_FALSE(content.currentContent(false, false).ok());
}

}  // namespace

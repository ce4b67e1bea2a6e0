// The command line of `kestrum --dashboard`: what it sets up, and bad input refused with a clear message
// before any window system is touched.
#include "app/DashboardLaunchOptions.h"

#include <gtest/gtest.h>

namespace kestrum::test {
namespace {

std::variant<DashboardLaunchOptions, QString> parse(const QStringList& arguments) {
    return DashboardLaunchOptions::parse(QStringList{QStringLiteral("kestrum")} + arguments);
}

TEST(DashboardLaunchOptions, ReadsTheWindowsSetUp) {
    const auto parsed = parse({"--dashboard",
                               "--select",
                               "2",
                               "--at",
                               "30.5",
                               "--size",
                               "1920x1080",
                               "--appearance",
                               "dark",
                               "--pin-scoreboard",
                               "--pending",
                               "0",
                               "--hover",
                               "1",
                               "--open-filters",
                               "--screenshot",
                               "a.png",
                               "--art-host",
                               "http://127.0.0.1:4000",
                               "--context-menu",
                               "3",
                               "--speed-menu",
                               "--guide"});
    ASSERT_TRUE(std::holds_alternative<DashboardLaunchOptions>(parsed))
        << std::get<QString>(parsed).toStdString();
    const auto& options = std::get<DashboardLaunchOptions>(parsed);
    EXPECT_TRUE(options.opensDashboard);
    EXPECT_EQ(options.selectRow, 2);
    EXPECT_EQ(options.atSeconds, 30.5);
    EXPECT_EQ(options.size, QSize(1920, 1080));
    EXPECT_EQ(options.dark, true);
    EXPECT_TRUE(options.pinsScoreboard && options.opensFilters);
    EXPECT_EQ(options.pendingRow, 0);
    EXPECT_EQ(options.hoverRow, 1);
    EXPECT_EQ(options.contextMenuRow, 3);
    EXPECT_TRUE(options.opensSpeedMenu && options.opensGuide);
    EXPECT_EQ(options.screenshotPath, QStringLiteral("a.png"));
    EXPECT_EQ(options.artHost, QUrl(QStringLiteral("http://127.0.0.1:4000")));
}

TEST(DashboardLaunchOptions, WithoutTheSwitchTheRecorderRunsAlone) {
    const auto parsed = parse({"--some-recorder-option"});
    ASSERT_TRUE(std::holds_alternative<DashboardLaunchOptions>(parsed));
    EXPECT_FALSE(std::get<DashboardLaunchOptions>(parsed).opensDashboard);
    EXPECT_FALSE(std::get<DashboardLaunchOptions>(parsed).dark.has_value()) << "the appearance is left alone";
}

struct BadLine {
    const char* name;
    QStringList arguments;
    const char* message;
};

TEST(DashboardLaunchOptions, RefusesBadInputWithAClearMessage) {
    const BadLine cases[] = {
        {"a size that is no size",
         {"--dashboard", "--size", "big"},
         "--size takes WIDTHxHEIGHT, not \"big\""},
        {"an unknown appearance",
         {"--dashboard", "--appearance", "blue"},
         "--appearance takes light or dark"},
        {"a negative row", {"--dashboard", "--select", "-1"}, "a row is a whole number from 0"},
        {"a missing value", {"--dashboard", "--select"}, "--select needs a value"},
        {"a time before 0", {"--dashboard", "--at", "-3"}, "--at takes seconds from 0"},
        {"an art host with no scheme", {"--dashboard", "--art-host", "localhost"}, "--art-host takes a URL"},
        {"a window option alone", {"--screenshot", "a.png"}, "the window's options need --dashboard"},
        {"a menu without the window", {"--speed-menu"}, "the window's options need --dashboard"},
        {"a context menu on no row", {"--dashboard", "--context-menu", "first"}, "a row is a whole number"},
    };
    for (const BadLine& line : cases) {
        SCOPED_TRACE(line.name);
        const auto parsed = parse(line.arguments);
        ASSERT_TRUE(std::holds_alternative<QString>(parsed));
        EXPECT_TRUE(std::get<QString>(parsed).contains(QString::fromUtf8(line.message)))
            << std::get<QString>(parsed).toStdString();
    }
}

}  // namespace
}  // namespace kestrum::test

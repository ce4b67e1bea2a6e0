#include "core/shell/ShellWindowGeometry.h"
#include "support/QtPrinters.h"

#include <gtest/gtest.h>

namespace kestrum::test {
namespace {

void expectNear(QSizeF actual, QSizeF expected) {
    EXPECT_NEAR(actual.width(), expected.width(), 1e-6);
    EXPECT_NEAR(actual.height(), expected.height(), 1e-6);
}

TEST(ShellWindowGeometry, TheReviewWindowOpensAt16By9WithinNineTenthsOfTheAvailableScreen) {
    struct Case {
        const char* name;
        std::optional<ScreenFrames> screen;
        QSizeF expectedSize;
        std::optional<QPointF> expectedOrigin;
    };
    const std::vector<Case> cases = {
        // Height bounds: 0.9 * 1053 = 947.7 high, 1684.8 wide; centred on the whole screen, not the part
        // left by the panel.
        {"1080p with a bottom panel",
         ScreenFrames{{0, 0, 1920, 1080}, {0, 0, 1920, 1053}},
         {1684.8, 947.7},
         QPointF(960 - 842.4, 540 - 473.85)},
        // Width bounds on a portrait screen: 0.9 * 1080 = 972 wide.
        {"portrait",
         ScreenFrames{{0, 0, 1080, 1920}, {0, 0, 1080, 1920}},
         {972, 546.75},
         QPointF(54, 686.625)},
        {"a second screen to the right with a top panel",
         ScreenFrames{{1920, 0, 2560, 1440}, {1920, 32, 2560, 1408}},
         {2252.8, 1267.2},
         QPointF(3200 - 1126.4, 720 - 633.6)},
        {"an ultra-wide screen",
         ScreenFrames{{0, 0, 3440, 1440}, {0, 0, 3440, 1440}},
         {2304, 1296},
         QPointF(568, 72)},
        {"no screen at all: 1664 by 936, centred by the platform", std::nullopt, {1664, 936}, std::nullopt},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const QSizeF size = dashboardContentSize(c.screen);
        expectNear(size, c.expectedSize);
        EXPECT_NEAR(size.width() / size.height(), 16.0 / 9.0, 1e-9);
        const std::optional<QPointF> origin = centredWindowOrigin(size, c.screen);
        ASSERT_EQ(origin.has_value(), c.expectedOrigin.has_value());
        if (origin) {
            EXPECT_NEAR(origin->x(), c.expectedOrigin->x(), 1e-6);
            EXPECT_NEAR(origin->y(), c.expectedOrigin->y(), 1e-6);
        }
    }
    EXPECT_EQ(kDashboardMinimumSize, QSizeF(1050, 520));
}

TEST(ShellWindowGeometry, TheSettingsWindowIsNoTallerThanTheAvailableScreen) {
    struct Case {
        const char* name;
        std::optional<ScreenFrames> screen;
        QSizeF expected;
    };
    const std::vector<Case> cases = {
        {"room enough", ScreenFrames{{0, 0, 1920, 1080}, {0, 0, 1920, 1053}}, {580, 760}},
        {"a 1366x768 laptop with a panel", ScreenFrames{{0, 0, 1366, 768}, {0, 27, 1366, 741}}, {580, 741}},
        {"a tiny screen", ScreenFrames{{0, 0, 480, 600}, {0, 0, 480, 560}}, {480, 560}},
        {"exactly the preferred size", ScreenFrames{{0, 0, 580, 760}, {0, 0, 580, 760}}, {580, 760}},
        {"no screen", std::nullopt, {580, 760}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        expectNear(settingsWindowSize(c.screen), c.expected);
    }
}

TEST(ShellWindowGeometry, ThePanelOpensByThePointerAndStaysOnTheAvailableScreen) {
    struct Case {
        const char* name;
        QPointF pointer;
        QSizeF panel;
        ScreenFrames screen;
        QPointF expected;
    };
    const ScreenFrames topPanel{{0, 0, 1920, 1080}, {0, 28, 1920, 1052}};
    const ScreenFrames bottomPanel{{0, 0, 1920, 1080}, {0, 0, 1920, 1040}};
    const ScreenFrames rightScreen{{1920, 0, 1280, 1024}, {1920, 0, 1280, 1024}};
    const std::vector<Case> cases = {
        {"a tray at the top: below the pointer, centred across it",
         {900, 14},
         {300, 280},
         topPanel,
         {750, 28}},
        {"a tray at the bottom: above the pointer", {900, 1060}, {300, 280}, bottomPanel, {750, 760}},
        {"a tray in the top right corner: pushed left onto the screen",
         {1910, 10},
         {300, 280},
         topPanel,
         {1620, 28}},
        {"a tray in the bottom left corner: pushed right and above the bottom panel",
         {5, 1070},
         {300, 280},
         bottomPanel,
         {0, 760}},
        {"a second screen's tray: kept on that screen", {3195, 5}, {300, 280}, rightScreen, {2900, 11}},
        {"a panel taller than the screen keeps its top on it",
         {900, 1060},
         {300, 1200},
         bottomPanel,
         {750, 0}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const QPointF origin = menuBarPanelOrigin(c.pointer, c.panel, c.screen);
        EXPECT_NEAR(origin.x(), c.expected.x(), 1e-9);
        EXPECT_NEAR(origin.y(), c.expected.y(), 1e-9);
    }
}

}  // namespace
}  // namespace kestrum::test

// The settings window of the application on a small screen (1280 by 600, KESTRUM_TEST_SCREEN): never
// taller than the screen's available height, 580 wide, and the form scrolls within it.
#include "QmlViewHarness.h"
#include "ShellViewModels.h"
#include "app/SettingsWindow.h"
#include "ui/KestrumUi.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QQuickItem>
#include <QScreen>
#include <QTest>

namespace kestrum::test {
namespace {

TEST(SettingsWindowOnASmallScreen, IsNoTallerThanTheAvailableHeightAndScrolls) {
    KESTRUM_REQUIRE_DISPLAY();
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    ASSERT_LT(available.height(), 760) << "the test needs a screen lower than the form; KESTRUM_TEST_SCREEN?";
    ShellViewModels models;
    QQmlEngine engine;
    ui::registerQmlModules(engine);
    SettingsWindow window(engine, models.settings);
    ASSERT_TRUE(window.errors().isEmpty()) << window.errors().toStdString();
    for (int opening = 0; opening < 2; ++opening) {
        SCOPED_TRACE(opening);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window.view()));
        EXPECT_EQ(window.view().width(), 580);
        EXPECT_LE(window.view().height(), available.height());
        EXPECT_GT(window.view().height(), available.height() / 2);
        QQuickItem* scroll =
            window.view().rootObject()->findChild<QQuickItem*>(QStringLiteral("settingsScroll"));
        ASSERT_TRUE(scroll);
        EXPECT_GT(scroll->property("contentHeight").toDouble(), scroll->height());
        EXPECT_EQ(scroll->property("contentY").toDouble(), 0) << "each opening shows the top";
        EXPECT_TRUE(models.settings.permissions()->isPolling());
        scroll->setProperty("contentY", 300);
        window.view().hide();
        EXPECT_FALSE(models.settings.permissions()->isPolling());
    }
}

}  // namespace
}  // namespace kestrum::test

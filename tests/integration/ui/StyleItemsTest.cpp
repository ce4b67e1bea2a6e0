// The style's items in a real window on a real X server: the card under the pointer, icons drawn pixel
// for pixel as their renderer draws them and following the appearance, and art by name.
#include "QmlViewHarness.h"
#include "support/TestEnvironment.h"
#include "ui/style/KestrumStyle.h"
#include "ui/style/icons/LucideIconRenderer.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <QQuickItem>

namespace kestrum::test {
namespace {

using ui::KestrumStyle;

constexpr int kAfterAnimationMs = 400;

class StyleItems : public ::testing::Test {
  protected:
    void SetUp() override {
        KESTRUM_REQUIRE_DISPLAY();
        KestrumStyle::instance().setDark(false);
    }
    void TearDown() override { KestrumStyle::instance().setDark(false); }

    QQuickItem* show(const char* body, QSize size = {320, 200}) {
        const QByteArray qml =
            QByteArrayLiteral(
                "import QtQuick\nimport Kestrum.Style\nRectangle {\ncolor: Style.background\n") +
            body + "\n}\n";
        QQuickItem* root = harness_.showText(qml, {}, size);
        EXPECT_TRUE(root) << harness_.errors().toStdString();
        return root;
    }
    QQuickItem* child(QQuickItem* root, const char* name) {
        return root->findChild<QQuickItem*>(QLatin1String(name));
    }

    QmlViewHarness harness_;
};

TEST_F(StyleItems, CardLiftsUnderThePointerAndSettlesWhenItLeaves) {
    QQuickItem* root =
        show("KestrumCardModifier { objectName: 'card'; x: 60; y: 40; width: 200; height: 100 }");
    ASSERT_TRUE(root);
    QQuickItem* card = child(root, "card");
    ASSERT_TRUE(card);
    const QPointF centre = QmlViewHarness::centreOf(*card);
    const auto fillAtCentre = [&] { return harness_.screenshot().pixelColor(centre.toPoint()).rgb(); };
    const KestrumStyle& style = KestrumStyle::instance();

    EXPECT_EQ(fillAtCentre(), style.surface().rgb());
    // The shadow darkens the ground just below the card's lower edge.
    const QImage resting = harness_.screenshot();
    const QColor belowCard = resting.pixelColor(160, 40 + 100 + 3);
    EXPECT_LT(belowCard.lightness(), style.background().lightness());

    harness_.moveMouse(centre);
    ASSERT_TRUE(waitUntil([&] { return card->property("hovered").toBool(); }, 2000));
    processEventsFor(kAfterAnimationMs);
    EXPECT_EQ(fillAtCentre(), style.surfaceHovered().rgb());

    harness_.moveMouse(QPointF(5, 5));
    ASSERT_TRUE(waitUntil([&] { return !card->property("hovered").toBool(); }, 2000));
    processEventsFor(kAfterAnimationMs);
    EXPECT_EQ(fillAtCentre(), style.surface().rgb());
}

TEST_F(StyleItems, IconIsDrawnPixelForPixelAsItsRendererDrawsIt) {
    QQuickItem* root = show(
        "LucideIcon { objectName: 'icon'; x: 20; y: 20; width: 24; height: 24; symbolName: 'crown.fill' }");
    ASSERT_TRUE(root);
    const QImage window = harness_.screenshot();
    // What the renderer draws, laid on the same ground: no scaling, no blur between them.
    QImage expected(24, 24, QImage::Format_ARGB32_Premultiplied);
    expected.fill(KestrumStyle::instance().background());
    QPainter(&expected).drawImage(
        0, 0, ui::renderLucideIcon(u"crown.fill", KestrumStyle::instance().textPrimary(), {24, 24}));
    int worst = 0;
    for (int y = 0; y < 24; ++y) {
        for (int x = 0; x < 24; ++x) {
            const QColor a = window.pixelColor(20 + x, 20 + y);
            const QColor b = expected.pixelColor(x, y);
            worst = std::max({worst, std::abs(a.red() - b.red()), std::abs(a.green() - b.green()),
                              std::abs(a.blue() - b.blue())});
        }
    }
    EXPECT_LE(worst, 3);
}

TEST_F(StyleItems, IconWithoutAColourFollowsTheAppearance) {
    QQuickItem* root = show(
        "LucideIcon { objectName: 'icon'; x: 20; y: 20; width: 48; height: 48; symbolName: 'circle.fill' }\n"
        "LucideIcon { objectName: 'tinted'; x: 100; y: 20; width: 48; height: 48; symbolName: 'circle.fill'; "
        "color: '#ff0000' }");
    ASSERT_TRUE(root);
    EXPECT_TRUE(child(root, "icon")->property("known").toBool());
    EXPECT_EQ(harness_.screenshot().pixelColor(44, 44).rgb(), KestrumStyle::instance().textPrimary().rgb());
    KestrumStyle::instance().setDark(true);
    const QImage dark = harness_.screenshot();
    EXPECT_EQ(dark.pixelColor(44, 44).rgb(), ui::StylePalette::dark().textPrimary.rgb());
    EXPECT_EQ(dark.pixelColor(124, 44).rgb(), QColor(Qt::red).rgb()) << "a colour of its own stays";
    EXPECT_EQ(dark.pixelColor(5, 5).rgb(), ui::StylePalette::dark().background.rgb());
}

TEST_F(StyleItems, UnknownNamesDrawNothingAndSaySo) {
    QQuickItem* root = show(
        "LucideIcon { objectName: 'icon'; x: 20; y: 20; width: 48; height: 48; symbolName: 'no.such.symbol' "
        "}\n"
        "CommunityDragonIcon { objectName: 'art'; x: 100; y: 20; width: 48; height: 48; artName: "
        "'no_such_art' }\n"
        "CommunityDragonIcon { objectName: 'baron'; x: 180; y: 20; width: 48; height: 48; artName: 'baron' "
        "}");
    ASSERT_TRUE(root);
    EXPECT_FALSE(child(root, "icon")->property("known").toBool());
    EXPECT_FALSE(child(root, "art")->property("known").toBool());
    EXPECT_TRUE(child(root, "baron")->property("known").toBool());
    const QImage picture = harness_.screenshot();
    const QRgb ground = KestrumStyle::instance().background().rgb();
    EXPECT_EQ(picture.pixelColor(44, 44).rgb(), ground);
    EXPECT_EQ(picture.pixelColor(124, 44).rgb(), ground);
    EXPECT_NE(picture.pixelColor(184, 30).rgb(), ground) << "the baron's tile is drawn";
}

}  // namespace
}  // namespace kestrum::test

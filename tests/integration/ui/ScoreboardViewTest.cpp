// The scoreboard panels in a real window on a real X server: both teams' rows in their colours with their
// portraits and items, the Riot ID's tip after the hover's delay, and its copy by a click.
#include "QmlViewHarness.h"
#include "ReviewViewModels.h"
#include "support/TestEnvironment.h"
#include "ui/style/KestrumStyle.h"

#include <gtest/gtest.h>

#include <QQuickItem>

#include <chrono>

namespace kestrum::test {
namespace {

using namespace std::chrono_literals;

const QByteArray kPage = QByteArrayLiteral(R"(
import QtQuick
import Kestrum.Style
import Kestrum.Review

Rectangle {
    id: page

    required property RecordingScoreboardModel model

    color: Style.background

    Column {
        x: 20
        y: 40
        width: page.width - 40
        spacing: 8

        RecordingScoreboardHeaderView {
            width: parent.width
            model: page.model
        }

        RecordingScoreboardView {
            width: parent.width
            model: page.model
        }
    }
}
)");

class ScoreboardView : public ::testing::Test {
  protected:
    void SetUp() override {
        KESTRUM_REQUIRE_DISPLAY();
        ASSERT_TRUE(harness_.showText(
            kPage, {{QStringLiteral("model"), QVariant::fromValue(&models_.scoreboard)}}, {1280, 600}))
            << harness_.errors().toStdString();
    }

    // The rows in the order drawn: blue then red, each team from the top.
    QList<QQuickItem*> rows() const { return harness_.findItemsOfType("ScoreboardPlayerRow"); }

    QQuickItem* rowOf(const QString& displayName) const {
        for (QQuickItem* row : rows()) {
            if (row->property("displayName").toString() == displayName) return row;
        }
        return nullptr;
    }

    ReviewViewModels models_;
    QmlViewHarness harness_;
};

TEST_F(ScoreboardView, ShowsBothTeamsInTheirColoursWithPortraitsAndItems) {
    const QList<QQuickItem*> shown = rows();
    ASSERT_EQ(shown.size(), 10);
    const struct {
        const char* name;
        const char* champion;
        bool onTheLeft;
    } expected[] = {
        {"Oak", "Garen", true},     {"Kestrel", "Ahri", true}, {"Moss", "Thresh", true},
        {"Flint", "Darius", false}, {"Rook", "Lux", false},    {"Cinder", "Leona", false},
    };
    const double middle = harness_.window().width() / 2.0;
    for (const auto& row : expected) {
        QQuickItem* item = rowOf(QLatin1String(row.name));
        ASSERT_TRUE(item) << row.name;
        EXPECT_EQ(item->property("championIdentifier").toString(), QLatin1String(row.champion));
        EXPECT_EQ(QmlViewHarness::centreOf(*item).x() < middle, row.onTheLeft) << row.name;
    }
    // Players by position: the top laner first, the support last, on each side.
    EXPECT_LT(QmlViewHarness::centreOf(*rowOf(QStringLiteral("Oak"))).y(),
              QmlViewHarness::centreOf(*rowOf(QStringLiteral("Moss"))).y());
    EXPECT_TRUE(rowOf(QStringLiteral("Kestrel"))->property("isLocalPlayer").toBool());

    // Every portrait and item asks the asset store for its art: ten champions, two items a player.
    int champions = 0;
    int items = 0;
    for (QQuickItem* picture : harness_.findItemsOfType("kestrum::ui::DataDragonPictureItem")) {
        if (picture->property("identifier").toString().isEmpty()) continue;
        (picture->property("kind").toInt() == 0 ? champions : items) += 1;
    }
    EXPECT_EQ(champions, 10);
    EXPECT_EQ(items, 20);

    // Each team's total in its own colour: five players of two kills each.
    QList<QQuickItem*> totals;
    for (QQuickItem* text : harness_.findItemsOfType("QQuickText")) {
        if (text->objectName() == QLatin1String("teamKills")) totals.append(text);
    }
    ASSERT_EQ(totals.size(), 2);
    std::sort(totals.begin(), totals.end(), [](QQuickItem* a, QQuickItem* b) {
        return QmlViewHarness::centreOf(*a).x() < QmlViewHarness::centreOf(*b).x();
    });
    EXPECT_EQ(totals[0]->property("text").toString(), QStringLiteral("10"));
    EXPECT_EQ(totals[0]->property("color").value<QColor>(), ui::KestrumStyle::instance().teamBlue());
    EXPECT_EQ(totals[1]->property("color").value<QColor>(), ui::KestrumStyle::instance().teamRed());
    EXPECT_EQ(harness_.findItem(QStringLiteral("gameClock"))->property("text").toString(),
              QStringLiteral("00:29"));
}

TEST_F(ScoreboardView, TheRiotIdTipShowsAfterTheHoverDelayAndAClickCopiesTheId) {
    QQuickItem* row = rowOf(QStringLiteral("Rook"));
    ASSERT_TRUE(row);
    harness_.moveMouse(QmlViewHarness::centreOf(*row));
    ASSERT_TRUE(waitUntil([&] { return models_.clock.pendingSleepCount() > 0; }, 2000))
        << "the hover's delay";
    EXPECT_FALSE(row->property("isHovered").toBool());
    models_.clock.advance(119ms);
    EXPECT_FALSE(row->property("isHovered").toBool()) << "not before its 0.12 seconds";
    models_.clock.advance(1ms);
    ASSERT_TRUE(waitUntil([&] { return row->property("isHovered").toBool(); }, 2000));
    QQuickItem* tip = nullptr;
    for (QQuickItem* candidate : harness_.findItemsOfType("ReviewToolTip")) {
        if (candidate->objectName() == QLatin1String("riotIdToolTip") &&
            candidate->property("shown").toBool())
            tip = candidate;
    }
    ASSERT_TRUE(tip);
    EXPECT_EQ(tip->property("text").toString(), QStringLiteral("Riot ID Rook#EUW. Click to copy"));
    EXPECT_TRUE(waitUntil([&] { return tip->property("isOpen").toBool(); }, 2000)) << "the tip is drawn";

    harness_.click(QmlViewHarness::centreOf(*row));
    EXPECT_EQ(models_.fileActions.copiedTexts(), QStringList{QStringLiteral("Rook#EUW")});
    EXPECT_TRUE(
        waitUntil([&] { return tip->property("text").toString() == QStringLiteral("Riot ID copied"); }));
    models_.clock.advance(1200ms);
    EXPECT_TRUE(waitUntil([&] {
        return tip->property("text").toString() == QStringLiteral("Riot ID Rook#EUW. Click to copy");
    }));

    harness_.moveMouse(QPointF(5, 5));
    EXPECT_TRUE(waitUntil([&] { return !row->property("isHovered").toBool(); }, 2000));
}

TEST_F(ScoreboardView, FollowsTheAppearanceWithoutARestart) {
    const QImage light = harness_.screenshot();
    ui::KestrumStyle::instance().setDark(true);
    const QImage dark = harness_.screenshot();
    ui::KestrumStyle::instance().setDark(false);
    // The local player's row is tinted with their team's colour in each appearance.
    QQuickItem* local = rowOf(QStringLiteral("Kestrel"));
    ASSERT_TRUE(local);
    const QPoint inside = local->mapToScene(QPointF(local->width() * 0.6, 4)).toPoint();
    EXPECT_EQ(light.pixelColor(inside).rgb(), ui::StylePalette::light().teamBlueTint.rgb());
    EXPECT_EQ(dark.pixelColor(inside).rgb(), ui::StylePalette::dark().teamBlueTint.rgb());
}

}  // namespace
}  // namespace kestrum::test

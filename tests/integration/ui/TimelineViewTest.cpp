// The timeline strip in a real window on a real X server, driven by QTest's pointer as a person drives it:
// the hover card over a marker, clicks that seek, a drag that scrubs, and the pop-ups above their buttons
// that a click outside or the loss of the focus closes.
#include "QmlViewHarness.h"
#include "ReviewViewModels.h"
#include "core/review/TimelineMarkerLayout.h"
#include "core/review/UpwardPanelPlacement.h"
#include "core/settings/SettingsKeys.h"
#include "core/settings/SettingsReaders.h"
#include "integration/platform/linux/x11/TestWindowClient.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QQuickItem>
#include <QTest>

#include <chrono>

namespace kestrum::test {
namespace {

using namespace std::chrono_literals;
using timelineLayout::laneCenter;
using timelineLayout::teamRowOffset;

// The strip at the bottom of a page, as under the movie: its pop-ups and card open over the page above.
const QByteArray kPage = QByteArrayLiteral(R"(
import QtQuick
import Kestrum.Style
import Kestrum.Review

Rectangle {
    id: page

    required property GameTimelineModel model

    color: Style.background

    GameTimelineView {
        objectName: "strip"
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        model: page.model
    }
}
)");

enum class Row { red, centre, blue };

class TimelineView : public ::testing::Test {
  protected:
    void SetUp() override {
        KESTRUM_REQUIRE_DISPLAY();
        ASSERT_TRUE(harness_.showText(
            kPage, {{QStringLiteral("model"), QVariant::fromValue(&models_.timeline)}}, {1000, 500}))
            << harness_.errors().toStdString();
        track_ = harness_.findItem(QStringLiteral("timelineTrack"));
        ASSERT_TRUE(track_);
        ASSERT_GT(track_->width(), 500);
        models_.player.clearCalls();
    }

    // The point of the track, in the window, at movie time `seconds` on `row`.
    QPointF at(double seconds, Row row = Row::centre) const {
        const double x = seconds * track_->width() / ReviewViewModels::kDurationSeconds;
        const double offset = row == Row::red ? -teamRowOffset : (row == Row::blue ? teamRowOffset : 0);
        return track_->mapToScene(QPointF(x, laneCenter + offset));
    }

    QQuickItem* item(const char* name) {
        QQuickItem* found = harness_.findItem(QLatin1String(name));
        EXPECT_TRUE(found) << name;
        return found;
    }

    ReviewViewModels models_;
    QmlViewHarness harness_;
    QQuickItem* track_ = nullptr;
};

TEST_F(TimelineView, HoveringAMarkerShowsItsCardAboveTheStripUntilThePointerLeaves) {
    QQuickItem* card = item("hoverCard");
    ASSERT_TRUE(card);
    EXPECT_FALSE(card->isVisible());

    const QPointF kill = at(ReviewViewModels::kLocalKillSeconds, Row::blue);
    harness_.moveMouse(kill + QPointF(6, 4));  // within reach of the marker, not on its centre
    ASSERT_TRUE(waitUntil([&] { return card->isVisible(); }, 2000));
    EXPECT_EQ(item("hoverCardTitle")->property("text").toString(), QStringLiteral("Your kill"));
    // Centred on the marker, its centre 20 points above the strip's top.
    const QRectF frame = card->mapRectToScene(QRectF(0, 0, card->width(), card->height()));
    const QQuickItem* strip = item("strip");
    EXPECT_NEAR(frame.center().x(), kill.x(), 1.0);
    EXPECT_NEAR(frame.center().y(), strip->mapToScene(QPointF(0, -20)).y(), 1.0);
    // Drawn: the card's pixels are no longer the page's ground.
    const QImage shown = harness_.screenshot();
    EXPECT_NE(shown.pixelColor(frame.center().toPoint() + QPoint(0, -10)), shown.pixelColor(10, 10));

    harness_.moveMouse(at(ReviewViewModels::kOtherKillSeconds, Row::red));  // hidden by the filters
    ASSERT_TRUE(waitUntil([&] { return !card->isVisible(); }, 2000));
    harness_.moveMouse(at(ReviewViewModels::kTurretSeconds, Row::red));
    ASSERT_TRUE(waitUntil([&] { return card->isVisible(); }, 2000));
    EXPECT_EQ(item("hoverCardTitle")->property("text").toString(), QStringLiteral("Turret"));
    harness_.moveMouse(QPointF(500, 100));  // off the strip
    EXPECT_TRUE(waitUntil([&] { return !card->isVisible(); }, 2000));
}

TEST_F(TimelineView, AClickOnAMarkerSeeksFiveSecondsBeforeItsEventAndElsewhereToTheTimeThere) {
    const struct {
        const char* what;
        double seconds;
        Row row;
        double seekTo;
    } rows[] = {
        {"the local kill's marker", ReviewViewModels::kLocalKillSeconds, Row::blue, 45},
        {"the turret's marker", ReviewViewModels::kTurretSeconds, Row::red, 75},
        {"a hidden kill is no marker", ReviewViewModels::kOtherKillSeconds, Row::red, 60},
        {"the empty track", 20, Row::centre, 20},
    };
    for (const auto& row : rows) {
        harness_.click(at(row.seconds, row.row));
        ASSERT_FALSE(models_.player.seeks().empty()) << row.what;
        const FakeVideoPlayer::Call seek = models_.player.seeks().back();
        EXPECT_NEAR(seek.value, row.seekTo, 0.15) << row.what;  // a pixel of a 100 s track is ~0.12 s
        EXPECT_TRUE(seek.tolerance.isExact()) << row.what;
        EXPECT_EQ(models_.timeline.currentTime(), seek.value) << row.what;
    }
    EXPECT_EQ(models_.player.seeks().size(), 4U);
    EXPECT_EQ(item("currentTimeText")->property("text").toString(), models_.timeline.currentTimeText());
}

TEST_F(TimelineView, ADragOfAHundredMovesInASecondMakesTwentyOrSoSeeksAndEndsWhereItStopped) {
    const QPointF start = at(10);
    harness_.press(start);
    QPointF last;
    for (int move = 0; move < 100; ++move) {
        last = start + QPointF(4 + 3 * move, 0);
        harness_.moveHeld(last);
        models_.clock.advance(10ms);
    }
    models_.clock.advance(50ms);  // the last held-back seek's turn
    // QTest's pointer lands on whole pixels.
    const double lastTime =
        models_.timeline.timeAtTrackPosition(track_->mapFromScene(last.toPoint()).x(), track_->width());
    std::vector<FakeVideoPlayer::Call> seeks = models_.player.seeks();
    EXPECT_GE(seeks.size(), 20U);
    EXPECT_LE(seeks.size(), 21U);
    ASSERT_FALSE(seeks.empty());
    EXPECT_DOUBLE_EQ(seeks.back().value, lastTime);
    for (const auto& seek : seeks) EXPECT_EQ(seek.tolerance, VideoSeekTolerance::symmetric(0.1));
    EXPECT_DOUBLE_EQ(models_.timeline.currentTime(), lastTime) << "the time follows the pointer";

    harness_.release(last);
    seeks = models_.player.seeks();
    EXPECT_DOUBLE_EQ(seeks.back().value, lastTime);
    EXPECT_TRUE(seeks.back().tolerance.isExact()) << "the drag ends with an exact seek";
}

TEST_F(TimelineView, APopUpOpensAboveItsButtonInsideTheWindowAndAClickOutsideClosesIt) {
    const struct {
        const char* button;
        const char* panel;
        bool (GameTimelineModel::*presented)() const;
    } rows[] = {
        {"filterButton", "filterPanel", &GameTimelineModel::isTimelineFilterPresented},
        {"speedButton", "speedPanel", &GameTimelineModel::isPlaybackRatePresented},
    };
    const QSizeF window(harness_.window().width(), harness_.window().height());
    for (const auto& row : rows) {
        QQuickItem* button = item(row.button);
        QQuickItem* panel = item(row.panel);
        ASSERT_TRUE(button && panel);
        harness_.click(QmlViewHarness::centreOf(*button));
        ASSERT_TRUE((models_.timeline.*row.presented)()) << row.button;
        ASSERT_TRUE(waitUntil([&] { return panel->isVisible() && panel->width() > 0; }, 2000)) << row.panel;
        const QRectF anchor = button->mapRectToScene(QRectF(0, 0, button->width(), button->height()));
        const QRectF frame = panel->mapRectToScene(QRectF(0, 0, panel->width(), panel->height()));
        EXPECT_EQ(frame, upwardPanelFrame(anchor, frame.size(), window)) << row.panel;
        EXPECT_NEAR(frame.bottom(), anchor.top() - 8, 0.5) << row.panel;
        EXPECT_LE(frame.right(), window.width() - 4) << row.panel;

        harness_.click(panel->mapToScene(QPointF(3, 3)));  // inside, on the panel's margin: stays
        EXPECT_TRUE((models_.timeline.*row.presented)()) << row.panel;
        harness_.click(QPointF(100, 100));  // outside
        EXPECT_FALSE((models_.timeline.*row.presented)()) << row.panel;
        EXPECT_TRUE(waitUntil([&] { return !panel->isVisible(); }, 2000)) << row.panel;

        harness_.click(QmlViewHarness::centreOf(*button));  // the button toggles: open, then shut
        harness_.click(QmlViewHarness::centreOf(*button));
        EXPECT_FALSE((models_.timeline.*row.presented)()) << row.button;
    }
}

TEST_F(TimelineView, TheFilterPopUpTogglesRowsInPlaceAndResets) {
    harness_.click(QmlViewHarness::centreOf(*item("filterButton")));
    QQuickItem* blueTeam = item("filterRow4");
    ASSERT_TRUE(blueTeam);
    ASSERT_TRUE(waitUntil([&] { return blueTeam->isVisible() && blueTeam->width() > 0; }, 2000));
    const int before = models_.timeline.markerCount();
    harness_.click(QmlViewHarness::centreOf(*blueTeam));  // "Blue Team" on: no new blue kill in this game
    harness_.click(QmlViewHarness::centreOf(*item("filterRow5")));  // "Red Team" on: the kill at 60 s shows
    EXPECT_EQ(models_.timeline.markerCount(), before + 1);
    EXPECT_TRUE(models_.timeline.isTimelineFilterPresented()) << "choosing keeps the pop-up open";
    EXPECT_TRUE(models_.timeline.canResetFilters());
    harness_.click(QmlViewHarness::centreOf(*item("resetFilters")));
    EXPECT_EQ(models_.timeline.markerCount(), before);
    EXPECT_FALSE(models_.timeline.canResetFilters());
}

TEST_F(TimelineView, TheSpeedPopUpOffersNineRatesOfTwentySixPointsAndAChoiceClosesIt) {
    harness_.click(QmlViewHarness::centreOf(*item("speedButton")));
    QQuickItem* twice = item("rateRow6");
    ASSERT_TRUE(twice);
    ASSERT_TRUE(waitUntil([&] { return twice->isVisible() && twice->width() > 0; }, 2000));
    for (int row = 0; row < 9; ++row) {
        QQuickItem* rate = harness_.findItem(QStringLiteral("rateRow%1").arg(row));
        ASSERT_TRUE(rate) << row;
        EXPECT_EQ(rate->height(), 26) << row;
    }
    EXPECT_FALSE(harness_.findItem(QStringLiteral("rateRow9")));
    harness_.click(QmlViewHarness::centreOf(*twice));
    EXPECT_EQ(models_.timeline.playbackRate(), 2);
    EXPECT_EQ(models_.player.defaultRate(), 2);
    EXPECT_FALSE(models_.timeline.isPlaybackRatePresented());
    EXPECT_TRUE(waitUntil(
        [&] { return item("speedButton")->property("text").toString() == QString::fromUtf8("2×"); }));
}

TEST_F(TimelineView, BothVolumeControlsShareTheStoredLevelAndMute) {
    models_.timeline.setVolumePresented(true);
    QQuickItem* lying = item("horizontalVolumeSlider");
    QQuickItem* standing = item("verticalVolumeSlider");
    ASSERT_TRUE(lying && standing);
    ASSERT_TRUE(waitUntil([&] { return standing->isVisible() && standing->height() > 0; }, 2000));

    // The standing slider near its top: the level, the player and the lying slider follow.
    const double top = standing->property("topPadding").toDouble();
    const double travel = standing->property("availableHeight").toDouble();
    harness_.click(standing->mapToScene(QPointF(standing->width() / 2, top + travel * 0.1)));
    const double high = readPlaybackVolume(models_.defaults);
    EXPECT_NEAR(high, 0.9, 0.06);
    EXPECT_DOUBLE_EQ(models_.player.volume(), high);
    EXPECT_DOUBLE_EQ(lying->property("value").toDouble(), high);
    EXPECT_TRUE(models_.timeline.isVolumePresented()) << "a click inside keeps the pop-up";

    // A click a quarter of the way along the lying slider's groove: outside the pop-up, which goes.
    const double padding = lying->property("leftPadding").toDouble();
    const double groove = lying->property("availableWidth").toDouble();
    harness_.click(lying->mapToScene(QPointF(padding + groove / 4, lying->height() / 2)));
    EXPECT_FALSE(models_.timeline.isVolumePresented());
    const double low = readPlaybackVolume(models_.defaults);
    EXPECT_NEAR(low, 0.25, 0.05);
    EXPECT_DOUBLE_EQ(models_.player.volume(), low);
    EXPECT_DOUBLE_EQ(standing->property("value").toDouble(), low) << "the pop-up shows the same level";

    ASSERT_FALSE(readPlaybackMuted(models_.defaults));
    harness_.click(QmlViewHarness::centreOf(*item("muteButton")));
    EXPECT_TRUE(readPlaybackMuted(models_.defaults));
    EXPECT_TRUE(models_.player.isMuted());
    EXPECT_EQ(models_.timeline.volume()->symbolName(), QStringLiteral("speaker.slash.fill"));
}

TEST_F(TimelineView, APopUpClosesWhenTheApplicationLosesTheFocus) {
    harness_.window().requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&harness_.window())) << "the view's window never got the focus";
    harness_.click(QmlViewHarness::centreOf(*item("speedButton")));
    ASSERT_TRUE(models_.timeline.isPlaybackRatePresented());

    // Another program's window takes the focus.
    TestWindowClient other;
    ASSERT_TRUE(other.connected());
    const xcb_window_t window = other.create({QRect(1200, 100, 200, 200), QByteArray("other"), {}, {}});
    other.focus(window);
    EXPECT_TRUE(waitUntil([&] { return !models_.timeline.isPlaybackRatePresented(); }, 3000));
    EXPECT_NE(QGuiApplication::applicationState(), Qt::ApplicationActive);
}

}  // namespace
}  // namespace kestrum::test

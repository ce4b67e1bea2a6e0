// The review window's content on a real window: DashboardView of Kestrum.Dashboard bound to a
// controller on fakes (a library the test fills, fake players, a manual clock), driven by the pointer and
// the keyboard through QTest as a person would.
#include "QmlViewHarness.h"
#include "ui/dashboard/DashboardTabKeyFilter.h"
#include "unit/core/dashboard/DashboardTestSupport.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QQuickItem>
#include <QTest>

namespace kestrum::test {
namespace {

constexpr QSize kWindowSize{1280, 800};

const MatchVideo kNewest = recording(QStringLiteral("/recordings/newest.mov"));
const MatchVideo kOlder = recording(QStringLiteral("/recordings/older.mov"), 900);
const MatchVideo kOldest = recording(QStringLiteral("/recordings/oldest.mov"), 1800);

class DashboardViewTest : public testing::Test {
  protected:
    void SetUp() override { KESTRUM_REQUIRE_DISPLAY(); }

    void TearDown() override {
        if (dashboard.controller().hasSelection()) dashboard.controller().disappear();
    }

    // The view over the library `matches`, shown and drawn.
    QQuickItem* showLibrary(const std::vector<MatchVideo>& matches) {
        dashboard.controller().appear();
        dashboard.showLibrary(matches);
        QQuickItem* view = harness.show(
            QUrl(QStringLiteral("qrc:/qt/qml/Kestrum/Dashboard/DashboardView.qml")),
            {{QStringLiteral("controller"), QVariant::fromValue(&dashboard.controller())}}, kWindowSize);
        dashboard.controller().attachTabKeyWindow(&harness.window());
        return view;
    }

    QQuickItem* card(const MatchVideo& match) const {
        return harness.findItem(QStringLiteral("matchCard:") + match.url);
    }

    QVariant cardValue(const MatchVideo& match, const char* role) {
        MatchCardListModel& cards = *dashboard.controller().sidebar()->cards();
        return cards.value(cards.rowOf(match.url), QString::fromLatin1(role));
    }

    // Visible with every ancestor, as a person would see it.
    static bool isShown(const QQuickItem* item) { return item && item->isVisible() && item->opacity() > 0; }

    // Lets the swipe's springs and delayed action run to their end.
    void runSwipeAnimations() {
        for (int frame = 0; frame < 120; ++frame) {
            dashboard.clock.advance(std::chrono::milliseconds(17));
            QCoreApplication::processEvents();
        }
    }

    DashboardHarness dashboard;
    QmlViewHarness harness;
};

struct SwipeCase {
    const char* name;
    QPointF translation;
    bool commits;
};

// A leftward swipe uncovers the trailing side, whose action on a resting card is the pending deletion.
TEST_F(DashboardViewTest, ASwipeCommitsFromTheThresholdOnAndOnlyWhenMostlyAcross) {
    const SwipeCase cases[] = {
        {"51 across stays below the threshold", {-51, 0}, false},
        {"52 across commits", {-52, 0}, true},
        {"100 across and 90 down is no swipe", {-100, 90}, false},
    };
    ASSERT_TRUE(showLibrary({kNewest, kOlder})) << harness.errors().toStdString();
    for (const SwipeCase& swipe : cases) {
        SCOPED_TRACE(swipe.name);
        QQuickItem* target = card(kNewest);
        ASSERT_TRUE(target);
        const QPointF start = QmlViewHarness::centreOf(*target) + QPointF(40, 0);
        harness.press(start);
        harness.moveHeld(start + swipe.translation / 4);
        harness.moveHeld(start + swipe.translation / 2);
        harness.moveHeld(start + swipe.translation);
        QCoreApplication::processEvents();
        if (swipe.commits) {
            EXPECT_LT(card(kNewest)->findChild<QQuickItem*>(QStringLiteral("matchCardBody"))->x(), -40)
                << "the card follows the pointer";
        }
        harness.release(start + swipe.translation);
        runSwipeAnimations();
        EXPECT_EQ(cardValue(kNewest, "isPendingDeletion").toBool(), swipe.commits);
        EXPECT_EQ(card(kNewest)->findChild<QQuickItem*>(QStringLiteral("matchCardBody"))->x(), 0)
            << "the card comes home";
        if (swipe.commits) dashboard.controller().deletions().cancelPendingDeletion(kNewest);
        QCoreApplication::processEvents();
    }
}

TEST_F(DashboardViewTest, AClickOnACardLoadsItsMovieAndTheViewFollowsTheLoad) {
    ASSERT_TRUE(showLibrary({kNewest, kOlder, kOldest})) << harness.errors().toStdString();
    harness.click(QmlViewHarness::centreOf(*card(kOlder)));
    DashboardHarness::settle();
    ASSERT_EQ(dashboard.library.selectedMatch(), kOlder);
    EXPECT_EQ(dashboard.factory.madeFor.count(kOlder.url), 1);
    EXPECT_TRUE(dashboard.controller().playback()->requestedIsPlaying()) << "a click plays";
    EXPECT_FALSE(isShown(harness.findItem(QStringLiteral("noSelectionMessage"))));
    EXPECT_TRUE(isShown(harness.findItem(QStringLiteral("loadingOverlay"))));

    dashboard.loads.finishDetail(dashboard.loads.details.size() - 1,
                                 detailWith({event(1, "GameStart", 4)}, 90));
    DashboardHarness::settle();
    EXPECT_EQ(dashboard.controller().movieStateName(), QStringLiteral("ready"));
    EXPECT_TRUE(
        waitUntil([&] { return !isShown(harness.findItem(QStringLiteral("loadingOverlay"))); }, 2000));
    EXPECT_TRUE(isShown(harness.findItem(QStringLiteral("customVideoPlayer"))));
    EXPECT_TRUE(isShown(harness.findItem(QStringLiteral("timelineStrip"))));
}

TEST_F(DashboardViewTest, AnEmptyLibraryShowsNoMatchSelected) {
    QQuickItem* view = showLibrary({});
    ASSERT_TRUE(view) << harness.errors().toStdString();
    QQuickItem* message = harness.findItem(QStringLiteral("noSelectionMessage"));
    ASSERT_TRUE(isShown(message));
    EXPECT_TRUE(message->childItems().size() >= 2);
    EXPECT_EQ(message->childItems().at(1)->property("text").toString(), QStringLiteral("No Match Selected"));
    EXPECT_FALSE(isShown(harness.findItem(QStringLiteral("timelineStrip"))));
    EXPECT_GE(view->window()->minimumWidth(), 0);
    EXPECT_EQ(view->property("minimumWidth").toReal(), 1050);
    EXPECT_EQ(view->property("minimumHeight").toReal(), 520);
}

TEST_F(DashboardViewTest, AMovieThatCannotBeOpenedShowsItsMessageInPlaceOfThePlayer) {
    dashboard.factory.unopenable.insert(kOlder.url);
    ASSERT_TRUE(showLibrary({kNewest, kOlder})) << harness.errors().toStdString();
    harness.click(QmlViewHarness::centreOf(*card(kOlder)));
    DashboardHarness::settle();
    EXPECT_TRUE(isShown(harness.findItem(QStringLiteral("damagedMessage"))));
    EXPECT_FALSE(isShown(harness.findItem(QStringLiteral("customVideoPlayer"))));
    EXPECT_TRUE(
        waitUntil([&] { return !isShown(harness.findItem(QStringLiteral("loadingOverlay"))); }, 2000));
    EXPECT_TRUE(cardValue(kOlder, "isDamaged").toBool());
}

// A right click on a card opens its menu where the pointer is.
TEST_F(DashboardViewTest, ARightClickOnACardOpensItsMenu) {
    QQuickItem* view = showLibrary({kNewest, kOlder});
    ASSERT_TRUE(view) << harness.errors().toStdString();
    const QPointF point = QmlViewHarness::centreOf(*card(kOlder));
    QTest::mouseClick(&harness.window(), Qt::RightButton, Qt::NoModifier, point.toPoint());
    // The menu is a pop-up: an object of the view's tree, drawn in the window's overlay.
    auto* menu = view->findChild<QObject*>(QStringLiteral("cardContextMenu"));
    ASSERT_NE(menu, nullptr);
    EXPECT_TRUE(waitUntil([&] { return menu->property("opened").toBool(); }, 2000)) << "no menu";
    EXPECT_EQ(dashboard.library.selectedMatch(), kNewest) << "a right click selects nothing";
}

// Assistive technology reaches the swipe's actions through the card's accessible interfaces, as a screen
// reader would: the named buttons inside the card, and the card's own Toggle.
TEST_F(DashboardViewTest, TheSwipeActionsAreAccessibleActionsOfTheCard) {
    ASSERT_TRUE(showLibrary({kNewest, kOlder})) << harness.errors().toStdString();
    QAccessible::setActive(true);
    const auto doAction = [](QQuickItem* item, const QString& action) {
        QAccessibleInterface* accessible = item ? QAccessible::queryAccessibleInterface(item) : nullptr;
        if (!accessible || !accessible->actionInterface()) return false;
        if (!accessible->actionInterface()->actionNames().contains(action)) return false;
        accessible->actionInterface()->doAction(action);
        return true;
    };
    const auto nameOf = [](const QString& objectName, QQuickItem* within) -> QString {
        for (QQuickItem* child : within->childItems()) {
            if (child->objectName() != objectName) continue;
            QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(child);
            return accessible ? accessible->text(QAccessible::Name) : QString();
        }
        return {};
    };
    const auto child = [](const QString& objectName, QQuickItem* within) -> QQuickItem* {
        for (QQuickItem* item : within->childItems())
            if (item->objectName() == objectName) return item;
        return nullptr;
    };
    QQuickItem* older = card(kOlder);
    ASSERT_TRUE(older);
    EXPECT_EQ(nameOf(QStringLiteral("leadingSwipeAction"), older), QStringLiteral("Add to Favorites"));
    EXPECT_EQ(nameOf(QStringLiteral("trailingSwipeAction"), older), QStringLiteral("Move to Trash"));

    ASSERT_TRUE(doAction(child(QStringLiteral("leadingSwipeAction"), older),
                         QAccessibleActionInterface::pressAction()));
    EXPECT_TRUE(dashboard.library.isFavorite(kOlder));
    EXPECT_EQ(nameOf(QStringLiteral("leadingSwipeAction"), older), QStringLiteral("Remove from Favorites"));
    ASSERT_TRUE(doAction(older, QAccessibleActionInterface::toggleAction()));
    EXPECT_FALSE(dashboard.library.isFavorite(kOlder)) << "the card's Toggle is the favourite";

    ASSERT_TRUE(doAction(child(QStringLiteral("trailingSwipeAction"), older),
                         QAccessibleActionInterface::pressAction()));
    EXPECT_TRUE(dashboard.controller().deletions().isPending(kOlder.url));
    EXPECT_EQ(nameOf(QStringLiteral("trailingSwipeAction"), older), QStringLiteral("Undo Move to Trash"));
    ASSERT_TRUE(doAction(child(QStringLiteral("trailingSwipeAction"), older),
                         QAccessibleActionInterface::pressAction()));
    EXPECT_FALSE(dashboard.controller().deletions().isPending(kOlder.url));
    EXPECT_TRUE(dashboard.files.trashRequests().isEmpty());
}

// Tab reaches the controller through the application's key filter even though the focus system would
// take it for itself; with Super held it is the desktop's.
TEST_F(DashboardViewTest, HoldingTabShowsTheScoreboardThroughTheApplicationKeyFilter) {
    ASSERT_TRUE(showLibrary({kNewest})) << harness.errors().toStdString();
    ui::DashboardTabKeyFilter filter(dashboard.controller());
    harness.click(QmlViewHarness::centreOf(*card(kNewest)));
    DashboardHarness::settle();
    dashboard.loads.finishDetail(dashboard.loads.details.size() - 1, detailWith({}, 60));
    ASSERT_TRUE(dashboard.controller().playback()->hasPlayer());

    QTest::keyPress(&harness.window(), Qt::Key_Tab);
    EXPECT_TRUE(dashboard.controller().isTabScoreboardVisible());
    EXPECT_TRUE(
        waitUntil([&] { return isShown(harness.findItem(QStringLiteral("scoreboardPanels"))); }, 2000));
    QTest::keyRelease(&harness.window(), Qt::Key_Tab);
    EXPECT_FALSE(dashboard.controller().isTabScoreboardVisible());

    QTest::keyPress(&harness.window(), Qt::Key_Tab, Qt::MetaModifier);
    EXPECT_FALSE(dashboard.controller().isTabScoreboardVisible());
    QTest::keyRelease(&harness.window(), Qt::Key_Tab, Qt::MetaModifier);

    QTest::keyClick(&harness.window(), Qt::Key_O);
    EXPECT_TRUE(dashboard.controller().isScoreboardPinned()) << "other keys reach handleKey";
}

}  // namespace
}  // namespace kestrum::test

#include "DashboardTestSupport.h"

#include <QSignalSpy>

namespace kestrum::test {
namespace {

const MatchVideo kGame = recording(QStringLiteral("/recordings/game.mov"));

class DashboardControllerTest : public testing::Test {
  protected:
    DashboardControllerTest() {
        h.controller().attachTabKeyWindow(&window);
        h.showLibrary({kGame});
        h.loads.finishDetail(0, detailWith({}, 1200));
    }

    bool tab(bool isPress, int modifiers = 0, int key = Qt::Key_Tab, bool isAutoRepeat = false) {
        return h.controller().handleTabKey(&window, key, modifiers, isPress, isAutoRepeat);
    }

    DashboardHarness h;
    QObject window;
};

TEST_F(DashboardControllerTest, TabShowsTheScoreboardWhileHeldWithShiftButNotWithSuper) {
    struct Row {
        const char* name;
        int key;
        int modifiers;
        bool shown;
    };
    const std::vector<Row> rows = {
        {"Tab", Qt::Key_Tab, 0, true},
        {"Shift-Tab", Qt::Key_Backtab, Qt::ShiftModifier, true},
        {"Super-Tab", Qt::Key_Tab, Qt::MetaModifier, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(tab(true, row.modifiers, row.key), row.shown);
        EXPECT_EQ(h.controller().isTabScoreboardVisible(), row.shown);
        EXPECT_EQ(h.controller().showsScoreboard(), row.shown);
        tab(false, row.modifiers, row.key);
        EXPECT_FALSE(h.controller().isTabScoreboardVisible());
    }
}

TEST_F(DashboardControllerTest, TabClosesAPinnedScoreboardAndEscapeClosesBoth) {
    EXPECT_TRUE(h.controller().handleKey(Qt::Key_O, 0, QStringLiteral("o"), false, true, false));
    EXPECT_TRUE(h.controller().isScoreboardPinned());
    EXPECT_TRUE(h.controller().scoreboardChangeAnimates()) << "O eases the scoreboard in";
    tab(true);
    EXPECT_FALSE(h.controller().scoreboardChangeAnimates()) << "Tab acts at once";
    EXPECT_FALSE(h.controller().isScoreboardPinned());
    EXPECT_FALSE(h.controller().isTabScoreboardVisible()) << "Tab going down closed it";
    tab(false);
    EXPECT_FALSE(h.controller().showsScoreboard());

    h.controller().setScoreboardPinned(true);
    h.controller().detachTabKeyWindow();
    h.controller().attachTabKeyWindow(&window);
    tab(false);  // a release without a press changes nothing
    EXPECT_TRUE(h.controller().isScoreboardPinned());
    EXPECT_TRUE(h.controller().handleKey(Qt::Key_Escape, 0, {}, false, true, false));
    EXPECT_FALSE(h.controller().showsScoreboard());
}

TEST_F(DashboardControllerTest, RemovingTheTabMonitorWhileTabIsHeldLetsTheScoreboardGo) {
    tab(true);
    ASSERT_TRUE(h.controller().isTabScoreboardVisible());
    h.controller().detachTabKeyWindow();
    EXPECT_FALSE(h.controller().isTabScoreboardVisible());
}

TEST_F(DashboardControllerTest, WithoutAPlayerTabIsSwallowedButShowsNothingAndPlaybackKeysTravelOn) {
    h.library.setSelectedMatch(std::nullopt);
    DashboardHarness::settle();
    EXPECT_TRUE(tab(true));
    EXPECT_FALSE(h.controller().isTabScoreboardVisible());
    tab(false);
    EXPECT_FALSE(h.controller().handleKey(Qt::Key_Space, 0, QStringLiteral(" "), false, true, false));
    EXPECT_TRUE(h.controller().handleKey(Qt::Key_O, 0, QStringLiteral("o"), false, true, false));
}

TEST_F(DashboardControllerTest, KeysReachThePlayerAndTheTimelineFollows) {
    FakeVideoPlayer& player = *h.player();
    QSignalSpy rateAnimation(h.controller().timeline(), &GameTimelineModel::animationChanged);
    EXPECT_TRUE(h.controller().handleKey(Qt::Key_Equal, 0, QStringLiteral("="), false, true, false));
    EXPECT_EQ(player.defaultRate(), 1.25);
    EXPECT_EQ(h.controller().timeline()->playbackRate(), 1.25);
    EXPECT_TRUE(h.controller().timeline()->isPlaybackRateAnimating());
    EXPECT_TRUE(h.controller().handleKey(Qt::Key_Right, 0, {}, false, true, false));
    EXPECT_EQ(h.controller().timeline()->currentTime(), 5);
    EXPECT_TRUE(h.controller().handleKey(Qt::Key_Delete, 0, {}, false, true, true));
    EXPECT_EQ(h.controller().playback()->currentTime(), 0) << "Delete on the sidebar steps back 10 seconds";
    EXPECT_EQ(h.controller().playback()->toastTitle(), QStringLiteral("Back 10 seconds"));
    EXPECT_EQ(h.library.matches().size(), 1u) << "and deletes nothing";

    h.controller().timeline()->seek(300);  // a click on the track
    EXPECT_EQ(h.controller().playback()->currentTime(), 300);
    EXPECT_EQ(h.controller().scoreboard()->currentTime(), 300);
    EXPECT_TRUE(h.controller().acceptsPlaybackKeys());
}

TEST_F(DashboardControllerTest, TheGuideButtonPresentsTheGuide) {
    EXPECT_FALSE(h.controller().isGuidePresented());
    h.controller().sidebar()->presentGuide();
    EXPECT_TRUE(h.controller().isGuidePresented());
}

}  // namespace
}  // namespace kestrum::test

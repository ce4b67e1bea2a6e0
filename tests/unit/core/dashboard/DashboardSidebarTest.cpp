#include "DashboardTestSupport.h"
#include "core/notifications/RecordingNotifications.h"

#include <QSignalSpy>

namespace kestrum::test {
namespace {

MatchVideo entry(const char* name, qint64 secondsAgo, const char* mode, const char* role,
                 const char* champion) {
    MatchVideo match = recording(QStringLiteral("/recordings/") + QString::fromLatin1(name), secondsAgo);
    match.gameMode = mode;
    match.role = role;
    match.champion = champion;
    return match;
}

// Four recordings: three in one evening (50 minutes apart), one two hours before them.
class DashboardSidebarTest : public testing::Test {
  protected:
    DashboardSidebarTest() {
        h.library.setSessionHeaderContext([] { return QDateTime(QDate(2026, 3, 14), QTime(23, 0)); },
                                          QLocale(QLocale::English, QLocale::UnitedStates));
        h.controller();
        h.showLibrary(all);
    }

    DashboardSidebarModel& sidebar() { return *h.controller().sidebar(); }
    MatchCardListModel& cards() { return *sidebar().cards(); }
    QString selectedPath() const {
        return h.library.selectedMatch() ? h.library.selectedMatch()->url : QString();
    }

    const MatchVideo a = entry("a.mov", 0, "CLASSIC", "MIDDLE", "Ahri");
    const MatchVideo b = entry("b.mov", 3000, "ARAM", "BOTTOM", "Jinx");
    const MatchVideo c = entry("c.mov", 6000, "CLASSIC", "TOP", "Garen");
    const MatchVideo d = entry("d.mov", 14000, "CLASSIC", "MIDDLE", "Lux");
    const std::vector<MatchVideo> all = {a, b, c, d};
    DashboardHarness h;
};

TEST_F(DashboardSidebarTest, UpAndDownMoveOneCardAndStopAtTheEnds) {
    struct Row {
        const char* key;
        int qtKey;
        QString expected;
        bool moves;
    };
    const std::vector<Row> rows = {
        {"up at the top stays", Qt::Key_Up, a.url, false},
        {"down", Qt::Key_Down, b.url, true},
        {"down", Qt::Key_Down, c.url, true},
        {"down", Qt::Key_Down, d.url, true},
        {"down at the bottom stays", Qt::Key_Down, d.url, false},
        {"up", Qt::Key_Up, c.url, true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.key);
        const quint64 scrollsBefore = sidebar().scrollSerial();
        EXPECT_TRUE(h.controller().handleKey(row.qtKey, 0, {}, false, true, true));
        EXPECT_EQ(selectedPath(), row.expected);
        EXPECT_EQ(sidebar().scrollSerial() - scrollsBefore, row.moves ? 1u : 0u);
        if (row.moves) {
            EXPECT_EQ(sidebar().scrollTargetKind(), QStringLiteral("match"));
            EXPECT_EQ(sidebar().scrollTargetRow(), cards().rowOf(row.expected));
        }
        EXPECT_FALSE(h.controller().playback()->requestedIsPlaying()) << "a move does not play";
    }
}

TEST_F(DashboardSidebarTest, WithTheSelectionFilteredAwayUpAndDownStartFromTheFirstCard) {
    for (const bool up : {true, false}) {
        h.library.setSelectedGameModeFilter(std::nullopt);
        h.select(b);
        h.library.setSelectedGameModeFilter(std::string("CLASSIC"));
        ASSERT_EQ(selectedPath(), b.url) << "a filter alone leaves the selection";
        ASSERT_EQ(cards().rowOf(b.url), -1);
        if (up) {
            sidebar().moveUp();
        } else {
            sidebar().moveDown();
        }
        EXPECT_EQ(selectedPath(), a.url);
    }
}

TEST_F(DashboardSidebarTest, AClickPlaysUnlessTheCardIsAlreadySelected) {
    h.loads.finishDetail(0, detailWith({}, 100));
    const std::size_t loadsBefore = h.loads.details.size();
    sidebar().clickCard(cards().rowOf(a.url));  // already selected
    DashboardHarness::settle();
    EXPECT_EQ(h.loads.details.size(), loadsBefore);
    EXPECT_FALSE(h.controller().playback()->requestedIsPlaying());

    sidebar().clickCard(cards().rowOf(c.url));
    EXPECT_EQ(selectedPath(), c.url);
    EXPECT_TRUE(h.controller().playback()->requestedIsPlaying());
    DashboardHarness::settle();
    h.loads.finishDetail(h.loads.details.size() - 1, detailWith({}, 100));
    EXPECT_EQ(h.player()->timeControlStatus(), VideoPlayerTimeControlStatus::playing);
}

TEST_F(DashboardSidebarTest, SwitchingCollectionDropsTheIntentToPlayAndScrollsToTheTop) {
    h.library.toggleFavorite(c);
    h.controller().selection().requestAutoplay(c.url);
    h.controller().playback()->setRequestedIsPlaying(true);
    sidebar().selectCollection(1);
    EXPECT_EQ(h.library.selectedCollection(), RecordingLibraryCollection::favorites);
    EXPECT_EQ(h.controller().selection().autoplayRequestedMatchID(), std::nullopt);
    EXPECT_FALSE(h.controller().playback()->requestedIsPlaying());
    EXPECT_EQ(sidebar().scrollTargetKind(), QStringLiteral("top"));
    EXPECT_EQ(cards().count(), 1);
    EXPECT_EQ(sidebar().sectionTitle(), QStringLiteral("Favorite Recordings"));
    EXPECT_EQ(sidebar().sectionSymbol(), QStringLiteral("star"));
    EXPECT_EQ(sidebar().sectionCountText(), QStringLiteral("1"));
    sidebar().selectCollection(0);
    EXPECT_EQ(sidebar().sectionTitle(), QStringLiteral("Recordings"));
    EXPECT_EQ(sidebar().sectionSymbol(), QStringLiteral("rectangle.stack"));
    EXPECT_EQ(sidebar().sectionCountText(), QStringLiteral("4"));
    EXPECT_EQ(sidebar().collections()->value(1, QStringLiteral("countText")).toString(), QStringLiteral("1"));
}

TEST_F(DashboardSidebarTest, CardsAreGroupedInSessionsWithOneSectionEach) {
    ASSERT_EQ(cards().count(), 4);
    std::vector<QString> sections;
    for (int row = 0; row < cards().count(); ++row)
        sections.push_back(cards().value(row, "section").toString());
    EXPECT_EQ(sections[0], sections[1]);
    EXPECT_EQ(sections[1], sections[2]) << "50 minutes apart: one evening";
    EXPECT_NE(sections[2], sections[3]);
    EXPECT_TRUE(sections[0].startsWith(QStringLiteral("Today")));
    EXPECT_EQ(cards().value(0, "isSelected").toBool(), true);
    EXPECT_EQ(cards().value(0, "roleLabel").toString(), QStringLiteral("Mid"));
    EXPECT_EQ(cards().value(0, "mapArtName").toString(), QStringLiteral("map_summoners_rift"));
    EXPECT_EQ(cards().value(0, "championIdentifier").toString(), QStringLiteral("Ahri"));
    EXPECT_EQ(cards().value(0, "kdaLine").toString(), QStringLiteral("–/–/–"));
    EXPECT_EQ(cards().value(0, "leadingSymbol").toString(), QStringLiteral("star.fill"));
    EXPECT_EQ(cards().value(0, "trailingActionName").toString(), QStringLiteral("Move to Trash"));
    EXPECT_EQ(cards().championIdentifiers(), (QStringList{"Ahri", "Jinx", "Garen", "Lux"}));

    QSignalSpy resets(&cards(), &QAbstractItemModel::modelReset);
    QSignalSpy changes(&cards(), &QAbstractItemModel::dataChanged);
    h.select(b);
    EXPECT_EQ(resets.count(), 0) << "a new selection reports rows, it does not rebuild the list";
    EXPECT_EQ(changes.count(), 2);
    EXPECT_TRUE(cards().value(1, "isSelected").toBool());
    h.library.toggleFavorite(b);
    EXPECT_EQ(resets.count(), 0);
    EXPECT_EQ(cards().value(1, "leadingSymbol").toString(), QStringLiteral("star.slash.fill"));
    EXPECT_EQ(cards().value(1, "favoriteHelp").toString(), QStringLiteral("Remove from Favorites"));
}

TEST_F(DashboardSidebarTest, FilterChoicesComeFromTheCollectionAndSetTheLibrarysFilters) {
    ReviewRowListModel& choices = *sidebar().filterChoices();
    QStringList labels;
    for (int row = 0; row < choices.count(); ++row) labels << choices.value(row, "label").toString();
    EXPECT_EQ(labels, (QStringList{"All Modes", "ARAM", "Classic", "All Lanes", "Top", "Mid", "Bot",
                                   "All Champions", "Ahri", "Garen", "Jinx", "Lux"}));
    sidebar().chooseFilter(static_cast<int>(labels.indexOf("Mid")));
    EXPECT_EQ(h.library.selectedLaneFilter(), std::optional<std::string>("MIDDLE"));
    EXPECT_EQ(cards().count(), 2);
    EXPECT_TRUE(sidebar().hasActiveFilters());
    EXPECT_TRUE(choices.value(static_cast<int>(labels.indexOf("Mid")), "isSelected").toBool());
    sidebar().chooseFilter(static_cast<int>(labels.indexOf("All Lanes")));
    EXPECT_EQ(h.library.selectedLaneFilter(), std::nullopt);
    EXPECT_EQ(cards().count(), 4);
    EXPECT_FALSE(sidebar().hasActiveFilters());
}

TEST_F(DashboardSidebarTest, ASwipeOnACardFavouritesOrMarksForDeletion) {
    const int row = cards().rowOf(c.url);
    sidebar().pressCard(row, 100, 20);
    sidebar().dragCard(row, 130, 22);
    EXPECT_EQ(cards().value(row, "swipeOffset").toDouble(), 30);
    EXPECT_EQ(cards().value(row, "swipeSide").toString(), QStringLiteral("leading"));
    sidebar().releaseCard(row, 160, 22);
    h.clock.advance(std::chrono::milliseconds(100));
    EXPECT_TRUE(h.library.isFavorite(c));

    sidebar().pressCard(row, 100, 20);
    sidebar().releaseCard(row, 40, 20);
    h.clock.advance(std::chrono::milliseconds(100));
    EXPECT_TRUE(cards().value(row, "isPendingDeletion").toBool());
    h.clock.advance(std::chrono::seconds(1));
    DashboardHarness::settle();
    EXPECT_EQ(h.controller().deletions().isPending(c.url), true);
    sidebar().performSwipeAction(row, QStringLiteral("trailing"));  // the accessibility action undoes it
    EXPECT_FALSE(h.controller().deletions().isPending(c.url));
}

// Without a swipe: the card's accessible actions, each named for what it will do now, run the swipe's
// own commands.
TEST_F(DashboardSidebarTest, TheSwipeActionsAreNamedActionsThatDoWhatTheirNamesSay) {
    struct Step {
        const char* side;
        bool favoriteAfter;
        bool pendingAfter;
        const char* leadingNameAfter;
        const char* trailingNameAfter;
    };
    const Step steps[] = {
        {"leading", true, false, "Remove from Favorites", "Move to Trash"},
        {"leading", false, false, "Add to Favorites", "Move to Trash"},
        {"trailing", false, true, "Add to Favorites", "Undo Move to Trash"},
        {"trailing", false, false, "Add to Favorites", "Move to Trash"},
    };
    const int row = cards().rowOf(c.url);
    EXPECT_EQ(cards().value(row, "leadingActionName").toString(), QStringLiteral("Add to Favorites"));
    EXPECT_EQ(cards().value(row, "trailingActionName").toString(), QStringLiteral("Move to Trash"));
    for (const Step& step : steps) {
        SCOPED_TRACE(step.side);
        sidebar().performSwipeAction(row, QString::fromLatin1(step.side));
        DashboardHarness::settle();
        EXPECT_EQ(h.library.isFavorite(c), step.favoriteAfter);
        EXPECT_EQ(h.controller().deletions().isPending(c.url), step.pendingAfter);
        EXPECT_EQ(cards().value(row, "leadingActionName").toString(),
                  QString::fromUtf8(step.leadingNameAfter));
        EXPECT_EQ(cards().value(row, "trailingActionName").toString(),
                  QString::fromUtf8(step.trailingNameAfter));
    }
    h.clock.advance(std::chrono::seconds(6));
    DashboardHarness::settle();
    EXPECT_TRUE(h.files.trashRequests().isEmpty()) << "an undone deletion trashes nothing";
}

TEST_F(DashboardSidebarTest, TheLibraryRefreshesOnControlROnTheSavedNotificationAndOnANewFolder) {
    h.controller().appear();  // the first appearance refreshes
    const MatchVideo e = entry("e.mov", -60, "CLASSIC", "TOP", "Garen");
    h.nextScan = std::vector<MatchVideo>{e, a, b, c, d};
    h.notifications.post(RecordingNotifications::recordingSaved, {});
    DashboardHarness::settle();
    EXPECT_EQ(cards().count(), 5);

    h.nextScan = std::vector<MatchVideo>{a};
    EXPECT_TRUE(
        h.controller().handleKey(Qt::Key_R, Qt::ControlModifier, QStringLiteral("\x12"), false, true, false));
    DashboardHarness::settle();
    EXPECT_EQ(cards().count(), 1);

    h.nextScan = std::vector<MatchVideo>{b, c};
    h.controller().setRecordingsFolder(QStringLiteral("/elsewhere"));
    DashboardHarness::settle();
    EXPECT_EQ(h.library.loadedFolderPath(), QStringLiteral("/elsewhere"));
    EXPECT_EQ(cards().count(), 2);

    h.scanError = QStringLiteral("The folder “elsewhere” doesn’t exist.");
    h.controller().refreshLibrary();
    DashboardHarness::settle();
    EXPECT_EQ(h.controller().fileActionAlertMessage(),
              QStringLiteral(
                  "The recordings folder could not be refreshed:\n\nThe folder “elsewhere” doesn’t exist."));
    EXPECT_EQ(cards().count(), 2) << "a failed refresh changes nothing else";
    EXPECT_EQ(sidebar().emptyMessage(), QStringLiteral("The folder “elsewhere” doesn’t exist."));
}

}  // namespace
}  // namespace kestrum::test

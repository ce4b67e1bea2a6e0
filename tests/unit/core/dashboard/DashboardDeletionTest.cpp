#include "DashboardTestSupport.h"
#include "core/dashboard/DashboardContextMenu.h"
#include "core/telemetry/SessionDocumentBuilder.h"

#include <QFile>

namespace kestrum::test {
namespace {

using namespace std::chrono_literals;

// Deletions on fake file actions and the manual clock; the recordings are real files of a temporary
// folder, so the sidecar's presence is the file system's answer.
class DashboardDeletionTest : public testing::Test {
  protected:
    DashboardDeletionTest() : h(folder.path()) {
        for (const QString& name : {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}) {
            const QString movie = folder.filePath(name + QStringLiteral(".mov"));
            EXPECT_TRUE(writeFileBytes(movie, "movie"));
            EXPECT_TRUE(writeFileBytes(sessionDocumentPath(movie), "{}"));
            matches.push_back(recording(movie, 600 * static_cast<qint64>(matches.size())));
        }
        h.controller();
        h.showLibrary(matches);
        h.nextScan = matches;
    }

    DashboardDeletionScheduler& deletions() { return h.controller().deletions(); }
    MatchCardListModel& cards() { return *h.controller().sidebar()->cards(); }
    QVariant card(const MatchVideo& match, const char* role) {
        return cards().value(cards().rowOf(match.url), QString::fromLatin1(role));
    }

    QTemporaryDir folder;
    std::vector<MatchVideo> matches;
    DashboardHarness h;
};

TEST_F(DashboardDeletionTest, TheSameSwipeBeforeTheEndOfTheUndoKeepsTheFile) {
    const MatchVideo& a = matches[0];
    deletions().handleDeletionAction(a);
    EXPECT_TRUE(card(a, "isPendingDeletion").toBool());
    EXPECT_EQ(card(a, "pendingCountdown").toString(), QStringLiteral("5"));
    EXPECT_EQ(card(a, "trailingSymbol").toString(), QStringLiteral("arrow.uturn.backward"));
    h.clock.advance(4999ms);
    deletions().handleDeletionAction(a);
    h.clock.advance(10s);
    EXPECT_TRUE(h.files.trashRequests().isEmpty());
    EXPECT_FALSE(card(a, "isPendingDeletion").toBool());
    EXPECT_EQ(card(a, "trailingSymbol").toString(), QStringLiteral("trash.fill"));
    EXPECT_EQ(h.library.matches().size(), 3u);
}

TEST_F(DashboardDeletionTest, TheCountdownRunsDownOnceASecondAndTheFilesGoAtFive) {
    const MatchVideo& b = matches[1];
    h.nextScan = std::vector<MatchVideo>{matches[0], matches[2]};  // what the folder holds afterwards
    deletions().handleDeletionAction(b);
    std::vector<QString> shown;
    for (int second = 0; second < 5; ++second) {
        shown.push_back(card(b, "pendingCountdown").toString());
        h.clock.advance(1s);
    }
    EXPECT_EQ(shown, (std::vector<QString>{"5", "4", "3", "2", "1"}));
    EXPECT_EQ(h.files.trashedPaths(), (QStringList{b.url, sessionDocumentPath(b.url)}));
    DashboardHarness::settle();
    EXPECT_EQ(cards().rowOf(b.url), -1) << "the card left the list";
    EXPECT_EQ(h.library.matches().size(), 2u);
    EXPECT_FALSE(h.controller().isFileActionAlertPresented());
}

TEST_F(DashboardDeletionTest, TwoDeletionsRunIndependentlyEachWithItsOwnDeadline) {
    deletions().handleDeletionAction(matches[0]);
    h.clock.advance(2s);
    deletions().handleDeletionAction(matches[2]);
    ASSERT_TRUE(deletions().deadline(matches[0].url) && deletions().deadline(matches[2].url));
    EXPECT_EQ(*deletions().deadline(matches[2].url) - *deletions().deadline(matches[0].url), 2s);
    h.clock.advance(3s);
    EXPECT_EQ(h.files.trashedPaths().size(), 2);
    EXPECT_EQ(h.files.trashedPaths().front(), matches[0].url);
    EXPECT_TRUE(deletions().isPending(matches[2].url));
    EXPECT_EQ(card(matches[2], "pendingCountdown").toString(), QStringLiteral("2"));
    h.clock.advance(2s);
    EXPECT_EQ(h.files.trashedPaths().size(), 4);
    EXPECT_FALSE(deletions().isPending(matches[2].url));
}

TEST_F(DashboardDeletionTest, ARecordingWithoutSidecarGoesToTheTrashWithoutError) {
    ASSERT_TRUE(QFile::remove(sessionDocumentPath(matches[0].url)));
    deletions().moveRecordingsToTrash({matches[0]});
    EXPECT_EQ(h.files.trashRequests(), QStringList{matches[0].url});
    EXPECT_FALSE(h.controller().isFileActionAlertPresented());
}

TEST_F(DashboardDeletionTest, AFailureShowsTheAlertAndLosesNothing) {
    struct Row {
        const char* name;
        bool movieFails;
        bool sidecarFails;
        const char* message;  // the alert's message, or empty for none
        bool leavesTheList;
    };
    const std::vector<Row> rows = {
        {"the movie stays, and its sidecar with it", true, false,
         "Some recordings could not be moved to Trash:\n\na.mov: Permission denied", false},
        {"the sidecar stays", false, true,
         "Some recordings could not be moved to Trash:\n\na.json: Permission denied", true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        h.files.trashFailures.clear();
        if (row.movieFails)
            h.files.trashFailures[matches[0].url] = Error::withDescription("Permission denied");
        if (row.sidecarFails) {
            h.files.trashFailures[sessionDocumentPath(matches[0].url)] =
                Error::withDescription("Permission denied");
        }
        h.controller().dismissFileActionAlert();
        if (row.leavesTheList) h.nextScan = std::vector<MatchVideo>{matches[1], matches[2]};
        deletions().moveRecordingsToTrash({matches[0]});
        DashboardHarness::settle();
        EXPECT_TRUE(h.controller().isFileActionAlertPresented());
        EXPECT_EQ(h.controller().fileActionAlertTitle(), QStringLiteral("Couldn’t Complete File Action"));
        EXPECT_EQ(h.controller().fileActionAlertMessage(), QString::fromUtf8(row.message));
        EXPECT_EQ(cards().rowOf(matches[0].url) >= 0, !row.leavesTheList);
        EXPECT_FALSE(h.files.trashRequests().contains(sessionDocumentPath(matches[0].url)) && row.movieFails);
    }
    h.controller().dismissFileActionAlert();
    EXPECT_FALSE(h.controller().isFileActionAlertPresented());
    EXPECT_EQ(h.controller().fileActionAlertMessage(), QStringLiteral("Unknown error"));
}

TEST_F(DashboardDeletionTest, ASwipeAfterTheCommitSchedulesAgainAndTheTrashThenNamesTheGoneFile) {
    const MatchVideo& a = matches[0];
    deletions().handleDeletionAction(a);
    h.clock.advance(5s);
    ASSERT_EQ(h.files.trashedPaths().size(), 2);
    h.files.trashError = Error::withDescription("No such file or directory");
    deletions().handleDeletionAction(a);  // the card was still on screen for one turn
    h.clock.advance(5s);
    DashboardHarness::settle();
    EXPECT_EQ(
        h.controller().fileActionAlertMessage(),
        QStringLiteral("Some recordings could not be moved to Trash:\n\na.mov: No such file or directory"));
}

TEST_F(DashboardDeletionTest, TheWindowGoingDropsPendingDeletionsAndTheRecordingsStay) {
    deletions().handleDeletionAction(matches[0]);
    deletions().handleDeletionAction(matches[1]);
    h.controller().disappear();
    EXPECT_FALSE(card(matches[0], "isPendingDeletion").toBool());
    h.clock.advance(10s);
    EXPECT_TRUE(h.files.trashRequests().isEmpty());
}

TEST_F(DashboardDeletionTest, TheContextMenuTrashesAtOnceAndItsOtherEntriesReachTheDesktop) {
    const int row = cards().rowOf(matches[1].url);
    const QVariantList menu = card(matches[1], "contextMenu").toList();
    ASSERT_EQ(menu.size(), 5);
    QStringList labels;
    for (const QVariant& entry : menu) labels << entry.toMap().value(QStringLiteral("label")).toString();
    EXPECT_EQ(labels, (QStringList{"Add to Favorites", "Open Recording", "Show in Folder", "Copy Path",
                                   "Move to Trash"}));
    DashboardSidebarModel& sidebar = *h.controller().sidebar();
    sidebar.triggerContextAction(row, static_cast<int>(DashboardContextAction::openRecording));
    sidebar.triggerContextAction(row, static_cast<int>(DashboardContextAction::showInFolder));
    sidebar.triggerContextAction(row, static_cast<int>(DashboardContextAction::copyPath));
    sidebar.triggerContextAction(row, static_cast<int>(DashboardContextAction::toggleFavorite));
    EXPECT_EQ(h.files.openedPaths(), QStringList{matches[1].url});
    EXPECT_EQ(h.files.revealedPaths(), QStringList{matches[1].url});
    EXPECT_EQ(h.files.copiedTexts(), QStringList{matches[1].url});
    EXPECT_TRUE(card(matches[1], "isFavorite").toBool());
    EXPECT_EQ(card(matches[1], "contextMenu").toList().front().toMap().value("label").toString(),
              QStringLiteral("Remove from Favorites"));
    sidebar.triggerContextAction(row, static_cast<int>(DashboardContextAction::moveToTrash));
    EXPECT_EQ(h.files.trashedPaths(), (QStringList{matches[1].url, sessionDocumentPath(matches[1].url)}))
        << "no undo window";
}

TEST_F(DashboardDeletionTest, TrashingTheRecordingOnShowPausesItsPlayerFirst) {
    h.loads.finishDetail(0, detailWith({}, 100));
    FakeVideoPlayer& player = *h.player();
    player.play();
    ASSERT_EQ(h.library.selectedMatch()->url, matches[0].url);
    deletions().moveRecordingsToTrash({matches[0]});
    EXPECT_EQ(player.timeControlStatus(), VideoPlayerTimeControlStatus::paused);
}

}  // namespace
}  // namespace kestrum::test

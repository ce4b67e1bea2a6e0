// Deletions of the review window with the real freedesktop file actions and the real library scanner:
// the recordings sit in the test's private home, whose XDG trash is on the same file system.
#include "base/async/ManualClock.h"
#include "core/dashboard/DashboardController.h"
#include "core/telemetry/SessionDocumentBuilder.h"
#include "platform/fake/FakeVideoPlayer.h"
#include "platform/linux/freedesktop/FreedesktopFileActions.h"
#include "support/QtPrinters.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <memory>

namespace kestrum::test {
namespace {

using namespace std::chrono_literals;

class PlayerFactory final : public VideoPlayerFactory {
  public:
    std::unique_ptr<VideoPlayer> makePlayer(const QString& moviePath) override {
        return std::make_unique<FakeVideoPlayer>(moviePath, 60);
    }
};

QString trashFolder() {
    return qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/Trash");
}

class DashboardTrashTest : public testing::Test {
  protected:
    void SetUp() override {
        const QString name =
            QString::fromLatin1(testing::UnitTest::GetInstance()->current_test_info()->name());
        folder = testHomeDirectory() + QStringLiteral("/Videos/Kestrum-") + name;
        ASSERT_TRUE(QDir().mkpath(folder));
        ASSERT_EQ(QFileInfo(folder).absoluteDir().path().left(5), trashFolder().left(5));
    }

    void TearDown() override {
        controller.reset();
        for (int turn = 0; turn < 4; ++turn) QCoreApplication::processEvents();
    }

    // A recording whose name the scanner reads; with or without its session document.
    QString addRecording(const QString& stem, bool withSidecar) {
        const QString movie = folder + QLatin1Char('/') + stem + QStringLiteral(".mov");
        EXPECT_TRUE(writeFileBytes(movie, "not really a movie"));
        if (withSidecar) {
            EXPECT_TRUE(writeFileBytes(sessionDocumentPath(movie), "{}"));
        }
        return movie;
    }

    void open(int expectedCount) {
        controller = std::make_unique<DashboardController>(
            DashboardController::Services{defaults, clock, players, fileActions, notifications}, folder);
        controller->appear();
        ASSERT_TRUE(
            waitUntil([&] { return controller->library().matches().size() == std::size_t(expectedCount); }));
    }

    MatchVideo entryOf(const QString& moviePath) {
        for (const MatchVideo& match : controller->library().matches()) {
            if (match.url == moviePath) return match;
        }
        ADD_FAILURE() << "not in the library: " << moviePath.toStdString();
        return {};
    }

    bool listed(const QString& moviePath) const {
        const auto& matches = controller->library().matches();
        return std::any_of(matches.begin(), matches.end(),
                           [&](const MatchVideo& m) { return m.url == moviePath; });
    }

    static bool inTrash(const QString& path) {
        const QString name = QFileInfo(path).fileName();
        return QFile::exists(trashFolder() + QStringLiteral("/files/") + name) &&
               QFile::exists(trashFolder() + QStringLiteral("/info/") + name + QStringLiteral(".trashinfo"));
    }

    QString folder;
    UserDefaults defaults{testConfigDirectory() + QStringLiteral("/dashboard-trash.json")};
    ManualClock clock;
    PlayerFactory players;
    FreedesktopFileActions fileActions{[](const QUrl&) { return false; }};
    NotificationCenter notifications;
    std::unique_ptr<DashboardController> controller;
};

TEST_F(DashboardTrashTest, ASwipedRecordingLandsInTheTrashWithItsSidecarAfterTheUndoWindow) {
    const QString movie = addRecording(QStringLiteral("2026-03-14_21-07-55_CLASSIC_Ahri_MIDDLE"), true);
    const QString kept = addRecording(QStringLiteral("2026-03-14_20-07-55_ARAM_Lux_BOTTOM"), true);
    open(2);
    controller->deletions().handleDeletionAction(entryOf(movie));
    clock.advance(4s);
    EXPECT_TRUE(QFile::exists(movie)) << "still inside the undo window";
    clock.advance(1s);
    EXPECT_FALSE(QFile::exists(movie));
    EXPECT_FALSE(QFile::exists(sessionDocumentPath(movie)));
    EXPECT_TRUE(inTrash(movie));
    EXPECT_TRUE(inTrash(sessionDocumentPath(movie)));
    EXPECT_FALSE(listed(movie));
    ASSERT_TRUE(waitUntil([&] { return controller->library().matches().size() == 1; }))
        << "the refresh agrees";
    EXPECT_TRUE(listed(kept));
    EXPECT_TRUE(QFile::exists(kept));
    EXPECT_FALSE(controller->isFileActionAlertPresented());
}

TEST_F(DashboardTrashTest, UndoWithinFiveSecondsKeepsTheFiles) {
    const QString movie = addRecording(QStringLiteral("2026-03-15_10-00-00_CLASSIC_Garen_TOP"), true);
    open(1);
    const MatchVideo match = entryOf(movie);
    controller->deletions().handleDeletionAction(match);
    clock.advance(4900ms);
    controller->deletions().handleDeletionAction(match);
    clock.advance(10s);
    EXPECT_TRUE(QFile::exists(movie));
    EXPECT_TRUE(QFile::exists(sessionDocumentPath(movie)));
    EXPECT_FALSE(inTrash(movie));
    EXPECT_TRUE(listed(movie));
}

TEST_F(DashboardTrashTest, ARecordingWithoutSidecarGoesToTheTrashWithoutError) {
    const QString movie = addRecording(QStringLiteral("2026-03-16_10-00-00_CLASSIC_Jinx_BOTTOM"), false);
    open(1);
    controller->deletions().moveRecordingsToTrash({entryOf(movie)});
    EXPECT_TRUE(inTrash(movie));
    EXPECT_FALSE(controller->isFileActionAlertPresented());
}

// The home trash cannot be made (a plain file stands where its folder goes): the alert names the movie,
// and the movie, its sidecar and its card all stay.
TEST_F(DashboardTrashTest, AFailureShowsTheAlertAndLosesNothing) {
    const QString movie = addRecording(QStringLiteral("2026-03-17_10-00-00_CLASSIC_Lux_UTILITY"), true);
    open(1);
    const QString trash = trashFolder();
    const QString aside = trash + QStringLiteral(".aside");
    QDir().rename(trash, aside);
    ASSERT_TRUE(writeFileBytes(trash, "in the way"));
    controller->deletions().moveRecordingsToTrash({entryOf(movie)});
    QFile::remove(trash);
    QDir().rename(aside, trash);

    EXPECT_TRUE(QFile::exists(movie));
    EXPECT_TRUE(QFile::exists(sessionDocumentPath(movie)));
    EXPECT_FALSE(QDir::current().exists(QStringLiteral("files"))) << "nothing went to the working directory";
    ASSERT_TRUE(controller->isFileActionAlertPresented());
    EXPECT_EQ(controller->fileActionAlertTitle(), QStringLiteral("Couldn’t Complete File Action"));
    const QString message = controller->fileActionAlertMessage();
    EXPECT_TRUE(message.startsWith(QStringLiteral("Some recordings could not be moved to Trash:\n\n") +
                                   QFileInfo(movie).fileName() + QStringLiteral(": ")))
        << message.toStdString();
    EXPECT_GT(message.size(), QStringLiteral("Some recordings could not be moved to Trash:\n\n").size() +
                                  QFileInfo(movie).fileName().size() + 2)
        << "the reason is given";
    for (int turn = 0; turn < 10; ++turn) QCoreApplication::processEvents();
    EXPECT_TRUE(listed(movie));
    controller->dismissFileActionAlert();
    EXPECT_FALSE(controller->isFileActionAlertPresented());
}

}  // namespace
}  // namespace kestrum::test

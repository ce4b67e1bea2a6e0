// The tray application through a game, as a user meets it: the icon in a real X11 tray (trayer) changes
// when the recording starts and comes back when the game is over, a click on it opens the panel, whose
// "Open Dashboard" opens the review window while the game records; and a termination request during a
// recording (the desktop's SIGTERM) still saves the movie and its document and ends with status 0.
#include "EndToEndRig.h"
#include "support/MovieDecoding.h"
#include "support/TestEnvironment.h"
#include "support/X11Desktop.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QImage>

namespace kestrum::test {
namespace {

const QString kScripts = QStringLiteral(KESTRUM_SOURCE_DIR "/tests/e2e/scripts/");
constexpr int kPanelWidth = 300;
constexpr int kReviewWindowMinimumWidth = 1050;

class TrayThroughAGame : public testing::Test {
  public:
    void SetUp() override {
        ASSERT_TRUE(rig_.start()) << rig_.failure().toStdString();
        if (!rig_.hasTray()) {
            if (qEnvironmentVariable("KESTRUM_REQUIRE_MEDIA") == QLatin1String("1"))
                FAIL() << "trayer is missing";
            GTEST_SKIP() << "trayer is not installed (scripts/install-deps.sh installs it)";
        }
        ASSERT_TRUE(rig_.waitForKestrumLine(QStringLiteral("Kestrum is in the tray"), 20000));
        tray_ = visibleWindow(QStringLiteral("^trayer$"), true);
        ASSERT_FALSE(tray_.isEmpty());
    }
    void TearDown() override {
        rig_.stopKestrum();
        if (!HasFailure()) return;
        std::printf("--- kestrum:\n%s\n--- capture log:\n%s\n", qPrintable(rig_.kestrumOutput().join('\n')),
                    qPrintable(rig_.captureLogMessages().join('\n')));
    }

    // The tray's pixels: Kestrum's icon is its only client.
    QImage trayPixels() const { return grabScreenRegion(tray_).value_or(QImage()); }

    // Clicks along the tray from its right end, where the icon sits, until the panel shows.
    QRect openPanel() {
        QRect panel;
        for (int x = tray_.right() - 11; x > tray_.left() && panel.isEmpty(); x -= 22) {
            clickAt({x, tray_.center().y()});
            waitUntil(
                [&] { return (panel = visibleWindow(QStringLiteral("^Kestrum$"))).width() == kPanelWidth; },
                2000);
            if (panel.width() != kPanelWidth) panel = {};
        }
        return panel;
    }

    EndToEndRig rig_;
    QRect tray_;
};

TEST_F(TrayThroughAGame, theIconFollowsTheGameAndThePanelOpensTheReviewWindowWhileItRecords) {
    const QImage waiting = trayPixels();
    ASSERT_FALSE(waiting.isNull()) << "the tray's pixels could not be read";
    ASSERT_TRUE(rig_.startGame(kScripts + QStringLiteral("short.json")));
    ASSERT_TRUE(rig_.waitForKestrumLine(QStringLiteral("Kestrum status: Recording"), 30000));
    EXPECT_TRUE(waitUntil([&] { return trayPixels() != waiting; }, 5000)) << "the icon did not change";

    const QRect panel = openPanel();
    ASSERT_FALSE(panel.isEmpty()) << "a click on the tray opened no panel";
    // "Open Dashboard" is the panel's first command under its title row: try downwards from there until
    // the review window shows (a click on a line of text does nothing).
    QRect review;
    for (int y = panel.top() + 44; y < panel.top() + 140 && review.isEmpty(); y += 8) {
        clickAt({panel.center().x(), y});
        waitUntil(
            [&] {
                review = visibleWindow(QStringLiteral("^Kestrum$"));
                return review.width() >= kReviewWindowMinimumWidth;
            },
            700);
        if (review.width() < kReviewWindowMinimumWidth) review = {};
    }
    ASSERT_FALSE(review.isEmpty()) << "\"Open Dashboard\" opened no review window";
    EXPECT_TRUE(rig_.waitForKestrumLine(QStringLiteral("Kestrum status: Recording"), 100))
        << "the recording stopped as the review window opened";

    ASSERT_TRUE(rig_.waitForGameEnd(60000));
    ASSERT_TRUE(rig_.waitForKestrumLine(QStringLiteral("Kestrum status: Idle"), 30000));
    EXPECT_TRUE(waitUntil([&] { return trayPixels() == waiting; }, 5000))
        << "the icon did not come back to its waiting image";
    EXPECT_TRUE(rig_.waitForSavedRecording(60000));
}

TEST_F(TrayThroughAGame, aTerminationDuringARecordingSavesTheMovieAndItsDocumentAndEndsCleanly) {
    ASSERT_TRUE(rig_.startGame(kScripts + QStringLiteral("short.json")));
    ASSERT_TRUE(rig_.waitForKestrumLine(QStringLiteral("timeline starting at relative"), 30000));
    processEventsFor(5000);
    EXPECT_TRUE(rig_.stopKestrum(60000)) << "kestrum did not end with status 0";
    const std::optional<QString> movie = rig_.waitForSavedRecording(1000);
    ASSERT_TRUE(movie) << "the termination left no saved movie";
    EXPECT_TRUE(QFile::exists(movie->chopped(3) + QStringLiteral("json")));
    const std::optional<double> duration = probedDurationSeconds(*movie);
    ASSERT_TRUE(duration);
    EXPECT_GT(*duration, 4.0);
}

}  // namespace
}  // namespace kestrum::test

// The review window's content with the real mpv players (not the fakes) on the player's test movies: a
// selection shows the movie's picture at its start, and Space plays it.
#include "ClockStripe.h"
#include "QmlViewHarness.h"
#include "StripeMovies.h"
#include "base/async/SystemClock.h"
#include "media/mpv/MpvVideoPlayerFactory.h"
#include "media/mpv/MpvVideoPlayerItem.h"
#include "unit/core/dashboard/DashboardTestSupport.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QQuickItem>
#include <QTest>

namespace kestrum::test {
namespace {

class DashboardRealPlayerTest : public testing::Test {
  protected:
    void SetUp() override {
        KESTRUM_REQUIRE_DISPLAY();
        KESTRUM_REQUIRE_PLAYER_TEST_MOVIES(movies);
    }

    void TearDown() override {
        if (controller) controller->disappear();
        controller.reset();
        loads.finishAll();
    }

    const PlayerTestMovies movies{QStringLiteral(KESTRUM_PLAYER_TEST_MOVIES)};
    QTemporaryDir home;
    UserDefaults defaults{home.filePath(QStringLiteral("defaults.json"))};
    SystemClock clock;
    MpvVideoPlayerFactory factory;
    FakeFileActions files;
    NotificationCenter notifications;
    GatedLoads loads;
    std::vector<MatchVideo> matches;
    RecordingLibraryModel library{defaults, std::nullopt, [this](const QString&) {
                                      QPromise<Result<std::vector<MatchVideo>>> promise;
                                      promise.start();
                                      promise.addResult(Result<std::vector<MatchVideo>>(matches));
                                      promise.finish();
                                      return promise.future();
                                  }};
    std::unique_ptr<DashboardController> controller;
    QmlViewHarness harness;
};

TEST_F(DashboardRealPlayerTest, ASelectionShowsItsStartAndSpacePlaysOn) {
    const MatchVideo clockMovie = recording(movies.clock());
    matches = {clockMovie};
    controller = std::make_unique<DashboardController>(
        DashboardController::Services{defaults, clock, factory, files, notifications}, library, loads.loads(),
        movies.folder);
    controller->appear();
    QQuickItem* view =
        harness.show(QUrl(QStringLiteral("qrc:/qt/qml/Kestrum/Dashboard/DashboardView.qml")),
                     {{QStringLiteral("controller"), QVariant::fromValue(controller.get())}}, {1280, 800});
    ASSERT_TRUE(view) << harness.errors().toStdString();
    ASSERT_TRUE(waitUntil([&] { return controller->sidebar()->cards()->count() == 1; }, 5000));
    if (library.selectedMatch() != clockMovie) {
        library.setSelectedMatches({clockMovie});
        library.setSelectedMatch(clockMovie);
    }
    ASSERT_TRUE(waitUntil([&] { return !loads.details.empty(); }, 5000));
    // "GameStart" at 3.5 s: the recording opens a second before, mid key-frame interval.
    loads.finishDetail(loads.details.size() - 1, detailWith({event(1, "GameStart", 3.5)}, 12));

    auto* layer = view->findChild<MpvVideoPlayerItem*>(QStringLiteral("videoPlayerLayer"));
    ASSERT_NE(layer, nullptr);
    ASSERT_TRUE(waitUntil(
        [&] { return controller->movieStateName() == QLatin1String("ready") && layer->picturesShown() > 0; },
        15000))
        << "no frame within 15 s; the movie area shows " << controller->movieStateName().toStdString();
    // Once the "Loading Video..." overlay has faded out over the picture.
    const QImage picture = harness.screenshot([&] {
        const QQuickItem* overlay = harness.findItem(QStringLiteral("loadingOverlay"));
        return overlay && !overlay->isVisible();
    });
    const QPointF origin = layer->mapToScene(QPointF(0, 0));
    EXPECT_EQ(decodeClockStripe(picture.copy(QRectF(origin, layer->size()).toRect())),
              stripeMsOfFrameAt(2.5));

    const double before = controller->currentPlayer()->currentTime();
    QTest::keyClick(&harness.window(), Qt::Key_Space);
    EXPECT_TRUE(controller->playback()->requestedIsPlaying());
    EXPECT_TRUE(waitUntil([&] { return controller->currentPlayer()->currentTime() > before + 0.5; }, 10000))
        << "the position stays at " << controller->currentPlayer()->currentTime();
}

}  // namespace
}  // namespace kestrum::test

// The player's item as the review window's QML places it: `VideoPlayerLayer` of Kestrum.Player, given a
// player object through its property, draws that player's movie; given anything else, black.
#include "ClockStripe.h"
#include "QmlViewHarness.h"
#include "StripeMovies.h"
#include "media/mpv/MpvVideoPlayerFactory.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QQuickItem>

namespace kestrum::test {
namespace {

const QByteArray kLayer = QByteArrayLiteral("import QtQuick\nimport Kestrum.Player\nVideoPlayerLayer {}\n");

class VideoPlayerLayerTest : public testing::Test {
  protected:
    void SetUp() override {
        KESTRUM_REQUIRE_DISPLAY();
        KESTRUM_REQUIRE_PLAYER_TEST_MOVIES(movies);
    }

    const PlayerTestMovies movies{QStringLiteral(KESTRUM_PLAYER_TEST_MOVIES)};
    MpvVideoPlayerFactory factory;
    QmlViewHarness harness;
};

TEST_F(VideoPlayerLayerTest, DrawsThePlayerItIsGiven) {
    const std::unique_ptr<MpvVideoPlayer> player = factory.makeMpvPlayer(movies.other());
    QQuickItem* layer =
        harness.showText(kLayer, {{"player", QVariant::fromValue<QObject*>(player.get())}}, {640, 360});
    ASSERT_TRUE(layer) << harness.errors().toStdString();
    EXPECT_EQ(layer->property("player").value<QObject*>(), player.get());
    ASSERT_TRUE(waitUntil([&] { return player->isReadyForDisplay(); }, 15000)) << "never drawn";
    EXPECT_EQ(decodeClockStripe(harness.screenshot()), PlayerTestMovies::kOtherOffsetMs);
}

TEST_F(VideoPlayerLayerTest, AnObjectThatIsNoPlayerDrawsBlack) {
    QObject stranger;
    QQuickItem* layer =
        harness.showText(kLayer, {{"player", QVariant::fromValue<QObject*>(&stranger)}}, {320, 180});
    ASSERT_TRUE(layer) << harness.errors().toStdString();
    const QImage shot = harness.screenshot();
    ASSERT_FALSE(shot.isNull());
    EXPECT_EQ(shot.pixelColor(160, 90), QColor(Qt::black));
    EXPECT_EQ(shot.pixelColor(10, 10), QColor(Qt::black));
}

// A prepared player decodes its picture where it stands, unseen; shown, it draws that picture with no
// further seek.
TEST_F(VideoPlayerLayerTest, APreparedPlayerShowsThePictureItWasSoughtToOnceShown) {
    const std::unique_ptr<MpvVideoPlayer> shown = factory.makeMpvPlayer(movies.clock());
    const std::unique_ptr<MpvVideoPlayer> prepared = factory.makeMpvPlayer(movies.other());
    QQuickItem* layer =
        harness.showText(kLayer,
                         {{"player", QVariant::fromValue<QObject*>(shown.get())},
                          {"preparedPlayers", QVariantList{QVariant::fromValue<QObject*>(prepared.get())}}},
                         {640, 360});
    ASSERT_TRUE(layer) << harness.errors().toStdString();
    ASSERT_TRUE(waitUntil([&] { return shown->isReadyForDisplay(); }, 15000)) << "never drawn";
    std::optional<bool> landed;
    prepared->seek(2.5, VideoSeekTolerance::exact(), [&](bool finished) { landed = finished; });
    ASSERT_TRUE(waitUntil([&] { return landed.has_value(); }, 15000));
    EXPECT_TRUE(*landed);
    EXPECT_FALSE(prepared->isReadyForDisplay()) << "decoded, but not on screen";
    EXPECT_EQ(decodeClockStripe(harness.screenshot()), stripeMsOfFrameAt(0)) << "the shown player stays";

    layer->setProperty("player", QVariant::fromValue<QObject*>(prepared.get()));
    ASSERT_TRUE(waitUntil([&] { return prepared->isReadyForDisplay(); }, 15000));
    EXPECT_EQ(decodeClockStripe(harness.screenshot()),
              stripeMsOfFrameAt(2.5, PlayerTestMovies::kOtherOffsetMs));
    EXPECT_NEAR(prepared->currentTime(), 2.5, 0.02);
}

}  // namespace
}  // namespace kestrum::test

// The item that draws a player: the picture fits the item with its aspect kept on black, a player's
// picture is decoded only while an item shows it, the same player given again changes nothing, and
// another player given takes the picture over.
#include "ClockStripe.h"
#include "PlayerFixture.h"

#include <QSignalSpy>
#include <QTest>

#include <ostream>
#include <string>

namespace kestrum::test {
namespace {

// The mean brightness (0 to 255) of a part of a picture.
double meanLuma(const QImage& picture, QRect area) {
    double sum = 0;
    long count = 0;
    for (int y = area.top(); y <= area.bottom(); y += 2) {
        for (int x = area.left(); x <= area.right(); x += 2) {
            const QRgb pixel = picture.pixel(x, y);
            sum += 0.299 * qRed(pixel) + 0.587 * qGreen(pixel) + 0.114 * qBlue(pixel);
            ++count;
        }
    }
    return count > 0 ? sum / static_cast<double>(count) : 0;
}

struct AspectCase {
    const char* name;
    QSize window;
    QRect picture;  // where the 16:9 picture lies in the window; black around it
};

void PrintTo(const AspectCase& aspectCase, std::ostream* out) {
    *out << aspectCase.name;
}

class MpvVideoPlayerItemAspectTest : public PlayerFixture, public testing::WithParamInterface<AspectCase> {
  protected:
    void SetUp() override {
        KESTRUM_REQUIRE_PLAYER_STAGE();
        stage = std::make_unique<PlayerStage>(GetParam().window);
        ASSERT_TRUE(stage->exposed());
    }
};

TEST_P(MpvVideoPlayerItemAspectTest, ThePictureFitsWithBlackAround) {
    const AspectCase& c = GetParam();
    show(movies.clock());
    const QImage shot = stage->grab();
    ASSERT_EQ(shot.size(), c.window);
    EXPECT_EQ(decodeClockStripe(shot.copy(c.picture)), 0) << "the picture is upright and whole";
    // The picture's own area is lit (its block and shade; the stripe's corner is mostly black).
    EXPECT_GT(meanLuma(shot, c.picture.adjusted(0, c.picture.height() / 2, 0, 0)), 30);
    const QRect window(QPoint(0, 0), c.window);
    for (const QRect& bar : {QRect(window.topLeft(), QPoint(window.right(), c.picture.top() - 1)),
                             QRect(QPoint(0, c.picture.bottom() + 1), window.bottomRight()),
                             QRect(window.topLeft(), QPoint(c.picture.left() - 1, window.bottom())),
                             QRect(QPoint(c.picture.right() + 1, 0), window.bottomRight())}) {
        if (bar.width() < 4 || bar.height() < 4) continue;
        EXPECT_LT(meanLuma(shot, bar.adjusted(1, 1, -1, -1)), 2) << "not black around the picture";
    }
}

INSTANTIATE_TEST_SUITE_P(Windows, MpvVideoPlayerItemAspectTest,
                         testing::Values(AspectCase{"SameAspect", {960, 540}, {0, 0, 960, 540}},
                                         AspectCase{"Taller", {960, 720}, {0, 90, 960, 540}},
                                         AspectCase{"Wider", {1200, 540}, {120, 0, 960, 540}}),
                         [](const testing::TestParamInfo<AspectCase>& info) {
                             return std::string(info.param.name);
                         });

class MpvVideoPlayerItemTest : public PlayerFixture {};

TEST_F(MpvVideoPlayerItemTest, APreparedPlayerDecodesNoPictureUntilShown) {
    MpvVideoPlayer& prepared = prepare(movies.clock());
    ASSERT_TRUE(waitUntilSettled(prepared));
    runEventLoopFor(300);
    EXPECT_FALSE(prepared.isReadyForDisplay());
    EXPECT_FALSE(prepared.engineProperty("vo-configured").toBool()) << "a prepared player has a video output";
    EXPECT_TRUE(QStringList({"no", "false"}).contains(prepared.engineProperty("vid").toString()))
        << "video track " << prepared.engineProperty("vid").toString().toStdString();

    stage->item().setPlayer(&prepared);
    ASSERT_TRUE(waitFor([&] { return prepared.isReadyForDisplay(); }, 15000));
    EXPECT_TRUE(prepared.engineProperty("vo-configured").toBool());
    EXPECT_EQ(stage->shownStripeMs(), 0);

    // Shown no more, it stops decoding pictures but stays ready: its picture is one item away.
    stage->item().setPlayer(nullptr);
    EXPECT_TRUE(waitFor([&] { return !prepared.engineProperty("vo-configured").toBool(); }, 10000));
    runEventLoopFor(100);
    EXPECT_TRUE(prepared.isReadyForDisplay());
    EXPECT_EQ(notices.count("ready"), 1) << testing::PrintToString(notices.words);
}

TEST_F(MpvVideoPlayerItemTest, TheSamePlayerGivenAgainChangesNothing) {
    MpvVideoPlayer& player = show(movies.clock());
    QSignalSpy changes(&stage->item(), &MpvVideoPlayerItem::playerChanged);
    const std::uint64_t pictures = stage->item().picturesShown();
    stage->item().setPlayer(&player);
    runEventLoopFor(500);
    EXPECT_EQ(changes.count(), 0);
    EXPECT_EQ(stage->item().picturesShown(), pictures) << "the picture was decoded again";
    EXPECT_EQ(notices.count("not ready"), 0);
}

TEST_F(MpvVideoPlayerItemTest, AnotherPlayerTakesThePictureOverAndBack) {
    MpvVideoPlayer& first = show(movies.clock());
    ASSERT_EQ(seekAndLook(first, 5.0, VideoSeekTolerance::exact()), 5000);
    MpvVideoPlayer& second = show(movies.other());
    EXPECT_EQ(stage->shownStripeMs(), PlayerTestMovies::kOtherOffsetMs);
    EXPECT_TRUE(waitFor([&] { return !first.engineProperty("vo-configured").toBool(); }, 10000));

    stage->item().setPlayer(&first);
    const std::uint64_t pictures = stage->item().picturesShown();
    ASSERT_TRUE(stage->waitForPictureAfter(pictures));
    runEventLoopFor(150);
    EXPECT_EQ(stage->shownStripeMs(), 5000) << "the first player's picture where it stood";
    EXPECT_TRUE(waitFor([&] { return !second.engineProperty("vo-configured").toBool(); }, 10000));
}

TEST_F(MpvVideoPlayerItemTest, AnItemMovedToAnotherWindowDrawsItsPlayerThere) {
    MpvVideoPlayer& player = show(movies.clock());
    ASSERT_EQ(seekAndLook(player, 7.0, VideoSeekTolerance::exact()), 7000);
    // The old window frees the item's renderer with its render context; the new one makes both anew.
    QQuickWindow other;
    other.resize(640, 360);
    other.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&other));
    const std::uint64_t pictures = stage->item().picturesShown();
    stage->item().setParentItem(other.contentItem());
    stage->item().setSize(QSizeF(640, 360));
    ASSERT_TRUE(stage->waitForPictureAfter(pictures)) << "no picture in the new window";
    runEventLoopFor(150);
    EXPECT_EQ(decodeClockStripe(other.grabWindow()), 7000);
    stage->item().setParentItem(stage->window().contentItem());
}

TEST_F(MpvVideoPlayerItemTest, AnObjectThatIsNoMpvPlayerDrawsBlack) {
    QObject stranger;
    stage->item().setPlayer(&stranger);
    EXPECT_EQ(stage->item().player(), &stranger);
    const QImage shot = stage->grab();
    EXPECT_LT(meanLuma(shot, shot.rect()), 1);
}

}  // namespace
}  // namespace kestrum::test

// The share window on a real X server under openbox, read back as another program sees it: pixels by
// `ffmpeg -f x11grab`, properties by xprop, clicks by xdotool against a window of another client below.
#include "ClockStripe.h"
#include "GameScene.h"
#include "PointerPressRecorder.h"
#include "ShellWindowsTestMain.h"
#include "TestWindowClient.h"
#include "platform/linux/x11/X11ApplicationWindows.h"
#include "support/TestEnvironment.h"
#include "support/X11Desktop.h"
#include "ui/share/LeagueShareWindow.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QGuiApplication>
#include <QPainter>
#include <QProcess>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <thread>
#include <vector>

namespace kestrum::test {
namespace {

using ui::LeagueShareWindow;

#define REQUIRE_MANAGED_DISPLAY() \
    if (!managedDisplayMissing().isEmpty()) GTEST_SKIP() << managedDisplayMissing().toStdString()

std::shared_ptr<const PixelBuffer> frameOf(const QImage& picture) {
    const QImage bgra = picture.convertToFormat(QImage::Format_RGB32);
    const auto* bytes = bgra.constBits();
    return PixelBuffer::make(bgra.width(), bgra.height(), static_cast<int>(bgra.bytesPerLine()),
                             std::vector<std::uint8_t>(bytes, bytes + bgra.sizeInBytes()));
}

std::shared_ptr<const PixelBuffer> solidFrame(QColor colour, QSize size = QSize(1920, 1080)) {
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(colour);
    return frameOf(picture);
}

// A frame of the simulated game with its clock stripe, as the share's stream delivers it.
std::shared_ptr<const PixelBuffer> gameFrame(qint64 gameTimeMs, QSize size = QSize(1920, 1080)) {
    QImage picture(size, QImage::Format_RGB32);
    QPainter painter(&picture);
    simulator::GameScene(size).paint(painter, 12.0, gameTimeMs, false);
    paintClockStripe(painter, size.width(), gameTimeMs);
    painter.end();
    return frameOf(picture);
}

QRect screenRegion(const QWindow& window) {
    return {window.mapToGlobal(QPoint(0, 0)), window.size()};
}

std::optional<QImage> grab(const QWindow& window) {
    QString failure;
    auto picture = grabScreenRegion(screenRegion(window), &failure);
    EXPECT_TRUE(picture.has_value()) << failure.toStdString();
    return picture;
}

bool near(QRgb actual, QColor expected, int tolerance = 6) {
    return std::abs(qRed(actual) - expected.red()) <= tolerance &&
           std::abs(qGreen(actual) - expected.green()) <= tolerance &&
           std::abs(qBlue(actual) - expected.blue()) <= tolerance;
}

// Shows the window and waits until it is on screen with the newest frame drawn.
bool presentAndWait(LeagueShareWindow& window) {
    window.present();
    return waitUntil([&] { return window.isExposed(); }, 5000);
}

bool drawn(LeagueShareWindow& window, quint64 paintedBefore) {
    return waitUntil([&] { return window.paintedFrameCount() > paintedBefore; }, 5000);
}

class LeagueShareWindowTest : public testing::Test {
  protected:
    void SetUp() override {
        if (!managedDisplayMissing().isEmpty()) return;
        windows_ = std::make_unique<X11ApplicationWindows>();
        share_ = std::make_unique<LeagueShareWindow>(windows_.get());
    }

    std::unique_ptr<X11ApplicationWindows> windows_;
    std::unique_ptr<LeagueShareWindow> share_;
};

TEST_F(LeagueShareWindowTest, AFrameFromAnotherThreadReachesTheWindowsPixelsScaledToFit) {
    REQUIRE_MANAGED_DISPLAY();
    ASSERT_TRUE(presentAndWait(*share_));
    struct Row {
        const char* name;
        QSize frameSize;
        QPoint insidePicture, insideBar;  // window points: one on the picture, one on a black bar (or none)
    };
    for (const Row& row : {Row{"16:9 fills the window", {1920, 1080}, {480, 270}, {-1, -1}},
                           Row{"4:3 leaves bars left and right", {1024, 768}, {480, 270}, {50, 270}},
                           Row{"21:9 leaves bars above and below", {2560, 1080}, {480, 270}, {480, 40}}}) {
        SCOPED_TRACE(row.name);
        const quint64 before = share_->paintedFrameCount();
        std::thread([&] { share_->enqueueFrame(solidFrame(QColor(30, 200, 90), row.frameSize)); }).join();
        ASSERT_TRUE(drawn(*share_, before));
        processEventsFor(100);
        const auto picture = grab(*share_);
        ASSERT_TRUE(picture);
        EXPECT_TRUE(near(picture->pixel(row.insidePicture), QColor(30, 200, 90)));
        if (row.insideBar.x() >= 0) {
            EXPECT_TRUE(near(picture->pixel(row.insideBar), Qt::black));
        }
    }

    // The simulated game's clock stripe survives the scaling into the window, as a sharing program sees it.
    const quint64 before = share_->paintedFrameCount();
    std::thread([&] { share_->enqueueFrame(gameFrame(754'321)); }).join();
    ASSERT_TRUE(drawn(*share_, before));
    processEventsFor(100);
    const auto picture = grab(*share_);
    ASSERT_TRUE(picture);
    EXPECT_EQ(decodeClockStripe(*picture), std::optional<qint64>(754'321));
}

std::shared_ptr<const PixelBuffer> halvesFrame(QSize size, QColor left, QColor right) {
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(right);
    QPainter(&picture).fillRect(0, 0, size.width() / 2, size.height(), left);
    return frameOf(picture);
}

TEST_F(LeagueShareWindowTest, EachFrameIsTheFrameScaledWithItsAspectAndNoStaleBorder) {
    REQUIRE_MANAGED_DISPLAY();
    ASSERT_TRUE(presentAndWait(*share_));
    ASSERT_EQ(share_->size(), QSize(960, 540));
    const QColor left(230, 40, 40);
    const QColor right(40, 90, 220);
    struct Row {
        const char* name;
        QSize frame;
        QRect picture;  // where the frame must land in the 960x540 window
    };
    // Each row follows a full-window white frame, whose remains would show in the next one's bars.
    for (const Row& row : {Row{"4:3 source at its own size", {1024, 768}, {120, 0, 720, 540}},
                           Row{"21:9 source", {2560, 1080}, {0, 67, 960, 405}},
                           Row{"a window smaller than the share window", {640, 360}, {0, 0, 960, 540}},
                           Row{"an odd window's own size", {1281, 721}, {0, 0, 959, 540}}}) {
        SCOPED_TRACE(row.name);
        quint64 before = share_->paintedFrameCount();
        share_->enqueueFrame(solidFrame(Qt::white));
        ASSERT_TRUE(drawn(*share_, before));
        before = share_->paintedFrameCount();
        std::thread([&] { share_->enqueueFrame(halvesFrame(row.frame, left, right)); }).join();
        ASSERT_TRUE(drawn(*share_, before));
        processEventsFor(100);
        const auto grabbed = grab(*share_);
        ASSERT_TRUE(grabbed);
        const QRect& p = row.picture;
        const int middleY = p.center().y();
        // The halves in their place, to the picture's edges.
        for (const QPoint point : {QPoint(p.left(), middleY), QPoint(p.left() + p.width() / 2 - 4, p.top()),
                                   QPoint(p.left() + p.width() / 4, p.bottom())}) {
            EXPECT_TRUE(near(grabbed->pixel(point), left)) << point.x() << "," << point.y();
        }
        for (const QPoint point : {QPoint(p.right(), middleY), QPoint(p.left() + p.width() / 2 + 4, p.top()),
                                   QPoint(p.left() + 3 * p.width() / 4, p.bottom())}) {
            EXPECT_TRUE(near(grabbed->pixel(point), right)) << point.x() << "," << point.y();
        }
        // Black, not white, just outside the picture.
        for (const QPoint point :
             {QPoint(p.left() - 1, middleY), QPoint(p.right() + 1, middleY),
              QPoint(p.center().x(), p.top() - 1), QPoint(p.center().x(), p.bottom() + 1)}) {
            if (!QRect(0, 0, 960, 540).contains(point)) continue;
            EXPECT_TRUE(near(grabbed->pixel(point), Qt::black)) << point.x() << "," << point.y();
        }
    }
}

TEST_F(LeagueShareWindowTest, FramesQueuedFasterThanPaintingCoalesceToTheNewest) {
    REQUIRE_MANAGED_DISPLAY();
    ASSERT_TRUE(presentAndWait(*share_));
    processEventsFor(100);
    const quint64 before = share_->paintedFrameCount();
    std::vector<std::shared_ptr<const PixelBuffer>> frames;
    for (int index = 0; index < 50; ++index) frames.push_back(solidFrame(QColor(index * 5, 40, 200)));
    // The main thread runs no event meanwhile: every repaint the thread asks for is still queued.
    std::thread([&] {
        for (const auto& frame : frames) share_->enqueueFrame(frame);
    }).join();
    processEventsFor(300);
    EXPECT_EQ(share_->paintedFrameCount(), before + 1);
    EXPECT_EQ(share_->displayedFrame(), frames.back());
    const auto picture = grab(*share_);
    ASSERT_TRUE(picture);
    EXPECT_TRUE(near(picture->pixel(480, 270), QColor(49 * 5, 40, 200)));
}

TEST_F(LeagueShareWindowTest, FlushKeepsThePictureForARestartAndClearsItForAStop) {
    REQUIRE_MANAGED_DISPLAY();
    ASSERT_TRUE(presentAndWait(*share_));
    const quint64 before = share_->paintedFrameCount();
    share_->enqueueFrame(solidFrame(QColor(220, 120, 20)));
    ASSERT_TRUE(drawn(*share_, before));
    struct Row {
        bool removeDisplayedImage;
        QColor expected;
    };
    for (const Row& row : {Row{false, QColor(220, 120, 20)}, Row{true, Qt::black}}) {
        SCOPED_TRACE(row.removeDisplayedImage);
        share_->flush(row.removeDisplayedImage);
        processEventsFor(100);
        const auto picture = grab(*share_);
        ASSERT_TRUE(picture);
        EXPECT_TRUE(near(picture->pixel(480, 270), row.expected));
    }
}

TEST_F(LeagueShareWindowTest, TheDesktopKnowsItByItsIdentifierAndTitle) {
    REQUIRE_MANAGED_DISPLAY();
    ASSERT_TRUE(presentAndWait(*share_));
    const QString id = QString::number(share_->winId());
    struct Row {
        const char* property;
        const char* expected;
    };
    for (const Row& row : {Row{"WM_CLASS", R"(WM_CLASS(STRING) = "league-share", "league-share")"},
                           Row{"WM_WINDOW_ROLE", R"(WM_WINDOW_ROLE(STRING) = "league-share")"},
                           Row{"_NET_WM_NAME", R"(_NET_WM_NAME(UTF8_STRING) = "Kestrum Share")"}}) {
        QProcess xprop;
        xprop.start(QStringLiteral("xprop"), {QStringLiteral("-id"), id, QString::fromLatin1(row.property)});
        ASSERT_TRUE(xprop.waitForFinished(10000)) << "xprop did not answer";
        EXPECT_EQ(QString::fromUtf8(xprop.readAllStandardOutput()).trimmed().toStdString(), row.expected);
    }
}

TEST_F(LeagueShareWindowTest, AClickOnTheWindowReachesTheWindowBelow) {
    REQUIRE_MANAGED_DISPLAY();
    ASSERT_TRUE(presentAndWait(*share_));
    const QRect region = screenRegion(*share_);
    PointerPressRecorder recorder(region.adjusted(-40, -40, 40, 40));
    // The share window comes above the recorder, so the click lands on its pixels.
    share_->raise();
    const quint64 before = share_->paintedFrameCount();
    share_->enqueueFrame(solidFrame(QColor(200, 30, 160)));
    ASSERT_TRUE(drawn(*share_, before));
    processEventsFor(300);
    const auto picture = grab(*share_);
    ASSERT_TRUE(picture);
    ASSERT_TRUE(near(picture->pixel(480, 270), QColor(200, 30, 160))) << "the share window is not on top";

    const QPoint centre = region.center();
    ASSERT_EQ(QProcess::execute(QStringLiteral("xdotool"),
                                {QStringLiteral("mousemove"), QString::number(centre.x()),
                                 QString::number(centre.y()), QStringLiteral("click"), QStringLiteral("1")}),
              0);
    EXPECT_TRUE(waitUntil([&] { return recorder.presses() == 1; }, 5000));
}

TEST_F(LeagueShareWindowTest, ItOpensBehindWithoutTakingTheFocus) {
    REQUIRE_MANAGED_DISPLAY();
    QWindow front;
    front.setTitle(QStringLiteral("front"));
    front.resize(300, 200);
    front.show();
    front.requestActivate();
    ASSERT_TRUE(waitUntil([&] { return QGuiApplication::focusWindow() == &front; }, 5000));

    ASSERT_TRUE(presentAndWait(*share_));
    processEventsFor(300);
    EXPECT_EQ(QGuiApplication::focusWindow(), &front);
    QProcess stacking;
    stacking.start(QStringLiteral("xprop"),
                   {QStringLiteral("-root"), QStringLiteral("_NET_CLIENT_LIST_STACKING")});
    ASSERT_TRUE(stacking.waitForFinished(10000));
    const QString list = QString::fromLatin1(stacking.readAllStandardOutput());
    // Bottom to top: the share window comes before the front window.
    const auto position = [&](const QWindow& window) {
        return list.indexOf(QStringLiteral("0x%1").arg(window.winId(), 0, 16));
    };
    ASSERT_GE(position(*share_), 0) << list.toStdString();
    EXPECT_LT(position(*share_), position(front)) << list.toStdString();
}

TEST_F(LeagueShareWindowTest, ClosingHidesTheWindowAndKeepsIt) {
    REQUIRE_MANAGED_DISPLAY();
    ASSERT_TRUE(presentAndWait(*share_));
    const quint64 before = share_->paintedFrameCount();
    share_->enqueueFrame(solidFrame(QColor(90, 90, 230)));
    ASSERT_TRUE(drawn(*share_, before));
    const WId nativeWindow = share_->winId();

    EXPECT_FALSE(share_->close());
    EXPECT_FALSE(share_->isVisible());
    EXPECT_EQ(share_->handle() != nullptr, true);
    EXPECT_EQ(share_->winId(), nativeWindow);

    ASSERT_TRUE(presentAndWait(*share_));
    processEventsFor(200);
    const auto picture = grab(*share_);
    ASSERT_TRUE(picture);
    EXPECT_TRUE(near(picture->pixel(480, 270), QColor(90, 90, 230)));
}

TEST_F(LeagueShareWindowTest, TheOverlayLiesOnThePrivacyGroundAndTurnsOnlyWhileShown) {
    REQUIRE_MANAGED_DISPLAY();
    ASSERT_TRUE(presentAndWait(*share_));
    const quint64 before = share_->paintedFrameCount();
    share_->enqueueFrame(solidFrame(QColor(250, 250, 250)));
    ASSERT_TRUE(drawn(*share_, before));

    share_->setOverlay(QStringLiteral("Gameplay paused"), QString());
    EXPECT_TRUE(share_->isIndicatorAnimating());
    processEventsFor(200);
    auto picture = grab(*share_);
    ASSERT_TRUE(picture);
    // RGB (0.01, 0.015, 0.03) at 0.9 over white: 0.1 * 255 + 0.9 * the ground.
    EXPECT_TRUE(near(picture->pixel(10, 10), QColor(28, 29, 32), 3)) << std::hex << picture->pixel(10, 10);

    share_->hide();
    EXPECT_FALSE(share_->isIndicatorAnimating());
    ASSERT_TRUE(presentAndWait(*share_));
    EXPECT_TRUE(share_->isIndicatorAnimating());

    share_->clearOverlay();
    EXPECT_FALSE(share_->isIndicatorAnimating());
    processEventsFor(200);
    picture = grab(*share_);
    ASSERT_TRUE(picture);
    EXPECT_TRUE(near(picture->pixel(10, 10), QColor(250, 250, 250)));
}

// With KESTRUM_SHARE_SCREENSHOTS naming a folder: the window at 960 by 540 with a live frame, "Gameplay
// paused" and "Waiting for League", as another program captures it.
TEST_F(LeagueShareWindowTest, Screenshots) {
    REQUIRE_MANAGED_DISPLAY();
    ASSERT_TRUE(presentAndWait(*share_));
    const QString folder = qEnvironmentVariable("KESTRUM_SHARE_SCREENSHOTS");
    struct Row {
        const char* file;
        QString message, symbol;
        bool withFrame;
    };
    for (const Row& row : {Row{"share-live.png", {}, {}, true},
                           Row{"share-gameplay-paused.png", QStringLiteral("Gameplay paused"), {}, true},
                           Row{"share-waiting.png", QStringLiteral("Waiting for League"), {}, false},
                           Row{"share-client.png", QStringLiteral("League Client"),
                               QStringLiteral("rectangle.on.rectangle"), false}}) {
        SCOPED_TRACE(row.file);
        share_->flush(true);
        if (row.withFrame) share_->enqueueFrame(gameFrame(605'000));
        row.message.isEmpty() ? share_->clearOverlay() : share_->setOverlay(row.message, row.symbol);
        processEventsFor(300);
        const auto picture = grab(*share_);
        ASSERT_TRUE(picture);
        EXPECT_EQ(picture->size(), QSize(960, 540));
        // The clock stripe shows only without an overlay over it.
        EXPECT_EQ(decodeClockStripe(*picture).has_value(), row.withFrame && row.message.isEmpty());
        if (!folder.isEmpty()) {
            QDir().mkpath(folder);
            EXPECT_TRUE(picture->save(folder + QLatin1Char('/') + QLatin1String(row.file)));
        }
    }
}

}  // namespace
}  // namespace kestrum::test

#include "PlayerStage.h"

#include "ClockStripe.h"

#include <QEventLoop>
#include <QQuickItem>
#include <QTest>
#include <QTimer>

namespace kestrum::test {

namespace {

QString& missingReason() {
    static QString reason;
    return reason;
}

}  // namespace

QString playerStageMissing() {
    return missingReason();
}

void setPlayerStageMissing(const QString& reason) {
    missingReason() = reason;
}

const PlayerTestMovies& playerTestMovies() {
    static const PlayerTestMovies movies{QStringLiteral(KESTRUM_PLAYER_TEST_MOVIES)};
    return movies;
}

PlayerStage::PlayerStage(QSize size) : window_(std::make_unique<QQuickWindow>()) {
    item_ = new MpvVideoPlayerItem(window_->contentItem());
    item_->setSize(QSizeF(size));
    window_->resize(size);
    window_->show();
    exposed_ = QTest::qWaitForWindowExposed(window_.get());
}

PlayerStage::~PlayerStage() = default;

QImage PlayerStage::grab() {
    return window_->grabWindow();
}

std::optional<qint64> PlayerStage::shownStripeMs() {
    return decodeClockStripe(grab());
}

bool PlayerStage::waitForPictureAfter(std::uint64_t picturesBefore, int timeoutMs) {
    return waitFor([&] { return item_->picturesShown() > picturesBefore; }, timeoutMs);
}

void runEventLoopFor(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

bool waitFor(const std::function<bool()>& predicate, int timeoutMs) {
    if (predicate()) return true;
    QEventLoop loop;
    QTimer check;
    QObject::connect(&check, &QTimer::timeout, &loop, [&] {
        if (predicate()) loop.quit();
    });
    check.start(5);
    QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
    loop.exec();
    return predicate();
}

std::optional<bool> seekAndWait(VideoPlayer& player, double timeSeconds, VideoSeekTolerance tolerance,
                                int timeoutMs) {
    std::optional<bool> finished;
    player.seek(timeSeconds, tolerance, [&](bool done) { finished = done; });
    waitFor([&] { return finished.has_value(); }, timeoutMs);
    return finished;
}

bool waitUntilSettled(VideoPlayer& player, int timeoutMs) {
    // A seek to where the player stands completes once its own first positioning is done.
    if (!player.currentItemPath()) return true;
    return seekAndWait(player, player.currentTime(), VideoSeekTolerance::exact(), timeoutMs).has_value();
}

}  // namespace kestrum::test

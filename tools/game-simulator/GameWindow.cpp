#include "GameWindow.h"

#include "ClockStripe.h"

#include <QPainter>

#include <algorithm>

namespace kestrum::simulator {

GameWindow::GameWindow(const GameClock& clock, QSize size) : clock_(clock), scene_(size) {
    setTitle(QString::fromLatin1(kTitle));
    resize(size);
    frameTimer_.setSingleShot(true);
    frameTimer_.setTimerType(Qt::PreciseTimer);
    connect(&frameTimer_, &QTimer::timeout, this, [this] {
        update();
        scheduleNextFrame();
    });
    pacing_.start();
    scheduleNextFrame();
}

void GameWindow::scheduleNextFrame() {
    const qint64 nowNs = pacing_.nsecsElapsed();
    ++frameIndex_;
    if (frameIndex_ * kFrameIntervalNs < nowNs) frameIndex_ = nowNs / kFrameIntervalNs + 1;
    const qint64 waitMs = (frameIndex_ * kFrameIntervalNs - nowNs) / 1'000'000;
    frameTimer_.start(static_cast<int>(std::max<qint64>(waitMs, 0)));
}

void GameWindow::paintEvent(QPaintEvent*) {
    const qint64 elapsedNs = clock_.elapsedNs();
    const qint64 gameMs = clock_.gameMsAt(elapsedNs);
    const std::optional<qint64> endNs = clock_.endElapsedNs();
    QPainter painter(this);
    scene_.paint(painter, static_cast<double>(elapsedNs) / 1e9, gameMs, endNs && elapsedNs >= *endNs);
    paintClockStripe(painter, width(), gameMs);
    ++framesPainted_;
}

void GameWindow::resizeEvent(QResizeEvent*) {
    // A window manager may give another size than asked; the scene is drawn for the size there is.
    if (size() != scene_.windowSize() && !size().isEmpty()) scene_ = GameScene(size());
}

}  // namespace kestrum::simulator

#pragma once

#include "GameClock.h"
#include "GameScene.h"

#include <QElapsedTimer>
#include <QRasterWindow>
#include <QTimer>

namespace kestrum::simulator {

// The game's window: titled as the game's is, repainted at 60 frames a second with the scene and, over
// it, the clock stripe of the game clock read at the start of the paint. The clock outlives the window.
// Main thread.
class GameWindow final : public QRasterWindow {
    Q_OBJECT

  public:
    static constexpr const char* kTitle = "League of Legends (TM) Client";
    static constexpr qint64 kFrameIntervalNs = 1'000'000'000 / 60;

    GameWindow(const GameClock& clock, QSize size);

    // Frames painted since the window was made, and the real seconds that took.
    qint64 framesPainted() const { return framesPainted_; }
    double secondsShown() const { return static_cast<double>(pacing_.nsecsElapsed()) / 1e9; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    // Arms the timer for the next frame on a fixed 60 Hz grid, so that late frames do not push the later
    // ones back; after a stall the grid restarts from now.
    void scheduleNextFrame();

    const GameClock& clock_;
    GameScene scene_;
    QTimer frameTimer_;
    QElapsedTimer pacing_;
    qint64 frameIndex_ = 0;
    qint64 framesPainted_ = 0;
};

}  // namespace kestrum::simulator

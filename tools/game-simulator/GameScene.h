#pragma once

#include <QImage>
#include <QPointF>
#include <QSize>

#include <array>

class QPainter;

namespace kestrum::simulator {

// What the simulated game shows: a map twice the window's size that the camera pans over as the active
// champion walks its lane, ten champions, a minimap and the clock as text; a loading screen before the
// clock reaches 0 and a banner once it stops. Everything that does not move is drawn once at
// construction, so a frame is a blit plus a few shapes. Owned and used by the window's thread.
class GameScene {
  public:
    static constexpr int kChampionCount = 10;

    explicit GameScene(QSize windowSize);

    QSize windowSize() const { return windowSize_; }

    // One frame: `realSeconds` since the simulator started moves the camera and the champions;
    // `gameMs` is the clock shown (negative while loading); `ended` shows the end banner.
    void paint(QPainter& painter, double realSeconds, qint64 gameMs, bool ended) const;

  private:
    std::array<QPointF, kChampionCount> championPositions(double realSeconds) const;
    QPointF cameraFor(QPointF followed) const;
    void paintChampions(QPainter& painter, const std::array<QPointF, kChampionCount>& positions,
                        QPointF camera) const;
    void paintMinimap(QPainter& painter, const std::array<QPointF, kChampionCount>& positions,
                      QPointF camera) const;
    void paintClockText(QPainter& painter, qint64 gameMs, bool ended) const;
    void paintLoading(QPainter& painter, double realSeconds, qint64 gameMs) const;

    QSize windowSize_;
    QImage map_;
    QImage minimap_;
    QImage loadingBackdrop_;
};

}  // namespace kestrum::simulator

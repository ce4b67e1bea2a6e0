#pragma once

#include "core/review/GameTimelineModel.h"
#include "ui/review/TimelineTrackPainter.h"

#include <QPointer>
#include <QQuickPaintedItem>
#include <QtQmlIntegration>

namespace kestrum::ui {

// `GameTimelineTrack`: the timeline's track, all of it one painted item (TimelineTrackPainter), however
// many markers the game has. It lays its markers out through the model at its own width, and forwards
// the pointer to the model as it comes: hover and leave, press, moves with the button held, release.
// What those mean (the hit search, a click or a drag, the seeks) is the model's.
//
// Its coordinates are the strip's: place it at the strip's top, as tall as the strip, so that a marker's
// y (the lane centre plus or minus a row) is the item's y.
//
// Threads: properties and input on the main thread; `paint` on the scene graph's thread while the main
// thread waits, from the scene taken on the main thread.
class GameTimelineTrackItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(GameTimelineTrack)
    Q_PROPERTY(kestrum::GameTimelineModel* model READ model WRITE setModel NOTIFY modelChanged)

  public:
    explicit GameTimelineTrackItem(QQuickItem* parent = nullptr);

    GameTimelineModel* model() const { return model_; }
    void setModel(GameTimelineModel* model);

    void paint(QPainter* painter) override;

    // The scene the next paint draws (for tests and benchmarks).
    const TimelineTrackScene& scene() const { return scene_; }

  signals:
    void modelChanged();

  protected:
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData& value) override;
    void hoverEnterEvent(QHoverEvent* event) override;
    void hoverMoveEvent(QHoverEvent* event) override;
    void hoverLeaveEvent(QHoverEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;

  private:
    void takeMarkers();
    void takeProgress();
    void takeHover();
    void takeAppearance();

    QPointer<GameTimelineModel> model_;  // main thread; not owned
    QMetaObject::Connection modelConnections_[4];
    TimelineTrackScene scene_;      // written on the main thread, read while painting
    TimelineTrackPainter painter_;  // painting only
};

}  // namespace kestrum::ui

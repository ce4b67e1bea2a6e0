#include "ui/review/GameTimelineTrackItem.h"

#include "ui/style/KestrumStyle.h"

#include <QQuickWindow>

namespace kestrum::ui {

GameTimelineTrackItem::GameTimelineTrackItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    setAcceptHoverEvents(true);
    setAcceptedMouseButtons(Qt::LeftButton);
    // A drag along the track keeps the pointer even when it wanders off the strip.
    setKeepMouseGrab(true);
    connect(&KestrumStyle::instance(), &KestrumStyle::appearanceChanged, this,
            &GameTimelineTrackItem::takeAppearance);
    takeAppearance();
}

void GameTimelineTrackItem::setModel(GameTimelineModel* model) {
    if (model == model_) return;
    for (QMetaObject::Connection& connection : modelConnections_) disconnect(connection);
    model_ = model;
    if (model_) {
        modelConnections_[0] =
            connect(model_, &GameTimelineModel::markersChanged, this, &GameTimelineTrackItem::takeMarkers);
        modelConnections_[1] = connect(model_, &GameTimelineModel::currentTimeChanged, this,
                                       &GameTimelineTrackItem::takeProgress);
        modelConnections_[2] =
            connect(model_, &GameTimelineModel::hoverChanged, this, &GameTimelineTrackItem::takeHover);
        modelConnections_[3] =
            connect(model_, &GameTimelineModel::recordingChanged, this, &GameTimelineTrackItem::takeProgress);
    }
    takeMarkers();
    takeProgress();
    takeHover();
    emit modelChanged();
}

void GameTimelineTrackItem::paint(QPainter* painter) {
    painter_.paint(*painter, scene_);
}

void GameTimelineTrackItem::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickPaintedItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size()) takeMarkers();
}

void GameTimelineTrackItem::itemChange(ItemChange change, const ItemChangeData& value) {
    QQuickPaintedItem::itemChange(change, value);
    if (change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange) takeAppearance();
}

void GameTimelineTrackItem::takeMarkers() {
    scene_.size = size();
    scene_.markers = model_ && width() > 0 ? model_->markers(width()) : std::vector<TimelineMarker>();
    // The hovered marker moves with the layout: the card follows it.
    takeHover();
    update();
}

void GameTimelineTrackItem::takeProgress() {
    const double progress = model_ ? model_->progress() : 0;
    if (progress == scene_.progress) return;
    scene_.progress = progress;
    update();
}

void GameTimelineTrackItem::takeHover() {
    std::optional<std::int64_t> hovered;
    if (model_ && model_->hasHoveredEvent()) hovered = model_->hoveredEventID();
    if (hovered == scene_.hoveredEventID) return;
    scene_.hoveredEventID = hovered;
    update();
}

void GameTimelineTrackItem::takeAppearance() {
    scene_.palette = &KestrumStyle::instance().palette();
    scene_.devicePixelRatio = window() ? window()->effectiveDevicePixelRatio() : 1.0;
    update();
}

void GameTimelineTrackItem::hoverEnterEvent(QHoverEvent* event) {
    hoverMoveEvent(event);
}

void GameTimelineTrackItem::hoverMoveEvent(QHoverEvent* event) {
    if (model_) model_->hover(event->position().x(), event->position().y(), width());
}

void GameTimelineTrackItem::hoverLeaveEvent(QHoverEvent* /*event*/) {
    if (model_) model_->leave();
}

void GameTimelineTrackItem::mousePressEvent(QMouseEvent* event) {
    if (!model_) {
        event->ignore();
        return;
    }
    model_->pressTrack(event->position().x(), event->position().y(), width());
}

void GameTimelineTrackItem::mouseMoveEvent(QMouseEvent* event) {
    if (model_) model_->moveTrack(event->position().x(), event->position().y(), width());
}

void GameTimelineTrackItem::mouseReleaseEvent(QMouseEvent* event) {
    if (model_) model_->releaseTrack(event->position().x(), event->position().y(), width());
}

void GameTimelineTrackItem::mouseUngrabEvent() {
    if (model_) model_->cancelTrackGesture(width());
}

}  // namespace kestrum::ui

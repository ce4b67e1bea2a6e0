#include "ui/review/TimelineTrackPainter.h"

#include "core/review/TimelineMarkerLayout.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace kestrum::ui {

namespace {

using timelineLayout::laneCenter;
using timelineLayout::teamRowOffset;

constexpr double kGroundRadius = 10;
constexpr double kRowInset = 8;
constexpr double kPlayheadWidth = 2;

// Drawn later is drawn on top: small kills under objectives, the local player's events over all.
int drawingRank(TimelineMarkerKind kind) {
    switch (kind) {
        case TimelineMarkerKind::kill:
            return 0;
        case TimelineMarkerKind::gameStart:
        case TimelineMarkerKind::gameEnd:
            return 1;
        case TimelineMarkerKind::objective:
            return 2;
        case TimelineMarkerKind::ace:
            return 3;
        case TimelineMarkerKind::multikill:
            return 4;
        case TimelineMarkerKind::localKill:
        case TimelineMarkerKind::localDeath:
            return 5;
    }
    return 0;
}

// The sprite's top left on whole device pixels: a sprite stamped between pixels would be resampled, and blur.
QPointF stampPoint(const TimelineMarker& marker, const TimelineMarkerSprites::Sprite& sprite, qreal ratio) {
    const QPointF topLeft = QPointF(marker.x, marker.y) - sprite.centre;
    return {std::round(topLeft.x() * ratio) / ratio, std::round(topLeft.y() * ratio) / ratio};
}

QColor withAlpha(QColor colour, double alpha) {
    colour.setAlphaF(alpha);
    return colour;
}

}  // namespace

void TimelineTrackPainter::paint(QPainter& painter, const TimelineTrackScene& scene) {
    painter.setRenderHint(QPainter::Antialiasing);
    paintGround(painter, scene);
    paintMarkers(painter, scene);
}

void TimelineTrackPainter::paintGround(QPainter& painter, const TimelineTrackScene& scene) const {
    const StylePalette& palette = *scene.palette;
    const double width = scene.size.width();
    const QRectF ground(0, laneCenter - kGroundHalfHeight, width, 2 * kGroundHalfHeight);
    QPainterPath groundPath;
    groundPath.addRoundedRect(ground, kGroundRadius, kGroundRadius);
    painter.fillPath(groundPath, palette.surfaceSunken);

    const double playheadX = std::clamp(scene.progress, 0.0, 1.0) * width;
    painter.save();
    painter.setClipPath(groundPath);
    painter.fillRect(QRectF(0, ground.top(), playheadX, ground.height()), withAlpha(palette.accent, 0.13));
    painter.restore();

    const struct {
        double y;
        QColor colour;
    } rows[] = {
        {laneCenter - teamRowOffset, withAlpha(palette.teamRed, 0.35)},
        {laneCenter, palette.separator},
        {laneCenter + teamRowOffset, withAlpha(palette.teamBlue, 0.35)},
    };
    for (const auto& row : rows) {
        painter.setPen(QPen(row.colour, 1));
        painter.drawLine(QPointF(kRowInset, row.y), QPointF(width - kRowInset, row.y));
    }

    painter.setPen(Qt::NoPen);
    painter.setBrush(palette.accent);
    painter.drawRoundedRect(
        QRectF(playheadX - kPlayheadWidth / 2, ground.top() + 2, kPlayheadWidth, ground.height() - 4),
        kPlayheadWidth / 2, kPlayheadWidth / 2);
}

void TimelineTrackPainter::paintMarkers(QPainter& painter, const TimelineTrackScene& scene) {
    const std::vector<TimelineMarker>& markers = scene.markers;
    order_.resize(markers.size());
    std::iota(order_.begin(), order_.end(), std::size_t{0});
    std::stable_sort(order_.begin(), order_.end(), [&](std::size_t a, std::size_t b) {
        return drawingRank(markers[a].kind) < drawingRank(markers[b].kind);
    });
    std::optional<std::size_t> hovered;
    for (const std::size_t index : order_) {
        const TimelineMarker& marker = markers[index];
        if (scene.hoveredEventID == marker.eventID) {
            hovered = index;
            continue;
        }
        const TimelineMarkerSprites::Sprite& sprite =
            sprites_.sprite(marker, false, *scene.palette, scene.devicePixelRatio);
        painter.drawImage(stampPoint(marker, sprite, scene.devicePixelRatio), sprite.picture);
    }
    if (hovered) {
        const TimelineMarker& marker = markers[*hovered];
        const TimelineMarkerSprites::Sprite& sprite =
            sprites_.sprite(marker, true, *scene.palette, scene.devicePixelRatio);
        painter.drawImage(stampPoint(marker, sprite, scene.devicePixelRatio), sprite.picture);
    }
}

}  // namespace kestrum::ui

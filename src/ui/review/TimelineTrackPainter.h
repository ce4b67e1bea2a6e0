#pragma once

#include "core/review/TimelineMarker.h"
#include "ui/review/TimelineMarkerSprites.h"
#include "ui/style/StylePalette.h"

#include <QSizeF>

#include <cstdint>
#include <optional>
#include <vector>

class QPainter;

namespace kestrum::ui {

// What the timeline track shows at one moment, taken on the main thread for the painter: the markers at
// the track's width, the hovered one, the progress of the playhead and the appearance.
struct TimelineTrackScene {
    QSizeF size;          // points; x along the track, y in the strip's own coordinates
    double progress = 0;  // 0...1
    std::vector<TimelineMarker> markers;
    std::optional<std::int64_t> hoveredEventID;
    const StylePalette* palette = &StylePalette::light();
    qreal devicePixelRatio = 1;
};

// Draws the track: its ground, the three rows (red above the centre, blue below), the part already played
// and the playhead, then every marker from its sprite, the local player's and the hovered one on top.
//
// Threads: the thread that paints (see TimelineMarkerSprites); one painter per item.
class TimelineTrackPainter {
  public:
    // Half the height of the track's ground around the lane centre, in points.
    static constexpr double kGroundHalfHeight = 22;

    void paint(QPainter& painter, const TimelineTrackScene& scene);

    const TimelineMarkerSprites& sprites() const { return sprites_; }

  private:
    void paintGround(QPainter& painter, const TimelineTrackScene& scene) const;
    void paintMarkers(QPainter& painter, const TimelineTrackScene& scene);

    TimelineMarkerSprites sprites_;
    std::vector<std::size_t> order_;  // the markers' drawing order, kept to spare an allocation per paint
};

}  // namespace kestrum::ui

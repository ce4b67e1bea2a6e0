#pragma once

#include "core/review/TimelineMarker.h"
#include "ui/style/StylePalette.h"

#include <QHash>
#include <QImage>
#include <QPointF>
#include <QString>

namespace kestrum::ui {

// The pictures of the timeline's markers, each drawn once per look, device pixel ratio and appearance
// and then stamped for every marker that looks the same: a long game has some six hundred markers but
// only a few dozen looks (kind, team, art or symbol, hovered or not).
//
// A look: the local player's kill is a team disc, the local player's death a hollow ring of the killers'
// team; other kills (the local player's assists, others') a small team dot; multikills and aces a team disc
// with their symbol; objectives their art in a ring of the team that took them (the symbol on a team disc
// while the art is missing); the game's start and end their symbol, quiet. A hovered marker is larger,
// over a halo of the accent.
//
// Threads: whichever thread paints the track (the scene graph's), while the main thread waits; one
// painter at a time.
class TimelineMarkerSprites {
  public:
    // A drawn marker, and where its centre lies in the picture (logical points from its top left).
    struct Sprite {
        QImage picture;  // device pixels, with the ratio set
        QPointF centre;
    };

    // The sprite of `marker` in `palette` at `devicePixelRatio`. The reference stays valid until `clear`.
    const Sprite& sprite(const TimelineMarker& marker, bool hovered, const StylePalette& palette,
                         qreal devicePixelRatio);

    void clear() { sprites_.clear(); }
    int count() const { return static_cast<int>(sprites_.size()); }

  private:
    QHash<QString, Sprite> sprites_;
};

}  // namespace kestrum::ui

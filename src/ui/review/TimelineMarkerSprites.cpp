#include "ui/review/TimelineMarkerSprites.h"

#include "ui/style/art/CommunityDragonArt.h"
#include "ui/style/icons/LucideIconRenderer.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace kestrum::ui {

namespace {

// Logical sizes, in points. Rows lie 12 points apart, so a marker over about 12 points overlaps the next
// row's a little; each sprite carries a thin ring of the track's ground to keep neighbours apart.
constexpr double kDotDiameter = 8;
constexpr double kLocalDiameter = 12;
constexpr double kDeathRingWidth = 2.5;
constexpr double kBadgeDiameter = 15;
constexpr double kArtSide = 17;
constexpr double kQuietGlyph = 12;
constexpr double kGroundRing = 1.5;
constexpr double kHoverScale = 1.35;
constexpr double kHaloWidth = 4;

QColor teamInk(const std::optional<RecordingTeam>& team, const StylePalette& palette) {
    if (!team) return palette.textSecondary;
    return *team == RecordingTeam::blue ? palette.teamBlue : palette.teamRed;
}

QString lookKey(const TimelineMarker& marker, bool hovered, const StylePalette& palette, qreal ratio) {
    const int team = marker.team ? static_cast<int>(*marker.team) : -1;
    return QStringLiteral("%1|%2|%3|%4|%5|%6|%7")
        .arg(static_cast<int>(marker.kind))
        .arg(team)
        .arg(marker.symbolName, marker.artName)
        .arg(hovered ? 1 : 0)
        .arg(ratio)
        .arg(palette.background.rgba());
}

// A glyph drawn at its pixel size and laid centred on `centre`.
void drawGlyph(QPainter& painter, const QString& symbol, const QColor& tint, QPointF centre, double side,
               qreal ratio) {
    const int pixels = static_cast<int>(std::lround(side * ratio));
    QImage glyph = renderLucideIcon(symbol, tint, QSize(pixels, pixels));
    if (glyph.isNull()) return;
    glyph.setDevicePixelRatio(ratio);
    painter.drawImage(QPointF(centre.x() - side / 2, centre.y() - side / 2), glyph);
}

void drawDisc(QPainter& painter, QPointF centre, double diameter, const QColor& fill) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawEllipse(centre, diameter / 2, diameter / 2);
}

// A team disc with a white glyph, inside a ring of the ground.
void drawBadge(QPainter& painter, QPointF centre, double diameter, const QColor& ink, const QString& symbol,
               const StylePalette& palette, qreal ratio) {
    drawDisc(painter, centre, diameter + 2 * kGroundRing, palette.surfaceSunken);
    drawDisc(painter, centre, diameter, ink);
    drawGlyph(painter, symbol, palette.textOnAccent, centre, diameter * 0.62, ratio);
}

void drawLocalKill(QPainter& painter, QPointF centre, double diameter, const QColor& ink,
                   const StylePalette& palette) {
    drawDisc(painter, centre, diameter + 2 * kGroundRing, palette.surfaceSunken);
    drawDisc(painter, centre, diameter, ink);
}

void drawLocalDeath(QPainter& painter, QPointF centre, double diameter, const QColor& ink,
                    const StylePalette& palette) {
    drawDisc(painter, centre, diameter + 2 * kGroundRing, palette.surfaceSunken);
    drawDisc(painter, centre, diameter, ink);
    drawDisc(painter, centre, diameter - 2 * kDeathRingWidth, palette.surface);
}

void drawArt(QPainter& painter, QPointF centre, double side, const QImage& art, const QColor& ring,
             const StylePalette& palette) {
    const QRectF tile(centre.x() - side / 2, centre.y() - side / 2, side, side);
    painter.setBrush(palette.surfaceSunken);
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(tile.adjusted(-3, -3, 3, 3), 6.5, 6.5);
    painter.setBrush(ring);
    painter.drawRoundedRect(tile.adjusted(-2, -2, 2, 2), 6, 6);
    painter.drawImage(tile, art);
}

double baseSide(TimelineMarkerKind kind) {
    switch (kind) {
        case TimelineMarkerKind::kill:
            return kDotDiameter;
        case TimelineMarkerKind::gameStart:
        case TimelineMarkerKind::gameEnd:
            return kQuietGlyph;
        case TimelineMarkerKind::objective:
            return kArtSide;
        case TimelineMarkerKind::localKill:
        case TimelineMarkerKind::localDeath:
            return kLocalDiameter;
        default:
            return kBadgeDiameter;
    }
}

void drawMarker(QPainter& painter, const TimelineMarker& marker, QPointF centre, double side,
                const StylePalette& palette, qreal ratio) {
    const QColor ink = teamInk(marker.team, palette);
    switch (marker.kind) {
        case TimelineMarkerKind::kill:
            drawDisc(painter, centre, side + 2 * kGroundRing, palette.surfaceSunken);
            drawDisc(painter, centre, side, ink);
            return;
        case TimelineMarkerKind::localKill:
            drawLocalKill(painter, centre, side, ink, palette);
            return;
        case TimelineMarkerKind::localDeath:
            drawLocalDeath(painter, centre, side, ink, palette);
            return;
        case TimelineMarkerKind::gameStart:
        case TimelineMarkerKind::gameEnd:
            drawDisc(painter, centre, side + 4, palette.surfaceSunken);
            drawGlyph(painter, marker.symbolName, palette.textSecondary, centre, side, ratio);
            return;
        case TimelineMarkerKind::objective: {
            const int pixels = static_cast<int>(std::lround(side * ratio));
            const QImage art = marker.artName.isEmpty()
                                   ? QImage()
                                   : renderCommunityDragonArt(marker.artName, QSize(pixels, pixels));
            if (!art.isNull()) {
                drawArt(painter, centre, side, art, marker.team ? ink : palette.separator, palette);
                return;
            }
            drawBadge(painter, centre, kBadgeDiameter * side / kArtSide, ink, marker.symbolName, palette,
                      ratio);
            return;
        }
        case TimelineMarkerKind::multikill:
        case TimelineMarkerKind::ace:
            drawBadge(painter, centre, side, ink, marker.symbolName, palette, ratio);
            return;
    }
}

}  // namespace

const TimelineMarkerSprites::Sprite& TimelineMarkerSprites::sprite(const TimelineMarker& marker, bool hovered,
                                                                   const StylePalette& palette,
                                                                   qreal devicePixelRatio) {
    const QString key = lookKey(marker, hovered, palette, devicePixelRatio);
    const auto found = sprites_.constFind(key);
    if (found != sprites_.constEnd()) return *found;

    const double side = baseSide(marker.kind) * (hovered ? kHoverScale : 1.0);
    // Room for the ground ring, the art's frame and the halo on every side.
    const double extent = side + 2 * (kHaloWidth + 4);
    const int pixels = static_cast<int>(std::ceil(extent * devicePixelRatio));
    Sprite sprite;
    sprite.picture = QImage(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    sprite.picture.setDevicePixelRatio(devicePixelRatio);
    sprite.picture.fill(Qt::transparent);
    sprite.centre = QPointF(extent / 2, extent / 2);
    QPainter painter(&sprite.picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    if (hovered) {
        QColor halo = palette.accent;
        halo.setAlphaF(0.28);
        drawDisc(painter, sprite.centre, side + 2 * kHaloWidth + 2, halo);
    }
    drawMarker(painter, marker, sprite.centre, side, palette, devicePixelRatio);
    painter.end();
    return *sprites_.insert(key, std::move(sprite));
}

}  // namespace kestrum::ui

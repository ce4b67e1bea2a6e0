#include "GameScene.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

#include <algorithm>
#include <cmath>
#include <random>

namespace kestrum::simulator {
namespace {

constexpr int kMapScale = 2;  // the map is this many windows wide and tall
constexpr int kTreeCount = 260;
const QColor kBlueTeam(70, 150, 255);
const QColor kRedTeam(235, 70, 70);

// The three lanes in map units (0..1 on each axis), from the blue base (bottom left) to the red one.
QPointF lanePoint(int lane, double along, QSizeF map) {
    const QPointF blue(0.1, 0.9);
    const QPointF red(0.9, 0.1);
    const QPointF corner = lane == 0 ? QPointF(0.1, 0.1) : QPointF(0.9, 0.9);
    QPointF unit;
    if (lane == 1) {
        unit = blue + (red - blue) * along;
    } else if (along < 0.5) {
        unit = blue + (corner - blue) * (along * 2);
    } else {
        unit = corner + (red - corner) * ((along - 0.5) * 2);
    }
    return {unit.x() * map.width(), unit.y() * map.height()};
}

void paintLanes(QPainter& painter, QSizeF map) {
    QPen lane(QColor(150, 120, 80), map.height() * 0.035, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    painter.setPen(lane);
    for (int index = 0; index < 3; ++index) {
        QPainterPath path(lanePoint(index, 0, map));
        for (double along : {0.5, 1.0}) path.lineTo(lanePoint(index, along, map));
        painter.drawPath(path);
    }
}

QImage renderMap(QSize size) {
    QImage map(size, QImage::Format_RGB32);
    QPainter painter(&map);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient ground(0, 0, size.width(), size.height());
    ground.setColorAt(0, QColor(30, 70, 40));
    ground.setColorAt(0.5, QColor(70, 95, 50));
    ground.setColorAt(1, QColor(30, 60, 45));
    painter.fillRect(map.rect(), ground);
    // The river crosses the middle lane from the top left to the bottom right.
    painter.setPen(QPen(QColor(40, 95, 150), size.height() * 0.07, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(size.width() * 0.15, size.height() * 0.15),
                     QPointF(size.width() * 0.85, size.height() * 0.85));
    paintLanes(painter, size);
    // Trees at fixed pseudo-random places: the same map on every run.
    std::minstd_rand random(20240611);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    painter.setPen(Qt::NoPen);
    for (int tree = 0; tree < kTreeCount; ++tree) {
        const QPointF at(unit(random) * size.width(), unit(random) * size.height());
        const double radius = size.height() * (0.008 + 0.012 * unit(random));
        painter.setBrush(QColor(15, 45 + static_cast<int>(40 * unit(random)), 25));
        painter.drawEllipse(at, radius, radius);
    }
    for (const auto& [center, colour] :
         {std::pair{QPointF(0.1, 0.9), kBlueTeam}, {QPointF(0.9, 0.1), kRedTeam}}) {
        QRadialGradient glow(QPointF(center.x() * size.width(), center.y() * size.height()),
                             size.height() * 0.09);
        glow.setColorAt(0, colour);
        glow.setColorAt(1, Qt::transparent);
        painter.setBrush(glow);
        painter.drawEllipse(glow.center(), glow.radius(), glow.radius());
    }
    return map;
}

QImage renderLoadingBackdrop(QSize size) {
    QImage backdrop(size, QImage::Format_RGB32);
    QPainter painter(&backdrop);
    QLinearGradient shade(0, 0, 0, size.height());
    shade.setColorAt(0, QColor(10, 20, 40));
    shade.setColorAt(1, QColor(35, 30, 60));
    painter.fillRect(backdrop.rect(), shade);
    // Ten player cards, five a team.
    const double cardWidth = size.width() / 7.0;
    const double cardHeight = size.height() * 0.3;
    for (int index = 0; index < GameScene::kChampionCount; ++index) {
        const int row = index / 5;
        const QRectF card(cardWidth * (index % 5 + 1), size.height() * (0.15 + 0.4 * row), cardWidth * 0.9,
                          cardHeight);
        painter.fillRect(card, QColor(25, 35, 60));
        painter.setPen(QPen(row == 0 ? kBlueTeam : kRedTeam, 3));
        painter.drawRect(card);
    }
    return backdrop;
}

QString clockText(qint64 gameMs) {
    const qint64 seconds = std::max<qint64>(gameMs, 0) / 1000;
    return QStringLiteral("%1:%2")
        .arg(seconds / 60, 2, 10, QLatin1Char('0'))
        .arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

}  // namespace

GameScene::GameScene(QSize windowSize)
    : windowSize_(windowSize),
      map_(renderMap(windowSize * kMapScale)),
      minimap_(map_.scaled(windowSize.width() / 6, windowSize.height() / 6, Qt::IgnoreAspectRatio,
                           Qt::SmoothTransformation)),
      loadingBackdrop_(renderLoadingBackdrop(windowSize)) {}

std::array<QPointF, GameScene::kChampionCount> GameScene::championPositions(double realSeconds) const {
    std::array<QPointF, kChampionCount> positions;
    for (int index = 0; index < kChampionCount; ++index) {
        // Each walks up and down its lane, the two teams meeting near the middle of it.
        const bool blue = index < kChampionCount / 2;
        const double phase = realSeconds * (0.25 + 0.03 * index) + index;
        const double along = blue ? 0.3 + 0.25 * std::sin(phase) : 0.7 + 0.25 * std::sin(phase);
        const int lane = (index + 1) % 3;  // the active champion, 0, walks the middle lane
        positions[static_cast<size_t>(index)] = lanePoint(lane, along, QSizeF(map_.size()));
    }
    return positions;
}

QPointF GameScene::cameraFor(QPointF followed) const {
    const double x = std::clamp(followed.x() - windowSize_.width() / 2.0, 0.0,
                                static_cast<double>(map_.width() - windowSize_.width()));
    const double y = std::clamp(followed.y() - windowSize_.height() / 2.0, 0.0,
                                static_cast<double>(map_.height() - windowSize_.height()));
    return {std::round(x), std::round(y)};
}

void GameScene::paint(QPainter& painter, double realSeconds, qint64 gameMs, bool ended) const {
    if (gameMs < 0) {
        paintLoading(painter, realSeconds, gameMs);
        return;
    }
    const auto positions = championPositions(realSeconds);
    const QPointF camera = cameraFor(positions[0]);
    painter.drawImage(QPoint(0, 0), map_, QRect(camera.toPoint(), windowSize_));
    paintChampions(painter, positions, camera);
    paintMinimap(painter, positions, camera);
    paintClockText(painter, gameMs, ended);
}

void GameScene::paintChampions(QPainter& painter, const std::array<QPointF, kChampionCount>& positions,
                               QPointF camera) const {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const double radius = windowSize_.height() / 30.0;
    for (int index = 0; index < kChampionCount; ++index) {
        const QPointF at = positions[static_cast<size_t>(index)] - camera;
        if (at.x() < -radius || at.y() < -radius || at.x() > windowSize_.width() + radius ||
            at.y() > windowSize_.height() + radius) {
            continue;
        }
        painter.setPen(QPen(index == 0 ? Qt::yellow : Qt::white, 3));
        painter.setBrush(index < kChampionCount / 2 ? kBlueTeam : kRedTeam);
        painter.drawEllipse(at, radius, radius);
        painter.fillRect(QRectF(at.x() - radius, at.y() - radius * 1.6, radius * 2, radius * 0.3), Qt::green);
    }
    painter.restore();
}

void GameScene::paintMinimap(QPainter& painter, const std::array<QPointF, kChampionCount>& positions,
                             QPointF camera) const {
    const QPoint corner(windowSize_.width() - minimap_.width() - 8,
                        windowSize_.height() - minimap_.height() - 8);
    painter.drawImage(corner, minimap_);
    const double scale = static_cast<double>(minimap_.width()) / map_.width();
    painter.save();
    painter.setPen(Qt::white);
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(corner + camera * scale, QSizeF(windowSize_) * scale));
    painter.setPen(Qt::NoPen);
    for (int index = 0; index < kChampionCount; ++index) {
        painter.setBrush(index < kChampionCount / 2 ? kBlueTeam : kRedTeam);
        painter.drawEllipse(corner + positions[static_cast<size_t>(index)] * scale, 3.0, 3.0);
    }
    painter.restore();
}

void GameScene::paintClockText(QPainter& painter, qint64 gameMs, bool ended) const {
    painter.save();
    QFont font = painter.font();
    font.setPixelSize(std::max(10, windowSize_.height() / 24));
    font.setBold(true);
    painter.setFont(font);
    const QRect box(windowSize_.width() - windowSize_.width() / 8 - 8, 8, windowSize_.width() / 8,
                    windowSize_.height() / 14);
    painter.fillRect(box, QColor(0, 0, 0, 170));
    painter.setPen(Qt::white);
    painter.drawText(box, Qt::AlignCenter, clockText(gameMs));
    if (ended) {
        font.setPixelSize(windowSize_.height() / 8);
        painter.setFont(font);
        painter.setPen(QColor(240, 200, 90));
        painter.drawText(QRect(QPoint(0, 0), windowSize_), Qt::AlignCenter, QStringLiteral("VICTORY"));
    }
    painter.restore();
}

void GameScene::paintLoading(QPainter& painter, double realSeconds, qint64 gameMs) const {
    painter.drawImage(QPoint(0, 0), loadingBackdrop_);
    // A light sweeping along the bar: it moves in every frame while the true progress is unknown here.
    const QRectF bar(windowSize_.width() * 0.2, windowSize_.height() * 0.9, windowSize_.width() * 0.6,
                     windowSize_.height() * 0.02);
    painter.fillRect(bar, QColor(40, 50, 80));
    const double sweep = std::fmod(realSeconds * 0.5, 1.0);
    painter.fillRect(
        QRectF(bar.left() + bar.width() * sweep * 0.8, bar.top(), bar.width() * 0.2, bar.height()),
        QColor(200, 170, 90));
    painter.save();
    QFont font = painter.font();
    font.setPixelSize(std::max(10, windowSize_.height() / 30));
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(bar.adjusted(0, -bar.height() * 3, 0, -bar.height()), Qt::AlignCenter,
                     QStringLiteral("Loading: the game starts in %1 s").arg((-gameMs + 999) / 1000));
    painter.restore();
}

}  // namespace kestrum::simulator

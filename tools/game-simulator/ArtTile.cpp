#include "ArtTile.h"

#include <QBuffer>
#include <QFont>
#include <QPainter>
#include <QStringList>

namespace kestrum::simulator {

namespace {

constexpr quint32 kFnvOffset = 2166136261u;
constexpr quint32 kFnvPrime = 16777619u;
constexpr int kLongestNumber = 4;

QStringList words(const QString& identifier) {
    QStringList found;
    QString word;
    QChar previous;
    for (const QChar c : identifier) {
        if (!c.isLetterOrNumber()) {
            if (!word.isEmpty()) found.append(word);
            word.clear();
            previous = QChar();
            continue;
        }
        const bool caseBoundary = c.isUpper() && previous.isLower();
        const bool kindBoundary = !previous.isNull() && c.isDigit() != previous.isDigit();
        if (!word.isEmpty() && (caseBoundary || kindBoundary)) {
            found.append(word);
            word.clear();
        }
        word.append(c);
        previous = c;
    }
    if (!word.isEmpty()) found.append(word);
    return found;
}

}  // namespace

QString ArtTile::initials(const QString& identifier) {
    const QStringList parts = words(identifier);
    if (parts.isEmpty()) return QStringLiteral("?");
    if (parts.front().front().isDigit()) return parts.front().left(kLongestNumber);
    if (parts.size() == 1) return parts.front().left(2);
    return QString(parts[0].front()) + parts[1].front();
}

QColor ArtTile::colour(const QString& identifier) {
    quint32 hash = kFnvOffset;
    for (const char byte : identifier.toUtf8()) {
        hash ^= static_cast<quint8>(byte);
        hash *= kFnvPrime;
    }
    return QColor::fromHsv(static_cast<int>(hash % 360), 150, 165);
}

QImage ArtTile::image(const QString& kind, const QString& identifier) {
    const int side = kind == QLatin1String("champion") ? kChampionSide : kIconSide;
    QImage tile(side, side, QImage::Format_ARGB32_Premultiplied);
    const QColor ground = colour(identifier);
    tile.fill(ground);
    QPainter painter(&tile);
    painter.setRenderHint(QPainter::Antialiasing);
    // A frame marks the kind: champions a ring, spells a circle, items a square.
    painter.setPen(QPen(ground.lighter(140), side / 24.0));
    painter.setBrush(Qt::NoBrush);
    const QRectF inner = QRectF(tile.rect()).adjusted(side / 12.0, side / 12.0, -side / 12.0, -side / 12.0);
    if (kind == QLatin1String("item")) {
        painter.drawRect(inner);
    } else {
        painter.drawEllipse(inner);
    }
    const QString text = initials(identifier);
    QFont font;
    font.setBold(true);
    font.setPixelSize(text.size() > 2 ? side * 22 / 100 : side * 36 / 100);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(tile.rect(), Qt::AlignCenter, text);
    return tile;
}

QByteArray ArtTile::png(const QString& kind, const QString& identifier) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image(kind, identifier).save(&buffer, "PNG");
    return bytes;
}

}  // namespace kestrum::simulator

#include "ui/style/icons/LucideIconRenderer.h"

#include "ui/style/icons/LucideGlyph.h"

#include <QFont>
#include <QPainter>
#include <QSvgRenderer>

#include <array>
#include <vector>

namespace kestrum::ui {

namespace {

// How far (in icon units) an open stroke's bounds may reach past a filled shape's and still count as
// inside it.
constexpr double kInsideTolerance = 0.25;
// The number of a numbered icon: its font's pixel size as a share of the icon, by digit count, so that it
// stays inside the ring (an inner diameter of 14 units of 24).
constexpr std::array<double, 3> kNumberPixelShares{0.42, 0.34, 0.26};

QImage transparentImage(QSize pixelSize) {
    QImage image(pixelSize, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

void renderDocument(QPainter& painter, const QByteArray& document, QSize pixelSize) {
    QSvgRenderer renderer(document);
    renderer.render(&painter, QRectF(QPointF(0, 0), QSizeF(pixelSize)));
}

// Which shapes a fill style fills.
std::vector<bool> filledShapes(const LucideGlyph& glyph, LucideFill fill) {
    std::vector<bool> filled;
    for (const LucideGlyph::Shape& shape : glyph.shapes()) {
        const bool curvedOpen = !shape.closed && !shape.straight;
        filled.push_back(fill != LucideFill::outline &&
                         (shape.closed || (fill == LucideFill::curvedShapes && curvedOpen)));
    }
    return filled;
}

// The open strokes that lie inside a filled shape: drawn as cut-outs of the fill.
std::vector<bool> cutOutShapes(const LucideGlyph& glyph, const std::vector<bool>& filled) {
    const std::size_t count = glyph.shapes().size();
    std::vector<bool> cutOut(count, false);
    if (std::none_of(filled.begin(), filled.end(), [](bool value) { return value; })) return cutOut;
    QSvgRenderer bounds(glyph.document([](std::size_t) { return true; }, [](std::size_t) { return false; }));
    const auto boundsOf = [&](std::size_t index) {
        return bounds.boundsOnElement(QStringLiteral("s") + QString::number(index));
    };
    for (std::size_t inner = 0; inner < count; ++inner) {
        if (filled[inner]) continue;
        const QRectF innerBounds = boundsOf(inner);
        for (std::size_t outer = 0; outer < count && !cutOut[inner]; ++outer) {
            if (!filled[outer]) continue;
            const QRectF outerBounds = boundsOf(outer).adjusted(-kInsideTolerance, -kInsideTolerance,
                                                                kInsideTolerance, kInsideTolerance);
            cutOut[inner] = outerBounds.contains(innerBounds);
        }
    }
    return cutOut;
}

void drawNumber(QPainter& painter, int number, QSize pixelSize) {
    const QString text = QString::number(number);
    const double share =
        kNumberPixelShares[std::min<std::size_t>(text.size(), kNumberPixelShares.size()) - 1];
    QFont font;
    font.setPixelSize(std::max(1, qRound(pixelSize.height() * share)));
    font.setWeight(QFont::Bold);
    painter.setFont(font);
    painter.setPen(Qt::black);
    painter.drawText(QRectF(QPointF(0, 0), QSizeF(pixelSize)), Qt::AlignCenter, text);
}

}  // namespace

QImage renderLucideSymbol(const LucideSymbol& symbol, const QColor& tint, QSize pixelSize) {
    if (pixelSize.isEmpty()) return {};
    const std::shared_ptr<const LucideGlyph> glyph = LucideGlyph::load(symbol.lucideName);
    if (!glyph) return {};
    const std::vector<bool> filled = filledShapes(*glyph, symbol.fill);
    const std::vector<bool> cutOut = cutOutShapes(*glyph, filled);

    QImage image = transparentImage(pixelSize);
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        renderDocument(painter,
                       glyph->document([&](std::size_t index) { return !cutOut[index]; },
                                       [](std::size_t) { return false; }),
                       pixelSize);
        if (symbol.fill == LucideFill::bottomHalf) {
            painter.setClipRect(QRect(0, pixelSize.height() / 2, pixelSize.width(), pixelSize.height()));
        }
        renderDocument(painter,
                       glyph->document([&](std::size_t index) { return filled[index]; },
                                       [](std::size_t) { return true; }),
                       pixelSize);
        painter.setClipping(false);
        if (std::any_of(cutOut.begin(), cutOut.end(), [](bool value) { return value; })) {
            QImage cuts = transparentImage(pixelSize);
            QPainter cutPainter(&cuts);
            cutPainter.setRenderHint(QPainter::Antialiasing);
            renderDocument(cutPainter,
                           glyph->document([&](std::size_t index) { return cutOut[index]; },
                                           [](std::size_t) { return false; }),
                           pixelSize);
            cutPainter.end();
            painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
            painter.drawImage(0, 0, cuts);
            painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        }
        if (symbol.number) drawNumber(painter, *symbol.number, pixelSize);
        // Everything was drawn in black: the tint takes its place, alpha included.
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(image.rect(), tint);
    }
    return image;
}

QImage renderLucideIcon(QStringView symbolName, const QColor& tint, QSize pixelSize) {
    const std::optional<LucideSymbol> symbol = lucideSymbol(symbolName);
    if (!symbol) return {};
    return renderLucideSymbol(*symbol, tint, pixelSize);
}

}  // namespace kestrum::ui

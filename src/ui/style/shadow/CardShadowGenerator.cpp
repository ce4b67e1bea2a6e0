// kestrum-card-shadow: writes the card's shadow, a nine-patch PNG, to the path given. The build runs it
// so that the image and the card's layout come from the same numbers (CardShadowMetrics.h); a blur per
// card at run time would cost every scrolled frame.
//
// The shadow is the card's rounded rectangle in black, blurred by three box passes (close to a Gaussian
// of sigma ~ kCardShadowBlurRadius), and stored at full strength: the card sets its opacity per
// appearance.
#include "ui/style/shadow/CardShadowMetrics.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <cstdio>
#include <vector>

namespace {

using namespace kestrum::ui;

// One box blur pass of `radius` over the rows (horizontal) or columns of an alpha plane.
void boxBlur(std::vector<double>& alpha, int side, int radius, bool horizontal) {
    std::vector<double> out(alpha.size(), 0.0);
    for (int line = 0; line < side; ++line) {
        for (int at = 0; at < side; ++at) {
            double sum = 0;
            for (int offset = -radius; offset <= radius; ++offset) {
                const int position = at + offset;
                if (position < 0 || position >= side) continue;
                sum += horizontal ? alpha[line * side + position] : alpha[position * side + line];
            }
            (horizontal ? out[line * side + at] : out[at * side + line]) = sum / (2 * radius + 1);
        }
    }
    alpha.swap(out);
}

QImage shadowImage() {
    const int side = kCardShadowImageSide;
    QImage card(side, side, QImage::Format_ARGB32);
    card.fill(Qt::transparent);
    {
        QPainter painter(&card);
        painter.setRenderHint(QPainter::Antialiasing);
        QPainterPath shape;
        const QRectF rect(kCardShadowExtent, kCardShadowExtent, side - 2 * kCardShadowExtent,
                          side - 2 * kCardShadowExtent);
        shape.addRoundedRect(rect, kCardShadowRadius, kCardShadowRadius);
        painter.fillPath(shape, Qt::black);
    }
    std::vector<double> alpha(static_cast<std::size_t>(side) * side);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) alpha[y * side + x] = qAlpha(card.pixel(x, y)) / 255.0;
    }
    for (int pass = 0; pass < 3; ++pass) {
        boxBlur(alpha, side, kCardShadowBlurRadius, true);
        boxBlur(alpha, side, kCardShadowBlurRadius, false);
    }
    QImage shadow(side, side, QImage::Format_ARGB32);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x)
            shadow.setPixel(x, y, qRgba(0, 0, 0, qRound(alpha[y * side + x] * 255)));
    }
    return shadow;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: kestrum-card-shadow OUTPUT.png\n", stderr);
        return 2;
    }
    if (!shadowImage().save(QString::fromLocal8Bit(argv[1]), "PNG")) {
        std::fprintf(stderr, "kestrum-card-shadow: cannot write %s\n", argv[1]);
        return 1;
    }
    return 0;
}

#include "ui/share/LeagueShareStatusPainter.h"

#include "ui/style/icons/LucideIconRenderer.h"

#include <QPainter>
#include <QtMath>

namespace kestrum::ui {
namespace {

// In the privacy screen's length units: the symbol's side, and the gap between it and the indicator.
constexpr double kSymbolSideUnits = 36.0;
constexpr double kSymbolGapUnits = 16.0;

}  // namespace

void LeagueShareStatusPainter::setStatus(const QString& message, const QString& symbolName) {
    screen_.setCaption(message);
    if (symbolName == symbolName_) return;
    symbolName_ = symbolName;
    symbolImage_ = {};
    symbolSidePx_ = 0;
}

void LeagueShareStatusPainter::paint(QPainter& painter, int width, int height) {
    // The indicator is stepped by the window's timer: keep the phase the painter would advance.
    const int phase = screen_.animationPhase();
    screen_.paint(painter, width, height);
    screen_.setAnimationPhase(phase);
    if (symbolName_.isEmpty()) return;

    const double scale = PrivacyScreenPainter::scaleFor(width, height);
    const int sidePx = qCeil(kSymbolSideUnits * scale);
    const QImage& symbol = symbolImage(sidePx);
    if (symbol.isNull()) return;
    const QPointF centre = PrivacyScreenPainter::spinnerCentre(width, height);
    const double bottom =
        centre.y() - PrivacyScreenPainter::spinnerRadius(width, height) - kSymbolGapUnits * scale;
    painter.drawImage(QPointF(centre.x() - sidePx / 2.0, bottom - sidePx), symbol);
}

const QImage& LeagueShareStatusPainter::symbolImage(int sidePx) {
    if (symbolSidePx_ != sidePx) {
        symbolImage_ =
            renderLucideIcon(symbolName_, PrivacyScreenPainter::accentColour(), QSize(sidePx, sidePx));
        symbolSidePx_ = sidePx;
    }
    return symbolImage_;
}

}  // namespace kestrum::ui

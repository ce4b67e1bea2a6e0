#include "core/capture/privacy/PrivacyScreenPainter.h"

#include <QColor>
#include <QFile>
#include <QFont>
#include <QFontDatabase>
#include <QPainter>
#include <QPen>
#include <QSvgRenderer>
#include <QTransform>
#include <QtMath>

#include <algorithm>
#include <numbers>
#include <utility>

// The art lives in a static library: nothing pulls its initialiser into a program unless it is called,
// and Q_INIT_RESOURCE must be used outside any namespace.
static void initialiseArtResource() {
    Q_INIT_RESOURCE(art);
}

namespace kestrum {
namespace {

// Every length below is in units of the area's scale S (see scaleFor).
constexpr double kReferenceShortSidePx = 720.0;
constexpr double kSpinnerRiseUnits = 18.0;  // the spinner's centre sits this far above the middle
constexpr double kSpinnerRadiusUnits = 22.0;
constexpr double kSpinnerLineWidthUnits = 4.0;
constexpr double kArcSweepRad = 2.261946710584651;  // 0.72 pi: 36 per cent of the circle
constexpr double kTrackAlpha = 0.25;
constexpr int kPhaseCount = 10;
constexpr double kCaptionDropUnits = 31.0;  // the caption's ink centre sits this far below the middle
constexpr double kCaptionPixelSizeUnits = 17.0;
// The caption's outline is built at this pixel size and scaled down, so that fractional sizes (25.5
// pixels at 1080p) are exact and the outline carries no hinting of its own size.
constexpr int kCaptionReferencePx = 200;
constexpr double kCaptionAlpha = 0.55;
constexpr double kMarkSideUnits = 42.0;
constexpr double kMarkInsetUnits = 24.0;  // from the right side and from the bottom
constexpr double kMarkOpacity = 0.72;

const QString kPreferredCaptionFamily = QStringLiteral("SF Pro Display");

QColor veilColour() {
    return QColor::fromRgbF(0.01f, 0.015f, 0.03f, 0.9f);
}

QString captionFamily() {
    if (QFontDatabase::hasFamily(kPreferredCaptionFamily)) return kPreferredCaptionFamily;
    return QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
}

// The mark's document, or an empty array when it cannot be read or is no valid SVG.
QByteArray readMarkDocument(const QString& path) {
    static const bool resourceReady = (initialiseArtResource(), true);
    (void)resourceReady;

    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return {};
    QByteArray document = file.readAll();
    if (!QSvgRenderer(document).isValid()) return {};
    return document;
}

}  // namespace

PrivacyScreenPainter::PrivacyScreenPainter(QString markPath) : markPath_(std::move(markPath)) {}

double PrivacyScreenPainter::scaleFor(int width, int height) {
    return std::max(1.0, std::min(width, height) / kReferenceShortSidePx);
}

QPointF PrivacyScreenPainter::spinnerCentre(int width, int height) {
    // The screen is laid out in heights measured up from the bottom; this surface counts rows down from
    // the top, so a height y above the bottom is the row height - y.
    return {width * 0.5, height * 0.5 - kSpinnerRiseUnits * scaleFor(width, height)};
}

double PrivacyScreenPainter::spinnerRadius(int width, int height) {
    return kSpinnerRadiusUnits * scaleFor(width, height);
}

QColor PrivacyScreenPainter::accentColour() {
    return QColor::fromRgbF(0.1f, 0.68f, 0.92f);
}

void PrivacyScreenPainter::setCaption(const QString& caption) {
    if (caption == caption_) return;
    caption_ = caption;
    captionScale_ = 0.0;
}

void PrivacyScreenPainter::setAnimationPhase(int phase) {
    animationPhase_ = ((phase % kPhaseCount) + kPhaseCount) % kPhaseCount;
}

void PrivacyScreenPainter::paint(QPainter& painter, int width, int height) {
    painter.save();
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.fillRect(QRectF(0, 0, width, height), veilColour());
    const double scale = scaleFor(width, height);
    drawSpinner(painter, spinnerCentre(width, height), scale);
    drawCaption(painter, width, height, scale);
    drawMark(painter, width, height, scale);
    painter.restore();
}

void PrivacyScreenPainter::drawSpinner(QPainter& painter, const QPointF& centre, double scale) {
    const double radius = kSpinnerRadiusUnits * scale;
    const QRectF square(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius);
    const double lineWidth = kSpinnerLineWidthUnits * scale;

    QColor track = accentColour();
    track.setAlphaF(kTrackAlpha);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(track, lineWidth));
    painter.drawEllipse(square);

    // Counter-clockwise as seen, from the positive x axis: QPainterPath measures its angles that way on
    // this top-down surface, just as the lower-left drawing does with y pointing up, so the angles carry
    // over unchanged.
    const double startDeg = qRadiansToDegrees(animationPhase_ * std::numbers::pi / 5.0);
    QPainterPath arc;
    arc.arcMoveTo(square, startDeg);
    arc.arcTo(square, startDeg, qRadiansToDegrees(kArcSweepRad));
    painter.strokePath(arc, QPen(accentColour(), lineWidth, Qt::SolidLine, Qt::RoundCap));

    // A frame counts as drawn from here on, whatever happens to the rest of it.
    animationPhase_ = (animationPhase_ + 1) % kPhaseCount;
}

void PrivacyScreenPainter::drawCaption(QPainter& painter, int width, int height, double scale) {
    const QPainterPath& outline = captionPath(scale);
    if (outline.isEmpty()) return;
    // Centred on its ink, not on its advance: the left bearing of "G" and the missing right one of "d"
    // would otherwise push it off centre. The outline's y grows downwards from the baseline, so the
    // ink's middle lands 31 S below the frame's middle.
    const QRectF ink = outline.boundingRect();
    const double x = (width - ink.width()) * 0.5 - ink.left();
    const double baselineY = height * 0.5 + kCaptionDropUnits * scale - ink.center().y();
    painter.fillPath(outline.translated(x, baselineY), QColor::fromRgbF(1, 1, 1, kCaptionAlpha));
}

void PrivacyScreenPainter::drawMark(QPainter& painter, int width, int height, double scale) {
    const double side = kMarkSideUnits * scale;
    const double corner = kMarkInsetUnits * scale + side;
    const QImage* mark = markImage(qCeil(side));
    if (mark == nullptr) return;
    painter.save();
    painter.setOpacity(kMarkOpacity);
    painter.drawImage(QRectF(width - corner, height - corner, side, side), *mark);
    painter.restore();
}

const QPainterPath& PrivacyScreenPainter::captionPath(double scale) {
    if (captionScale_ == scale) return captionPath_;
    QFont font(captionFamily());
    font.setPixelSize(kCaptionReferencePx);
    font.setWeight(QFont::Bold);
    font.setHintingPreference(QFont::PreferNoHinting);
    QPainterPath outline;
    outline.addText(0, 0, font, caption_);
    const double factor = kCaptionPixelSizeUnits * scale / kCaptionReferencePx;
    captionPath_ = QTransform::fromScale(factor, factor).map(outline);
    captionScale_ = scale;
    return captionPath_;
}

const QImage* PrivacyScreenPainter::markImage(int sidePx) {
    if (!markDocument_) markDocument_ = readMarkDocument(markPath_);
    if (markDocument_->isEmpty() || sidePx <= 0) return nullptr;
    if (markImageSidePx_ != sidePx) {
        // Rendered at the size it is shown, not scaled from a fixed bitmap, so its edges stay crisp.
        QImage image(sidePx, sidePx, QImage::Format_ARGB32_Premultiplied);
        if (image.isNull()) return nullptr;
        image.fill(Qt::transparent);
        QSvgRenderer renderer(*markDocument_);
        renderer.setAspectRatioMode(Qt::KeepAspectRatio);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        renderer.render(&painter, QRectF(0, 0, sidePx, sidePx));
        painter.end();
        markImage_ = std::move(image);
        markImageSidePx_ = sidePx;
    }
    return &markImage_;
}

}  // namespace kestrum

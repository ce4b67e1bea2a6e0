#pragma once

#include <QByteArray>
#include <QImage>
#include <QPainterPath>
#include <QString>

#include <optional>

class QPainter;
class QPointF;

namespace kestrum {

// Draws the privacy screen onto whatever a painter already holds: a dark veil (RGB 0.01, 0.015, 0.03 at
// opacity 0.9), a spinner that moves one step per drawing, a caption ("Gameplay paused" unless told
// otherwise) and the product's mark. The recording's privacy frames and League Share's status overlay
// are both this drawing, so they look alike at every size.
//
// Threads: one owner thread at a time (the recording's writeQueue, or the main thread for the share
// window), so it holds no lock. It draws text, so the process must have a QGuiApplication.
class PrivacyScreenPainter {
  public:
    static inline const QString kMarkResourcePath = QStringLiteral(":/art/KestrumMark.svg");
    static inline const QString kDefaultCaption = QStringLiteral("Gameplay paused");

    // `markPath` names the SVG document of the mark; a missing or unreadable one leaves the screen
    // without a mark and is no failure.
    explicit PrivacyScreenPainter(QString markPath = kMarkResourcePath);

    // The length unit of the screen for an area of this size: 1 up to a 720-pixel short side, then growing
    // with it, so the screen looks the same at every size.
    static double scaleFor(int width, int height);
    // Where the spinner's centre lies in an area of this size, and its radius, in pixels.
    static QPointF spinnerCentre(int width, int height);
    static double spinnerRadius(int width, int height);
    static QColor accentColour();

    void setCaption(const QString& caption);
    const QString& caption() const { return caption_; }

    // Draws the veil, the spinner at the present phase, the caption and the mark over the area (0, 0,
    // width, height) of the painter's device, and advances the phase by one step.
    void paint(QPainter& painter, int width, int height);

    // Spinner position, 0 to 9: the arc starts at phase * pi / 5. One turn takes 10 drawings.
    int animationPhase() const { return animationPhase_; }
    // Any integer is taken modulo 10.
    void setAnimationPhase(int phase);

  private:
    void drawSpinner(QPainter& painter, const QPointF& centre, double scale);
    void drawCaption(QPainter& painter, int width, int height, double scale);
    void drawMark(QPainter& painter, int width, int height, double scale);
    const QPainterPath& captionPath(double scale);
    const QImage* markImage(int sidePx);

    QString markPath_;
    QString caption_ = kDefaultCaption;
    int animationPhase_ = 0;

    // The caption's outline at the last scale asked for (and the caption it was built from), with its
    // baseline at y 0 and its ink bounds measured on this very outline, so that what is centred is exactly
    // what is drawn. A scale of 0 means none is built.
    QPainterPath captionPath_;
    double captionScale_ = 0.0;

    // The mark's SVG document: not yet looked up (nullopt), absent (an empty array, remembered so the
    // file is read once), or its bytes. Rendered for the last square side asked for, in pixels.
    std::optional<QByteArray> markDocument_;
    QImage markImage_;
    int markImageSidePx_ = 0;
};

}  // namespace kestrum

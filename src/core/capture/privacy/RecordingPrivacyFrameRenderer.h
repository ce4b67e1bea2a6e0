#pragma once

#include "base/media/PixelBuffer.h"

#include <QByteArray>
#include <QImage>
#include <QPainterPath>
#include <QString>

#include <memory>
#include <optional>

class QPainter;
class QPointF;

namespace kestrum {

// Makes the frame that stands in for the game's picture while the game is not the front application:
// the last real frame under a dark veil, a spinner that moves one step per frame, the words "Gameplay
// paused" and the product's mark. Frames are BGRA (QImage::Format_ARGB32_Premultiplied on little-endian
// machines), one new buffer per frame at the source's size, so that they fit the writer's video input.
//
// Threads: used from writeQueue only ("com.kestrum.capture.queue"), so it holds no lock. It draws text,
// so the process must have a QGuiApplication. It logs nothing: a failure is a null frame, which the
// capturer skips.
class RecordingPrivacyFrameRenderer {
  public:
    static inline const QString kMarkResourcePath = QStringLiteral(":/art/KestrumMark.svg");

    // `markPath` names the SVG document of the mark; a missing or unreadable one leaves the frames
    // without a mark and is no failure.
    explicit RecordingPrivacyFrameRenderer(QString markPath = kMarkResourcePath);

    // A new buffer of the source's size with the privacy screen drawn over the source, or null for an
    // invalid source or when the memory cannot be had. Every frame drawn advances `animationPhase`.
    std::shared_ptr<const PixelBuffer> makeFrame(const PixelBuffer& source);

    // Spinner position, 0 to 9: the arc starts at phase * pi / 5. One turn takes 10 frames.
    int animationPhase() const { return animationPhase_; }
    // Any integer is taken modulo 10; the capturer sets 0 at the start of each recording.
    void setAnimationPhase(int phase);

  private:
    void drawSpinner(QPainter& painter, const QPointF& centre, double scale);
    void drawCaption(QPainter& painter, int width, int height, double scale);
    void drawMark(QPainter& painter, int width, int height, double scale);
    const QPainterPath& captionPath(double scale);
    const QImage* markImage(int sidePx);

    QString markPath_;
    int animationPhase_ = 0;

    // The caption's outline at the last scale asked for, with its baseline at y 0 and its ink bounds
    // measured on this very outline, so that what is centred is exactly what is drawn.
    QPainterPath captionPath_;
    double captionScale_ = 0.0;

    // The mark's SVG document: not yet looked up (nullopt), absent (an empty array, remembered so the
    // file is read once), or its bytes. Rendered for the last square side asked for, in pixels.
    std::optional<QByteArray> markDocument_;
    QImage markImage_;
    int markImageSidePx_ = 0;
};

}  // namespace kestrum

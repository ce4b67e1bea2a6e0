#pragma once

#include "base/media/PixelBuffer.h"

#include <QImage>
#include <QRect>

namespace kestrum::ui {

// The share window's picture: a frame brought once to the size it takes in the window (aspect kept), by
// libyuv's vector code with a box filter, into an image kept from frame to frame, so that a paint is a
// plain copy. A frame already of that size is wrapped, not copied.
//
// Main thread (the window's), like the image it gives.
class LeagueShareFrameScaler {
  public:
    // The largest rectangle of `frameSize`'s aspect that fits `area`, centred in it, in whole pixels;
    // empty when either size is.
    static QRect fittedRect(QSize frameSize, QSize area);

    // `frame` (opaque BGRA) at `size` pixels, drawn at `devicePixelRatio`; valid until the next call,
    // and for a wrapped frame only while the caller keeps `frame` alive. A null image when `size` is
    // empty or the frame invalid. Callers keep the reference, not a copy: a copy shares the store, and
    // the next frame would then have to allocate a new one.
    const QImage& scale(const PixelBuffer& frame, QSize size, qreal devicePixelRatio = 1.0);

  private:
    QImage scaled_;   // reallocated only when the size changes
    QImage wrapped_;  // the frame's own bytes, when no scaling is needed
    QImage none_;
};

}  // namespace kestrum::ui

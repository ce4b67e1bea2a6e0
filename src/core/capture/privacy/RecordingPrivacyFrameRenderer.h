#pragma once

#include "base/media/PixelBuffer.h"
#include "core/capture/privacy/PrivacyScreenPainter.h"

#include <QString>

#include <memory>

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
    static inline const QString kMarkResourcePath = PrivacyScreenPainter::kMarkResourcePath;

    // `markPath` names the SVG document of the mark; a missing or unreadable one leaves the frames
    // without a mark and is no failure.
    explicit RecordingPrivacyFrameRenderer(QString markPath = kMarkResourcePath);

    // A new buffer of the source's size with the privacy screen drawn over the source, or null for an
    // invalid source or when the memory cannot be had. Every frame drawn advances `animationPhase`.
    std::shared_ptr<const PixelBuffer> makeFrame(const PixelBuffer& source);

    // Spinner position, 0 to 9: the arc starts at phase * pi / 5. One turn takes 10 frames.
    int animationPhase() const { return painter_.animationPhase(); }
    // Any integer is taken modulo 10; the capturer sets 0 at the start of each recording.
    void setAnimationPhase(int phase) { painter_.setAnimationPhase(phase); }

  private:
    PrivacyScreenPainter painter_;
};

}  // namespace kestrum

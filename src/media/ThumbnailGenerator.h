#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

#include <optional>

namespace kestrum {

// Pictures of a movie for the match cards: the frame nearest a requested time, upright (the track's
// display rotation applied) and fitted into 1280 by 720 without ever being enlarged. Blocking file
// reads and decoding: call it away from the main thread. Stateless; safe from any thread.
class ThumbnailGenerator {
  public:
    static constexpr int kMaximumWidth = 1280;
    static constexpr int kMaximumHeight = 720;
    // A frame up to this far before or after the requested time is acceptable.
    static constexpr double kToleranceSeconds = 0.5;

    // The picture at `timeSeconds` (movie time), or absent when the file cannot be decoded or has no
    // frame within the tolerance of that time.
    static std::optional<QImage> imageAt(const QString& path, double timeSeconds);

    // The image as PNG bytes; empty when it cannot be encoded.
    static QByteArray encodePng(const QImage& image);
};

}  // namespace kestrum

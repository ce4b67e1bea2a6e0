#include "ui/share/LeagueShareFrameScaler.h"

#include <libyuv/scale_argb.h>

#include <algorithm>
#include <cmath>

namespace kestrum::ui {

QRect LeagueShareFrameScaler::fittedRect(QSize frameSize, QSize area) {
    if (frameSize.isEmpty() || area.isEmpty()) return {};
    const double factor = std::min(static_cast<double>(area.width()) / frameSize.width(),
                                   static_cast<double>(area.height()) / frameSize.height());
    // Rounded, so that a frame of the area's own aspect fills it to the last pixel.
    const int width = std::clamp(static_cast<int>(std::lround(frameSize.width() * factor)), 1, area.width());
    const int height =
        std::clamp(static_cast<int>(std::lround(frameSize.height() * factor)), 1, area.height());
    return {(area.width() - width) / 2, (area.height() - height) / 2, width, height};
}

const QImage& LeagueShareFrameScaler::scale(const PixelBuffer& frame, QSize size, qreal devicePixelRatio) {
    if (size.isEmpty() || !frame.isValid()) return none_;
    // RGB32: the capture's alpha byte carries nothing (a depth-24 window's pixmap leaves it undefined),
    // so the picture is read as opaque.
    if (size == QSize(frame.width(), frame.height())) {
        wrapped_ =
            QImage(frame.data(), frame.width(), frame.height(), frame.bytesPerRow(), QImage::Format_RGB32);
        wrapped_.setDevicePixelRatio(devicePixelRatio);
        return wrapped_;
    }
    if (scaled_.size() != size) scaled_ = QImage(size, QImage::Format_RGB32);
    // libyuv's "ARGB" is the byte order B, G, R, A: the frame's BGRA and QImage's RGB32 on this
    // little-endian machine. The box filter averages a shrunk picture, so a game's fine lines do not
    // shimmer; enlarging falls back to bilinear.
    libyuv::ARGBScale(frame.data(), frame.bytesPerRow(), frame.width(), frame.height(), scaled_.bits(),
                      static_cast<int>(scaled_.bytesPerLine()), size.width(), size.height(),
                      libyuv::kFilterBox);
    scaled_.setDevicePixelRatio(devicePixelRatio);
    return scaled_;
}

}  // namespace kestrum::ui

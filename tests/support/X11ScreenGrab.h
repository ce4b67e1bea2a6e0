#pragma once

#include <QImage>
#include <QRect>

#include <optional>

namespace kestrum::test {

// One picture of a region of the X screen ($DISPLAY), read by `ffmpeg -f x11grab` as another program
// would capture it (the composited screen, not our own buffers). Format_RGB32; absent, with the reason in
// `failure`, when ffmpeg is missing or fails.
std::optional<QImage> grabScreenRegion(const QRect& region, QString* failure = nullptr);

}  // namespace kestrum::test

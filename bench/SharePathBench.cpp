// League Share's picture path, frame by frame, without a display: from the bytes read from the window to
// the pixels in the share window's backing store. Two ways, same build:
// - "twice": the stream enlarges a window smaller than the share's box to the box (libswscale), and the
//   window shrinks that to its own size while painting (QPainter's smooth transform);
// - "once": the stream delivers such a window at its own size (a copy), the window scales it once with
//   libyuv into a kept image, and the paint copies it.
// Prints the median milliseconds per frame and what that costs a second at 60 frames.
// `perf record -g kestrum-bench-share-path twice` (or `once`) shows where one way's time goes; a second
// argument `720` keeps to the 1280x720 source.
#include "BenchTiming.h"
#include "platform/linux/x11/X11StreamScaler.h"
#include "platform/ports/WindowStream.h"
#include "ui/share/LeagueShareFrameScaler.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <cstdio>
#include <cstring>
#include <vector>

namespace {

using namespace kestrum;

constexpr int kRuns = 300;
const QSize kShareWindow(960, 540);
const QSize kBox1080(1920, 1080);

// A BGRX picture with detail everywhere, as a game's would be.
std::vector<std::uint8_t> sourcePicture(QSize size) {
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size.width()) * size.height() * 4);
    for (std::size_t index = 0; index < bytes.size(); ++index)
        bytes[index] = static_cast<std::uint8_t>(index * 7 / 5);
    return bytes;
}

// The share window's old paint: the frame drawn into the area, smooth-transformed when sizes differ.
void paintTwice(QImage& backingStore, const PixelBuffer& frame) {
    QPainter painter(&backingStore);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(backingStore.rect(), Qt::black);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    const QImage image(frame.data(), frame.width(), frame.height(), frame.bytesPerRow(),
                       QImage::Format_RGB32);
    const QRect target = ui::LeagueShareFrameScaler::fittedRect(image.size(), backingStore.size());
    painter.setRenderHint(QPainter::SmoothPixmapTransform, target.size() != image.size());
    painter.drawImage(target, image);
}

void paintOnce(QImage& backingStore, ui::LeagueShareFrameScaler& scaler, const PixelBuffer& frame) {
    const QRect target =
        ui::LeagueShareFrameScaler::fittedRect(QSize(frame.width(), frame.height()), backingStore.size());
    const QImage& scaled = scaler.scale(frame, target.size());
    QPainter painter(&backingStore);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(backingStore.rect(), Qt::black);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.drawImage(target.topLeft(), scaled);
}

void measure(QSize source, const QString& onlyWay) {
    const std::vector<std::uint8_t> pixels = sourcePicture(source);
    const int bytesPerRow = source.width() * 4;
    QImage backingStore(kShareWindow, QImage::Format_RGB32);
    for (const bool once : {false, true}) {
        if (!onlyWay.isEmpty() && onlyWay != QLatin1String(once ? "once" : "twice")) continue;
        WindowStreamConfiguration configuration{kBox1080.width(), kBox1080.height(), 60, false, !once};
        const QSize delivered = windowStreamPictureSize(source, configuration);
        X11StreamScaler streamScaler;
        ui::LeagueShareFrameScaler frameScaler;
        const double milliseconds = bench::medianMilliseconds(kRuns, [&] {
            const auto frame = streamScaler.scale(pixels.data(), source.width(), source.height(), bytesPerRow,
                                                  delivered.width(), delivered.height());
            if (once) {
                paintOnce(backingStore, frameScaler, *frame);
            } else {
                paintTwice(backingStore, *frame);
            }
        });
        const char* way = once ? "once" : "twice";
        std::printf("figure share_path_%s_%dx%d_per_frame %.2f ms\n", way, source.width(), source.height(),
                    milliseconds);
        std::printf("figure share_path_%s_%dx%d_at_60fps %.3f cpu-seconds/s\n", way, source.width(),
                    source.height(), milliseconds * 60 / 1000);
    }
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    // The benchmark's window (720p, smaller than the 1080p box) and a source larger than the box.
    const QString onlyWay = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
    measure({1280, 720}, onlyWay);
    if (argc <= 2 || QLatin1String(argv[2]) != QLatin1String("720")) measure({2560, 1440}, onlyWay);
    return 0;
}

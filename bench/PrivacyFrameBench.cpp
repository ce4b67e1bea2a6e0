// The privacy screen, made every 0.4 seconds on the capture queue while the game is not in front: one
// new frame at the capture size, the copy, the veil, the spinner, the caption and the mark. Prints
// `figure <name> <value> <unit>` lines, medians of repeated runs.
//
// With KESTRUM_PRIVACY_FRAME_DIR set, it also saves one frame of each size there as
// privacy-<width>x<height>.png, for a look by eye.
#include "core/capture/privacy/RecordingPrivacyFrameRenderer.h"

#include <QGuiApplication>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

using namespace kestrum;

// A busy, colourful picture standing in for the last game frame, so the veil has something to hide.
PixelBuffer gameLikeFrame(int width, int height) {
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    QLinearGradient ground(0, 0, width, height);
    ground.setColorAt(0, QColor(34, 92, 58));
    ground.setColorAt(0.5, QColor(120, 110, 70));
    ground.setColorAt(1, QColor(40, 70, 130));
    painter.fillRect(image.rect(), ground);
    painter.setRenderHint(QPainter::Antialiasing);
    for (int i = 0; i < 40; ++i) {
        painter.setBrush(QColor::fromHsv((i * 37) % 360, 200, 230));
        painter.setPen(Qt::NoPen);
        const int side = height / 12 + (i * 13) % (height / 8);
        painter.drawEllipse((i * 97) % width, (i * 53) % height, side, side);
    }
    painter.end();
    std::vector<std::uint8_t> bytes(image.sizeInBytes());
    std::memcpy(bytes.data(), image.constBits(), bytes.size());
    return PixelBuffer(width, height, int(image.bytesPerLine()), std::move(bytes));
}

double medianFrameMs(RecordingPrivacyFrameRenderer& renderer, const PixelBuffer& source, int runs) {
    std::vector<double> samples;
    for (int run = 0; run < runs; ++run) {
        const auto start = std::chrono::steady_clock::now();
        const auto frame = renderer.makeFrame(source);
        samples.push_back(
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
        if (!frame) {
            std::fprintf(stderr, "makeFrame gave no frame at %dx%d\n", source.width(), source.height());
            std::exit(1);
        }
    }
    std::sort(samples.begin(), samples.end());
    return samples[samples.size() / 2];
}

void saveFrame(RecordingPrivacyFrameRenderer& renderer, const PixelBuffer& source, const char* folder) {
    renderer.setAnimationPhase(2);
    const auto frame = renderer.makeFrame(source);
    if (!frame) return;
    const QImage image(frame->data(), frame->width(), frame->height(), frame->bytesPerRow(),
                       QImage::Format_ARGB32_Premultiplied);
    const QString path = QStringLiteral("%1/privacy-%2x%3.png")
                             .arg(QString::fromLocal8Bit(folder))
                             .arg(frame->width())
                             .arg(frame->height());
    if (!image.save(path)) std::fprintf(stderr, "could not save %s\n", qPrintable(path));
}

}  // namespace

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QGuiApplication application(argc, argv);
    const char* frameFolder = std::getenv("KESTRUM_PRIVACY_FRAME_DIR");

    struct Case {
        const char* name;
        int width, height, runs;
    };
    for (const Case& c :
         {Case{"privacy_frame_720p", 1280, 720, 100}, Case{"privacy_frame_1440p", 2560, 1440, 60}}) {
        const PixelBuffer source = gameLikeFrame(c.width, c.height);
        RecordingPrivacyFrameRenderer renderer;
        renderer.makeFrame(source);  // the first frame also reads the mark and lays out the caption
        std::printf("figure %s %.3f ms\n", c.name, medianFrameMs(renderer, source, c.runs));
        if (frameFolder != nullptr) saveFrame(renderer, source, frameFolder);
    }
    return 0;
}

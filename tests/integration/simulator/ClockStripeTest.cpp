// The clock stripe read back from pictures as a recording gives them: scaled, framed by a window manager
// and block-compressed (JPEG at quality 30 standing in for a low-rate video codec).
#include "ClockStripe.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QLinearGradient>
#include <QPainter>

#include <limits>
#include <optional>
#include <vector>

namespace kestrum {
namespace {

constexpr int kWindowFrameTitlePx = 26;
constexpr int kWindowFrameBorderPx = 4;

// A busy picture like the game's: gradients, white and black blocks and circles everywhere, also right of
// and below the stripe's panel, so that the decoder meets runs that are no stripe.
QImage busyPicture(QSize size) {
    QImage picture(size, QImage::Format_RGB32);
    QPainter painter(&picture);
    QLinearGradient shade(0, 0, size.width(), size.height());
    shade.setColorAt(0, QColor(30, 90, 40));
    shade.setColorAt(1, QColor(200, 180, 120));
    painter.fillRect(picture.rect(), shade);
    const int step = size.width() / 20;
    for (int x = 0; x < size.width(); x += step) {
        for (int y = 0; y < size.height(); y += step) {
            const bool white = ((x / step) * 7 + (y / step) * 3) % 5 < 2;
            painter.setBrush(white ? Qt::white : Qt::black);
            painter.drawEllipse(QRect(x, y, step / 2 + (x % 3), step / 3));
        }
    }
    return picture;
}

// The window as a window manager shows it: a bright title bar with dark glyph-like marks and thin
// borders.
QImage framed(const QImage& window) {
    QImage frame(window.width() + 2 * kWindowFrameBorderPx,
                 window.height() + kWindowFrameTitlePx + kWindowFrameBorderPx, QImage::Format_RGB32);
    frame.fill(QColor(220, 220, 225));
    QPainter painter(&frame);
    for (int x = frame.width() / 3; x < frame.width() * 2 / 3; x += 9) {
        painter.fillRect(QRect(x, 8, 5 + x % 3, 11), Qt::black);
    }
    painter.drawImage(kWindowFrameBorderPx, kWindowFrameTitlePx, window);
    return frame;
}

QImage jpeg(const QImage& picture, int quality) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(picture.save(&buffer, "JPEG", quality));
    return QImage::fromData(bytes, "JPEG");
}

struct Recording {
    const char* name;
    QSize windowSize;
    QSize frameSize;  // what the recording scales the (framed) window to
    bool windowManagerFrame;
    int jpegQuality;  // 0: no compression
};

void PrintTo(const Recording& recording, std::ostream* out) {
    *out << recording.name;
}

struct ShownTime {
    qint64 encodedMs;
    qint64 decodedMs;
};

const std::vector<ShownTime> kTimes = {
    {0, 0},
    {1, 1},
    {999, 999},
    {61'234, 61'234},
    {40 * 60'000 + 1, 40 * 60'000 + 1},
    {47 * 60'000 + 59'999, 47 * 60'000 + 59'999},
    {-2'500, -2'500},  // the loading screen counts up to 0
    {std::numeric_limits<std::int32_t>::max(), std::numeric_limits<std::int32_t>::max()},
    {qint64{1} << 40, std::numeric_limits<std::int32_t>::max()},  // beyond 32 bits it is clamped
};

class ClockStripeRoundTrip : public testing::TestWithParam<Recording> {};

TEST_P(ClockStripeRoundTrip, everyTimeReadsBackFromTheRecordedFrame) {
    const Recording& recording = GetParam();
    for (const ShownTime& time : kTimes) {
        QImage window = busyPicture(recording.windowSize);
        encodeClockStripe(window, time.encodedMs);
        QImage frame = recording.windowManagerFrame ? framed(window) : window;
        if (frame.size() != recording.frameSize) {
            frame = frame.scaled(recording.frameSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        }
        if (recording.jpegQuality > 0) frame = jpeg(frame, recording.jpegQuality);
        EXPECT_EQ(decodeClockStripe(frame), std::optional(time.decodedMs)) << "shown " << time.encodedMs;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Recordings, ClockStripeRoundTrip,
    testing::Values(
        Recording{"window_1280x720", {1280, 720}, {1280, 720}, false, 0},
        Recording{"window_1280x720_jpeg30", {1280, 720}, {1280, 720}, false, 30},
        Recording{"scaled_to_640x360_jpeg30", {1280, 720}, {640, 360}, false, 30},
        Recording{"window_1920x1080_scaled_to_640x360_jpeg30", {1920, 1080}, {640, 360}, false, 30},
        Recording{"window_640x360_scaled_to_1920x1080_jpeg30", {640, 360}, {1920, 1080}, false, 30},
        Recording{"odd_window_1000x600_scaled_to_800x480_jpeg30", {1000, 600}, {800, 480}, false, 30},
        Recording{"window_manager_frame_scaled_by_half_jpeg30", {1280, 720}, {644, 375}, true, 30}),
    [](const testing::TestParamInfo<Recording>& info) { return std::string(info.param.name); });

// Pictures that hold no readable clock give absent, never a wrong time.
TEST(ClockStripe, picturesWithoutAClockReadAsAbsent) {
    const QImage noStripe = busyPicture({1280, 720});

    QImage oneCellFlipped = busyPicture({1280, 720});
    encodeClockStripe(oneCellFlipped, 754'321);
    // The cell of the 11th value bit, read in its middle; painting it over in the other colour breaks
    // the checksum.
    const QPoint cellMiddle(16 * (1 + 2 + 10) + 8, 16 + 16);
    const bool wasWhite = qGray(oneCellFlipped.pixel(cellMiddle)) > 128;
    QPainter(&oneCellFlipped)
        .fillRect(QRect(16 * (1 + 2 + 10), 16, 16, 32), wasWhite ? Qt::black : Qt::white);

    QImage veiled = busyPicture({1280, 720});
    encodeClockStripe(veiled, 754'321);
    QPainter(&veiled).fillRect(veiled.rect(), QColor(0, 0, 0, 200));  // a privacy screen over the game

    for (const auto& [name, picture] : {std::pair{"no stripe", noStripe},
                                        {"one cell flipped", oneCellFlipped},
                                        {"veiled", veiled},
                                        {"empty image", QImage()},
                                        {"too small", noStripe.scaled(40, 22)}}) {
        EXPECT_EQ(decodeClockStripe(picture), std::nullopt) << name;
    }
}

}  // namespace
}  // namespace kestrum

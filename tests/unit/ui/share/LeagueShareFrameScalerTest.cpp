// The share window's one scaling step, apart from any display: where the picture goes in the window and
// what its pixels hold.
#include "ui/share/LeagueShareFrameScaler.h"

#include <gtest/gtest.h>

#include <QColor>

#include <cstdlib>
#include <cstring>

namespace kestrum::ui {
namespace {

// A frame whose left half is `left` and right half `right`, rows padded beyond the picture as a pool's
// buffer may be.
std::shared_ptr<const PixelBuffer> halvesFrame(QSize size, QRgb left, QRgb right, int paddingBytes = 64) {
    const int bytesPerRow = size.width() * 4 + paddingBytes;
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(bytesPerRow) * size.height(), 0x55);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const std::uint32_t pixel = (x < size.width() / 2 ? left : right) | 0xFF000000u;
            std::memcpy(&bytes[static_cast<std::size_t>(y) * bytesPerRow + x * 4], &pixel, 4);
        }
    }
    return PixelBuffer::make(size.width(), size.height(), bytesPerRow, std::move(bytes));
}

// Scaling filters round: a colour may come back one or two steps off.
testing::AssertionResult near(QRgb actual, QRgb expected) {
    const int tolerance = 3;
    if (std::abs(qRed(actual) - qRed(expected)) <= tolerance &&
        std::abs(qGreen(actual) - qGreen(expected)) <= tolerance &&
        std::abs(qBlue(actual) - qBlue(expected)) <= tolerance && qAlpha(actual) == 255) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << std::hex << actual << " instead of " << expected;
}

struct FitRow {
    QSize frame;
    QSize area;
    QRect fitted;
};

TEST(LeagueShareFrameScaler, fitsTheFrameCentredWithItsAspect) {
    const FitRow rows[] = {
        {{1920, 1080}, {960, 540}, {0, 0, 960, 540}},
        {{1280, 720}, {960, 540}, {0, 0, 960, 540}},
        {{1024, 768}, {960, 540}, {120, 0, 720, 540}},  // 4:3: bars left and right
        {{2560, 1080}, {960, 540}, {0, 67, 960, 405}},  // 21:9: bars above and below
        {{640, 360}, {960, 540}, {0, 0, 960, 540}},     // enlarged to fill
        {{1281, 721}, {960, 540}, {0, 0, 959, 540}},    // a column lost to the odd source's aspect
        {{100, 1000}, {960, 540}, {453, 0, 54, 540}},
        {{0, 720}, {960, 540}, {}},
        {{1280, 720}, {0, 540}, {}},
    };
    for (const FitRow& row : rows) {
        SCOPED_TRACE(testing::Message() << row.frame.width() << "x" << row.frame.height() << " in "
                                        << row.area.width() << "x" << row.area.height());
        EXPECT_EQ(LeagueShareFrameScaler::fittedRect(row.frame, row.area), row.fitted);
    }
}

struct ScaleRow {
    QSize frame;
    QSize size;
};

TEST(LeagueShareFrameScaler, scalesThePictureWithItsColoursInPlaceAndReusesItsImage) {
    const QRgb red = qRgb(220, 20, 20);
    const QRgb blue = qRgb(20, 40, 230);
    LeagueShareFrameScaler scaler;
    const uchar* firstStore = nullptr;
    // Shrunk, shrunk again to the same size (the store is kept), enlarged, of another aspect.
    for (const ScaleRow& row : {ScaleRow{{1920, 1080}, {960, 540}}, ScaleRow{{1280, 720}, {960, 540}},
                                ScaleRow{{640, 360}, {960, 540}}, ScaleRow{{1024, 768}, {720, 540}}}) {
        SCOPED_TRACE(testing::Message() << row.frame.width() << "x" << row.frame.height());
        const auto frame = halvesFrame(row.frame, red, blue);
        const QImage& image = scaler.scale(*frame, row.size);
        ASSERT_EQ(image.size(), row.size);
        const int w = row.size.width();
        const int h = row.size.height();
        for (const QPoint point : {QPoint(0, 0), QPoint(w / 4, h / 2), QPoint(w / 2 - 3, h - 1)}) {
            EXPECT_TRUE(near(image.pixel(point), red)) << point.x() << "," << point.y();
        }
        for (const QPoint point : {QPoint(w - 1, 0), QPoint(3 * w / 4, h / 2), QPoint(w / 2 + 3, h - 1)}) {
            EXPECT_TRUE(near(image.pixel(point), blue)) << point.x() << "," << point.y();
        }
        if (row.size == QSize(960, 540)) {
            if (!firstStore) firstStore = image.constBits();
            EXPECT_EQ(image.constBits(), firstStore) << "an image of the same size is reused";
        }
    }
}

TEST(LeagueShareFrameScaler, aFrameOfTheTargetSizeIsShownFromItsOwnBytes) {
    LeagueShareFrameScaler scaler;
    const auto frame = halvesFrame({720, 540}, qRgb(1, 2, 3), qRgb(4, 5, 6));
    const QImage& image = scaler.scale(*frame, {720, 540});
    EXPECT_EQ(image.constBits(), frame->data());
    EXPECT_EQ(image.bytesPerLine(), frame->bytesPerRow());
    EXPECT_EQ(image.pixel(700, 10), qRgb(4, 5, 6));
    EXPECT_TRUE(scaler.scale(*frame, {}).isNull());
}

}  // namespace
}  // namespace kestrum::ui

#include "core/capture/privacy/RecordingPrivacyFrameRenderer.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <thread>
#include <vector>

namespace kestrum {
namespace {

struct Bgr {  // channels in 0..255
    double b, g, r;
};
Bgr over(Bgr under, Bgr colour, double alpha) {
    const auto mix = [&](double u, double c) { return u * (1 - alpha) + c * alpha; };
    return {mix(under.b, colour.b), mix(under.g, colour.g), mix(under.r, colour.r)};
}
constexpr Bgr kSource{180, 120, 60};
constexpr Bgr kAccent{0.92 * 255, 0.68 * 255, 0.1 * 255};
const Bgr kVeiled = over(kSource, {0.03 * 255, 0.015 * 255, 0.01 * 255}, 0.9);

Bgr pixel(const PixelBuffer& frame, int x, int row) {
    const std::uint8_t* p = frame.data() + row * frame.bytesPerRow() + x * 4;
    return {double(p[0]), double(p[1]), double(p[2])};
}
bool near(Bgr a, Bgr b, double tolerance) {
    return std::abs(a.b - b.b) <= tolerance && std::abs(a.g - b.g) <= tolerance &&
           std::abs(a.r - b.r) <= tolerance;
}

// Rows padded by default, as capture buffers often are: the first `width` pixels of a wider image.
PixelBuffer solidSource(int width, int height, int paddingPixels = 16) {
    QImage image(width + paddingPixels, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::magenta);  // the padding: a row copied from the wrong offset shows it
    QPainter(&image).fillRect(0, 0, width, height, QColor(int(kSource.r), int(kSource.g), int(kSource.b)));
    return PixelBuffer(width, height, int(image.bytesPerLine()),
                       std::vector<std::uint8_t>(image.constBits(), image.constBits() + image.sizeInBytes()));
}

// The screen is laid out in heights up from the bottom; these answer in top-down rows.
struct Size {
    int width, height;
    double s;
    std::pair<int, int> onSpinner(double degrees) const {  // counter-clockwise from the x axis
        const double angle = degrees * std::numbers::pi / 180;
        return {int(std::floor(width / 2.0 + 22 * s * std::cos(angle))),
                int(std::floor(height / 2.0 - 18 * s - 22 * s * std::sin(angle)))};
    }
    bool inSpinner(int x, int row) const {
        return std::abs(x + 0.5 - width / 2.0) < 27 * s + 1 &&
               std::abs(row + 0.5 - (height / 2.0 - 18 * s)) < 27 * s + 1;
    }
    double captionRow() const { return height / 2.0 + 31 * s; }
    bool inCaption(int x, int row) const {
        return std::abs(x + 0.5 - width / 2.0) < 100 * s && std::abs(row + 0.5 - captionRow()) < 14 * s;
    }
    bool inMark(int x, int row) const {
        return x + 1 > width - 66 * s && x < width - 24 * s && row + 1 > height - 66 * s &&
               row < height - 24 * s;
    }
};
const std::vector<Size> kSizes = {
    {1280, 720, 1}, {2560, 1440, 2}, {3440, 1440, 2}, {1920, 1080, 1.5}, {640, 480, 1}};

// One frame per size, made on a worker thread as the capture queue does: the copy under the veil, the
// caption centred on its ink, the mark blended in its corner, and nothing anywhere else.
TEST(RecordingPrivacyFrameRenderer, LaysOutTheScreenAtEverySize) {
    for (const Size& size : kSizes) {
        SCOPED_TRACE(testing::Message() << size.width << "x" << size.height);
        const PixelBuffer source = solidSource(size.width, size.height);
        const std::vector<std::uint8_t> before(source.data(), source.data() + source.byteCount());
        std::shared_ptr<const PixelBuffer> frame;
        std::thread([&] { frame = RecordingPrivacyFrameRenderer().makeFrame(source); }).join();
        ASSERT_NE(frame, nullptr);
        EXPECT_EQ(std::pair(frame->width(), frame->height()), std::pair(size.width, size.height));
        EXPECT_TRUE(std::equal(before.begin(), before.end(), source.data()));

        int inkLeft = size.width, inkRight = -1, inkTop = size.height, inkBottom = -1, stray = 0, marked = 0;
        double markBrightest = 0;
        for (int row = 0; row < size.height; ++row) {
            for (int x = 0; x < size.width; ++x) {
                const Bgr p = pixel(*frame, x, row);
                if (size.inCaption(x, row) && p.g > kVeiled.g + 40) {
                    inkLeft = std::min(inkLeft, x), inkRight = std::max(inkRight, x);
                    inkTop = std::min(inkTop, row), inkBottom = std::max(inkBottom, row);
                } else if (size.inMark(x, row)) {
                    marked += near(p, kVeiled, 8) ? 0 : 1;
                    markBrightest = std::max(markBrightest, p.g);
                } else if (!size.inSpinner(x, row) && !size.inCaption(x, row)) {
                    stray += near(p, kVeiled, 2) ? 0 : 1;
                }
            }
        }
        EXPECT_EQ(stray, 0);
        ASSERT_GE(inkRight, 0) << "no caption";
        EXPECT_NEAR(inkLeft, size.width - 1 - inkRight, 2);
        EXPECT_NEAR((inkTop + inkBottom + 1) / 2.0, size.captionRow(), 1.5);
        EXPECT_NEAR(inkBottom - inkTop + 1, 16 * size.s, 2.5 * size.s);  // 17 S pixels, not points
        EXPECT_GT(marked, 42 * 42 * size.s * size.s / 4);
        EXPECT_GT(markBrightest, 0.6 * 255);
        EXPECT_LE(markBrightest, 0.72 * 255 + 0.28 * kVeiled.g + 2);  // 72 per cent, never opaque
    }
}

TEST(RecordingPrivacyFrameRenderer, StrokesTheArcCounterClockwiseFromThePhaseAngle) {
    struct Case {
        int phase;
        std::vector<double> arcDegrees, trackDegrees;  // clear of the round caps
    };
    const std::vector<Case> cases = {{0, {15, 60, 115}, {345, 200, 270}},
                                     {4, {155, 200, 260}, {130, 290, 0}},
                                     {9, {335, 0, 80}, {310, 180, 270}}};
    for (const Size& size : {kSizes[0], kSizes[1]}) {
        for (const Case& c : cases) {
            SCOPED_TRACE(testing::Message() << size.width << " phase " << c.phase);
            RecordingPrivacyFrameRenderer renderer;
            renderer.setAnimationPhase(c.phase);
            const auto frame = renderer.makeFrame(solidSource(size.width, size.height, 0));
            ASSERT_NE(frame, nullptr);
            EXPECT_EQ(renderer.animationPhase(), (c.phase + 1) % 10);
            for (const auto& [degrees, colour] :
                 {std::pair{c.arcDegrees, kAccent}, {c.trackDegrees, over(kVeiled, kAccent, 0.25)}}) {
                for (double angle : degrees) {
                    const auto [x, row] = size.onSpinner(angle);
                    EXPECT_TRUE(near(pixel(*frame, x, row), colour, 3)) << angle << " degrees";
                }
            }
        }
    }
}

TEST(RecordingPrivacyFrameRenderer, AdvancesThePhaseOnlyForFramesDrawn) {
    RecordingPrivacyFrameRenderer renderer;
    for (auto [set, expected] : {std::pair{23, 3}, {-1, 9}, {10, 0}}) {
        renderer.setAnimationPhase(set);
        EXPECT_EQ(renderer.animationPhase(), expected) << set;
    }
    const std::vector<std::pair<const char*, PixelBuffer>> invalid = {
        {"no width", PixelBuffer(0, 10, 0, {})},
        {"negative height", PixelBuffer(10, -1, 40, {})},
        {"rows shorter than the width", PixelBuffer(10, 10, 36, std::vector<std::uint8_t>(400))},
        {"bytes short of the last row", PixelBuffer(10, 10, 40, std::vector<std::uint8_t>(399))},
    };
    for (const auto& [label, source] : invalid) EXPECT_EQ(renderer.makeFrame(source), nullptr) << label;
    for (int expected : {1, 2}) {
        ASSERT_NE(renderer.makeFrame(solidSource(64, 36)), nullptr);
        EXPECT_EQ(renderer.animationPhase(), expected);
    }
}

TEST(RecordingPrivacyFrameRenderer, MakesFramesWithoutAMarkThatCannotBeRead) {
    QTemporaryDir folder;
    QFile cut(folder.filePath(QStringLiteral("cut.svg")));
    ASSERT_TRUE(cut.open(QIODevice::WriteOnly) &&
                cut.write("<svg xmlns='http://www.w3.org/2000/svg'><rect") > 0);
    cut.close();
    for (const QString& path : {folder.filePath(QStringLiteral("absent.svg")), cut.fileName()}) {
        SCOPED_TRACE(path.toStdString());
        RecordingPrivacyFrameRenderer renderer(path);
        const auto frame = renderer.makeFrame(solidSource(1280, 720));
        ASSERT_NE(frame, nullptr);
        int marked = 0;
        for (int row = 654; row < 696; ++row) {
            for (int x = 1214; x < 1256; ++x) marked += near(pixel(*frame, x, row), kVeiled, 2) ? 0 : 1;
        }
        EXPECT_EQ(marked, 0);
        EXPECT_EQ(renderer.animationPhase(), 1);
    }
}

}  // namespace
}  // namespace kestrum

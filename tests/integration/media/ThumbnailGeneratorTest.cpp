// Thumbnails of movies made by the ffmpeg program: the frame nearest the time within the tolerance,
// upright, fitted into 1280 by 720 and never enlarged; PNG encoding.
#include "MediaTestSupport.h"
#include "media/ThumbnailGenerator.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

namespace kestrum::test {
namespace {

QString makeMovie(const QTemporaryDir& folder, const char* name, const QString& filter,
                  std::optional<int> rotateDegrees = std::nullopt) {
    const QStringList input{QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"), filter};
    const QStringList output{QStringLiteral("-c:v"),    QStringLiteral("libx264"), QStringLiteral("-pix_fmt"),
                             QStringLiteral("yuv444p"), QStringLiteral("-g"),      QStringLiteral("8")};
    return makeMovieWithFfmpeg(folder.path(), QString::fromLatin1(name), input, output, rotateDegrees);
}

// Blue with a red block in the top-left corner, a quarter of each side. Drawn in 4:4:4 by geq since the
// colour source rounds odd sizes down.
QString cornerFilter(int width, int height) {
    const QString corner = QStringLiteral("lt(X,W/4)*lt(Y,H/4)");
    return QStringLiteral(
               "nullsrc=s=%1x%2:r=4:d=2,format=yuv444p,geq=lum='if(%3,81,41)':cb='if(%3,90,240)':"
               "cr='if(%3,240,110)'")
        .arg(width)
        .arg(height)
        .arg(corner);
}

bool isRed(QRgb pixel) {
    return qRed(pixel) > 200 && qBlue(pixel) < 60;
}

TEST(ThumbnailGenerator, IsUprightAndFittedWithoutEnlarging) {
    KESTRUM_REQUIRE_MEDIA(programAvailable(QStringLiteral("ffmpeg")), "ffmpeg");
    KESTRUM_REQUIRE_MEDIA(encoderAvailable("libx264"), "libx264");
    QTemporaryDir folder;
    struct Case {
        const char* name;
        QString path;
        QSize size;
        // Where the source's top-left red corner must be seen, as fractions of the image.
        QPointF redAt;
    };
    const std::vector<Case> cases{
        {"small landscape stays as it is",
         makeMovie(folder, "small.mov", cornerFilter(640, 360)),
         {640, 360},
         {0.05, 0.05}},
        {"odd size stays as it is",
         makeMovie(folder, "odd.mov", cornerFilter(641, 359)),
         {641, 359},
         {0.05, 0.05}},
        {"1920x1080 shrinks into the box",
         makeMovie(folder, "large.mov", cornerFilter(1920, 1080)),
         {1280, 720},
         {0.05, 0.05}},
        {"2560x720 is limited by its width",
         makeMovie(folder, "wide.mov", cornerFilter(2560, 720)),
         {1280, 360},
         {0.05, 0.05}},
        // ffprobe reads this display matrix as a rotation of 90 degrees counter-clockwise, and the
        // ffmpeg program shows the top-left corner at the bottom left; so must we.
        {"rotated 90 degrees",
         makeMovie(folder, "rotated.mov", cornerFilter(640, 360), 90),
         {360, 640},
         {0.05, 0.95}},
        {"rotated and shrunk",
         makeMovie(folder, "tall.mov", cornerFilter(1280, 720), 90),
         {405, 720},
         {0.05, 0.95}},
        {"upside down",
         makeMovie(folder, "upside.mov", cornerFilter(640, 360), 180),
         {640, 360},
         {0.95, 0.95}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ASSERT_FALSE(c.path.isEmpty()) << "the ffmpeg program could not make the movie";
        const auto image = ThumbnailGenerator::imageAt(c.path, 1.0);
        ASSERT_TRUE(image);
        EXPECT_EQ(image->size(), c.size);
        const QPoint red(static_cast<int>(c.redAt.x() * image->width()),
                         static_cast<int>(c.redAt.y() * image->height()));
        const QPoint opposite(image->width() - 1 - red.x(), image->height() - 1 - red.y());
        EXPECT_TRUE(isRed(image->pixel(red))) << "corner " << red.x() << "," << red.y();
        EXPECT_FALSE(isRed(image->pixel(opposite)));
    }
}

TEST(ThumbnailGenerator, TakesTheNearestFrameWithinTheTolerance) {
    KESTRUM_REQUIRE_MEDIA(programAvailable(QStringLiteral("ffmpeg")), "ffmpeg");
    KESTRUM_REQUIRE_MEDIA(encoderAvailable("libx264"), "libx264");
    QTemporaryDir folder;
    // Frame N is shown from N/4 s, with a grey level of 16 + 12 N; 3 seconds in all (frames 0 to 11).
    const QString path = makeMovie(
        folder, "grey.mov", QStringLiteral("nullsrc=s=320x240:r=4:d=3,geq=lum='16+12*N':cb=128:cr=128"));
    ASSERT_FALSE(path.isEmpty());
    struct Case {
        double seconds;
        std::optional<int> frame;
    };
    const std::vector<Case> cases{
        {0.0, 0},
        {1.1, 4},
        {1.2, 5},
        {2.0, 8},
        {2.74, 11},
        {3.2, 11},
        {3.3, std::nullopt},
        {10.0, std::nullopt},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.seconds);
        const auto image = ThumbnailGenerator::imageAt(path, c.seconds);
        ASSERT_EQ(image.has_value(), c.frame.has_value());
        if (!image) continue;
        // Limited-range luma L shows as about (L - 16) * 255 / 219.
        const double expectedGrey = (12.0 * *c.frame) * 255.0 / 219.0;
        EXPECT_NEAR(qGreen(image->pixel(160, 120)), expectedGrey, 4.0) << "frame " << *c.frame;
    }
}

TEST(ThumbnailGenerator, GivesAbsentForWhatIsNoMovie) {
    QTemporaryDir folder;
    ASSERT_TRUE(writeFileBytes(folder.filePath(QStringLiteral("notes.mov")), QByteArray(4096, 'k')));
    for (const char* name : {"notes.mov", "missing.mov"}) {
        SCOPED_TRACE(name);
        EXPECT_FALSE(ThumbnailGenerator::imageAt(folder.filePath(QString::fromLatin1(name)), 0));
    }
}

TEST(ThumbnailGenerator, EncodesPngThatDecodesToTheSameImage) {
    QImage image(37, 21, QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgba(x * 6, y * 12, (x * y) % 256, 255));
    }
    const QByteArray png = ThumbnailGenerator::encodePng(image);
    ASSERT_TRUE(png.startsWith("\x89PNG"));
    const QImage decoded = QImage::fromData(png, "PNG").convertToFormat(QImage::Format_ARGB32);
    EXPECT_EQ(decoded, image);
    EXPECT_TRUE(ThumbnailGenerator::encodePng(QImage()).isEmpty());
}

}  // namespace
}  // namespace kestrum::test

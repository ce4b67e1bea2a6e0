// measureMovie on movies made by the ffmpeg program: plain, rotated by the display matrix, odd-sized,
// audio only, and files that are no movie at all.
#include "MediaTestSupport.h"
#include "media/MovieProbe.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

namespace kestrum::test {
namespace {

QString makeMovie(const QTemporaryDir& folder, const char* name, const QStringList& input,
                  const QStringList& output, std::optional<int> rotateDegrees = std::nullopt) {
    return makeMovieWithFfmpeg(folder.path(), QString::fromLatin1(name), input, output, rotateDegrees);
}

QStringList colourSource(int width, int height, double seconds) {
    return {QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
            QStringLiteral("nullsrc=s=%1x%2:r=10:d=%3,format=yuv444p").arg(width).arg(height).arg(seconds)};
}

const QStringList kH264{QStringLiteral("-c:v"), QStringLiteral("libx264"), QStringLiteral("-pix_fmt"),
                        QStringLiteral("yuv444p")};

TEST(MovieProbe, MeasuresDurationAndDisplayedAspectRatio) {
    KESTRUM_REQUIRE_MEDIA(programAvailable(QStringLiteral("ffmpeg")), "ffmpeg");
    KESTRUM_REQUIRE_MEDIA(encoderAvailable("libx264"), "libx264");
    QTemporaryDir folder;
    struct Case {
        const char* name;
        QString path;
        double durationSeconds;
        double aspectRatio;
    };
    const QStringList audioSource{QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
                                  QStringLiteral("sine=f=440:d=1.5")};
    const std::vector<Case> cases{
        {"landscape 640x360", makeMovie(folder, "plain.mov", colourSource(640, 360, 2), kH264), 2.0,
         16.0 / 9.0},
        {"rotated by 90 degrees", makeMovie(folder, "rotated.mov", colourSource(640, 360, 2), kH264, 90), 2.0,
         360.0 / 640.0},
        {"rotated by 180 degrees", makeMovie(folder, "upside.mov", colourSource(640, 360, 1), kH264, 180),
         1.0, 640.0 / 360.0},
        {"odd-sized 641x359", makeMovie(folder, "odd.mov", colourSource(641, 359, 3), kH264), 3.0,
         641.0 / 359.0},
        {"audio only falls back to the container and 16/9",
         makeMovie(folder, "audio.mov", audioSource, {QStringLiteral("-c:a"), QStringLiteral("aac")}), 1.5,
         16.0 / 9.0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ASSERT_FALSE(c.path.isEmpty()) << "the ffmpeg program could not make the movie";
        const auto measured = measureMovie(c.path);
        ASSERT_TRUE(measured);
        EXPECT_NEAR(measured->durationSeconds, c.durationSeconds, 0.05);
        EXPECT_NEAR(measured->aspectRatio, c.aspectRatio, 1e-6);
    }
}

TEST(MovieProbe, GivesAbsentForWhatIsNoMovie) {
    QTemporaryDir folder;
    ASSERT_TRUE(writeFileBytes(folder.filePath(QStringLiteral("notes.mov")), QByteArray(4096, 'k')));
    ASSERT_TRUE(writeFileBytes(folder.filePath(QStringLiteral("empty.mov")), QByteArray()));
    for (const char* name : {"notes.mov", "empty.mov", "missing.mov"}) {
        SCOPED_TRACE(name);
        EXPECT_FALSE(measureMovie(folder.filePath(QString::fromLatin1(name))));
    }
}

}  // namespace
}  // namespace kestrum::test

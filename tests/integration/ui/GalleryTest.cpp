// kestrum-ui-gallery as a reviewer runs it: under the tests' X server, against the art host's stand-in,
// writing screenshots of each page in both appearances and sizes; and refusing bad input clearly.
#include "ArtTile.h"
#include "QmlViewHarness.h"
#include "support/ArtHostProcess.h"
#include "support/TestEnvironment.h"
#include "ui/style/StylePalette.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

namespace kestrum::test {
namespace {

struct GalleryRun {
    int exitCode = -1;
    QString output;
};

GalleryRun runGallery(const QStringList& arguments) {
    QProcess gallery;
    gallery.setProcessChannelMode(QProcess::MergedChannels);
    gallery.start(QStringLiteral(KESTRUM_UI_GALLERY), arguments);
    GalleryRun run;
    if (!gallery.waitForFinished(60000)) {
        gallery.kill();
        gallery.waitForFinished();
        run.output = QStringLiteral("the gallery did not finish within 60 s");
        return run;
    }
    run.exitCode = gallery.exitStatus() == QProcess::NormalExit ? gallery.exitCode() : -1;
    run.output = QString::fromUtf8(gallery.readAll());
    return run;
}

double meanLightness(const QImage& image) {
    double sum = 0;
    for (int y = 0; y < image.height(); y += 4) {
        for (int x = 0; x < image.width(); x += 4) sum += image.pixelColor(x, y).lightnessF();
    }
    return sum / ((image.height() / 4.0) * (image.width() / 4.0));
}

class Gallery : public ::testing::Test {
  protected:
    void SetUp() override { KESTRUM_REQUIRE_DISPLAY(); }
    QTemporaryDir folder_;
};

TEST_F(Gallery, WritesEveryPageInBothAppearancesWithoutAWarning) {
    ArtHostProcess host;
    ASSERT_TRUE(host.start()) << host.failure().toStdString();
    const struct {
        const char* page;
        const char* size;
        QSize expected;
    } rows[] = {
        // The review panels' page is mostly the movie, dark in both: it has a test of its own below.
        {"style", "1280x800", {1280, 800}},
        {"icons", "1920x1080", {1920, 1080}},
        {"art", "1280x800", {1280, 800}},
        {"images", "1920x1080", {1920, 1080}},
    };
    for (const auto& row : rows) {
        double lightness[2] = {0, 0};
        for (const int dark : {0, 1}) {
            const QString path =
                folder_.filePath(QStringLiteral("%1-%2.png").arg(QLatin1String(row.page)).arg(dark));
            const GalleryRun run =
                runGallery({QStringLiteral("--page"), QLatin1String(row.page), QStringLiteral("--appearance"),
                            dark ? QStringLiteral("dark") : QStringLiteral("light"), QStringLiteral("--size"),
                            QLatin1String(row.size), QStringLiteral("--art-host"), host.baseAddress(),
                            QStringLiteral("--screenshot"), path});
            ASSERT_EQ(run.exitCode, 0) << row.page << ":\n" << run.output.toStdString();
            // Any QML warning names its file under qrc:/; the gallery's pages load clean.
            EXPECT_FALSE(run.output.contains(QLatin1String("qrc:/"))) << run.output.toStdString();
            EXPECT_FALSE(run.output.contains(QLatin1String("still loading"))) << run.output.toStdString();
            const QImage picture(path);
            ASSERT_EQ(picture.size(), row.expected) << row.page;
            lightness[dark] = meanLightness(picture);
        }
        EXPECT_GT(lightness[0], 0.7) << row.page << " is light in light";
        EXPECT_LT(lightness[1], 0.3) << row.page << " is dark in dark";
    }
}

// Pixels of `colour` in `area` of `picture`.
int pixelsOf(const QImage& picture, const QRect& area, const QColor& colour) {
    int count = 0;
    const QRect inside = area.intersected(picture.rect());
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x)
            count += picture.pixel(x, y) == colour.rgb() ? 1 : 0;
    }
    return count;
}

TEST_F(Gallery, ShowsTheReviewPanelsOnTheLongGameWithTheHoverCardAndEachPopUp) {
    ArtHostProcess host;
    ASSERT_TRUE(host.start()) << host.failure().toStdString();
    constexpr int kStripHeight = 74;
    const struct {
        const char* panel;
        const char* open;   // empty: none
        const char* hover;  // empty: none
        const char* size;
        bool dark;
        QSize expected;
    } rows[] = {
        {"all", "", "", "1280x800", false, {1280, 800}},
        {"all", "filters", "1512", "1920x1080", true, {1920, 1080}},
        {"timeline", "speed", "", "1280x800", true, {1280, 800}},
        {"timeline", "volume", "700", "1920x1080", false, {1920, 1080}},
        {"scoreboard", "", "", "1280x800", false, {1280, 800}},
    };
    for (const auto& row : rows) {
        const QString path = folder_.filePath(
            QStringLiteral("panels-%1-%2.png").arg(QLatin1String(row.panel), QLatin1String(row.open)));
        QStringList arguments{
            QStringLiteral("--panel"),      QLatin1String(row.panel),
            QStringLiteral("--at"),         QStringLiteral("1500"),
            QStringLiteral("--size"),       QLatin1String(row.size),
            QStringLiteral("--appearance"), row.dark ? QStringLiteral("dark") : QStringLiteral("light"),
            QStringLiteral("--art-host"),   host.baseAddress(),
            QStringLiteral("--screenshot"), path};
        if (*row.open) arguments << QStringLiteral("--open") << QLatin1String(row.open);
        if (*row.hover) arguments << QStringLiteral("--hover") << QLatin1String(row.hover);
        const GalleryRun run = runGallery(arguments);
        const std::string what = arguments.join(QLatin1Char(' ')).toStdString();
        ASSERT_EQ(run.exitCode, 0) << what << ":\n" << run.output.toStdString();
        EXPECT_FALSE(run.output.contains(QLatin1String("qrc:/"))) << run.output.toStdString();
        EXPECT_FALSE(run.output.contains(QLatin1String("still loading"))) << run.output.toStdString();
        const QImage picture(path);
        ASSERT_EQ(picture.size(), row.expected) << what;

        const ui::StylePalette& palette = row.dark ? ui::StylePalette::dark() : ui::StylePalette::light();
        const int width = picture.width();
        const int stripTop = picture.height() - kStripHeight;
        const bool timeline = QLatin1String(row.panel) != QLatin1String("scoreboard");
        const bool scoreboard = QLatin1String(row.panel) != QLatin1String("timeline");
        // The play button, in the accent, on the strip's left.
        const QRect playButton(0, stripTop, 80, kStripHeight);
        EXPECT_EQ(pixelsOf(picture, playButton, palette.accent) > 200, timeline) << what;
        // Both teams' colours in the scoreboard over the movie's upper half (below the gallery's own bar).
        const QRect upper(0, 60, width, picture.height() / 2 - 60);
        EXPECT_EQ(pixelsOf(picture, upper, palette.teamBlue) > 100, scoreboard) << what;
        EXPECT_EQ(pixelsOf(picture, upper, palette.teamRed) > 100, scoreboard) << what;
        // Over the movie just above the strip: the hover card (left of where the pop-ups open), and the
        // pop-up above the strip's right side.
        const QRect cardBand(0, stripTop - 40, width - 450, 30);
        EXPECT_EQ(pixelsOf(picture, cardBand, palette.surface) > 400, *row.hover != 0) << what;
        const QRect popUpArea(width - 420, stripTop - 120, 420, 100);
        EXPECT_EQ(pixelsOf(picture, popUpArea, palette.surface) > 2000, *row.open != 0) << what;
    }
}

TEST_F(Gallery, RefusesBadInputWithAClearMessage) {
    const QString corrupt = folder_.filePath(QStringLiteral("corrupt.json"));
    ASSERT_TRUE(writeFileBytes(corrupt, QByteArrayLiteral("{\"events\": [")));
    const QString noDocument = folder_.filePath(QStringLiteral("other.json"));
    ASSERT_TRUE(writeFileBytes(noDocument, QByteArrayLiteral("{\"name\": 1}")));
    const struct {
        QStringList arguments;
        int exitCode;
        const char* says;
    } rows[] = {
        {{QStringLiteral("--appearance"), QStringLiteral("purple")}, 2, "bad --appearance"},
        {{QStringLiteral("--panel"), QStringLiteral("minimap")}, 2, "bad --panel"},
        {{QStringLiteral("--size"), QStringLiteral("100x100")}, 2, "bad --size"},
        {{QStringLiteral("--at"), QStringLiteral("-3")}, 2, "bad --at"},
        {{QStringLiteral("--hover"), QStringLiteral("soon")}, 2, "bad --hover"},
        {{QStringLiteral("--open"), QStringLiteral("menu")}, 2, "bad --open"},
        {{QStringLiteral("--page"), QStringLiteral("settings")}, 2, "bad --page"},
        {{QStringLiteral("--art-host"), QStringLiteral("ftp://x")}, 2, "bad --art-host"},
        {{QStringLiteral("a.json"), QStringLiteral("b.json")}, 2, "at most one DOCUMENT.json"},
        {{folder_.filePath(QStringLiteral("missing.json"))}, 2, "cannot read"},
        {{corrupt}, 2, "is no session document"},
        {{noDocument}, 2, "is no session document"},
        {{QStringLiteral("--screenshot"), QStringLiteral("/proc/no-such-folder/shot.png")},
         1,
         "cannot write the screenshot"},
    };
    for (const auto& row : rows) {
        const GalleryRun run = runGallery(row.arguments);
        EXPECT_EQ(run.exitCode, row.exitCode) << row.arguments.join(QLatin1Char(' ')).toStdString();
        EXPECT_TRUE(run.output.contains(QLatin1String(row.says))) << run.output.toStdString();
    }
}

TEST_F(Gallery, ShowsTheGameArtOfADocumentGiven) {
    ArtHostProcess host;
    ASSERT_TRUE(host.start()) << host.failure().toStdString();
    const QString document = folder_.filePath(QStringLiteral("game.json"));
    ASSERT_TRUE(writeFileBytes(
        document, QByteArrayLiteral(
                      "{\"events\":[],\"scoreboard\":[{\"gameTime\":60,\"videoTime\":61,\"players\":[{"
                      "\"championName\":\"Lux\",\"isDead\":false,\"items\":[],\"level\":3,\"respawnTimer\":0,"
                      "\"scores\":{\"assists\":0,\"creepScore\":4,\"deaths\":0,\"kills\":1},"
                      "\"summonerName\":\"Kestrel\",\"team\":\"ORDER\"}]}]}")));
    const QString path = folder_.filePath(QStringLiteral("document.png"));
    const GalleryRun run = runGallery(
        {document, QStringLiteral("--page"), QStringLiteral("images"), QStringLiteral("--art-host"),
         host.baseAddress(), QStringLiteral("--panel"), QStringLiteral("scoreboard"), QStringLiteral("--at"),
         QStringLiteral("61"), QStringLiteral("--screenshot"), path});
    ASSERT_EQ(run.exitCode, 0) << run.output.toStdString();
    // The document's one champion is the first portrait: its tile's colour is on the page.
    const QImage picture(path);
    const QRgb lux = simulator::ArtTile::colour(QStringLiteral("Lux")).rgb();
    int found = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) found += picture.pixel(x, y) == lux ? 1 : 0;
    }
    EXPECT_GT(found, 200) << "a 48-pixel portrait of Lux";
}

}  // namespace
}  // namespace kestrum::test

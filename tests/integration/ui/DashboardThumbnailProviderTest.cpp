// The "Loading Video..." thumbnail: the provider gives the picture only under the id last published, and
// the overlay of the real view shows the controller's thumbnail as soon as the selection has one, with
// no warning from QML.
#include "QmlViewHarness.h"
#include "ui/dashboard/DashboardThumbnailProvider.h"
#include "unit/core/dashboard/DashboardTestSupport.h"

#include <gtest/gtest.h>

#include <QQuickItem>

namespace kestrum::test {
namespace {

QImage filled(QSize size, QColor colour) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(colour);
    return image;
}

struct ProviderCase {
    const char* name;
    QString publishedID;
    QImage published;
    QString askedID;
    QSize requestedSize;
    QSize expectedSize;
    QColor expectedPixel;
};

TEST(DashboardThumbnailProviderTest, GivesThePictureOnlyUnderTheIDLastPublished) {
    const QImage red = filled({64, 36}, Qt::red);
    const ProviderCase cases[] = {
        {"the id published gives its picture", "thumbnail/3", red, "thumbnail/3", {}, {64, 36}, Qt::red},
        {"a requested size scales within it", "thumbnail/3", red, "thumbnail/3", {32, 32}, {32, 18}, Qt::red},
        {"an older id gives a clear pixel", "thumbnail/4", red, "thumbnail/3", {}, {1, 1}, Qt::transparent},
        {"an id never published gives a clear pixel",
         "thumbnail/3",
         red,
         "nothing",
         {},
         {1, 1},
         Qt::transparent},
        {"no thumbnail any more gives a clear pixel",
         "",
         QImage(),
         "thumbnail/3",
         {},
         {1, 1},
         Qt::transparent},
        {"a null picture is none", "thumbnail/5", QImage(), "thumbnail/5", {}, {1, 1}, Qt::transparent},
    };
    for (const ProviderCase& row : cases) {
        SCOPED_TRACE(row.name);
        ui::DashboardThumbnailProvider provider;
        provider.setThumbnail(QStringLiteral("thumbnail/3"), red);
        provider.setThumbnail(row.publishedID, row.published);
        QSize size;
        const QImage image = provider.requestImage(row.askedID, &size, row.requestedSize);
        ASSERT_FALSE(image.isNull()) << "a null image makes QML warn";
        EXPECT_EQ(image.size(), row.expectedSize);
        EXPECT_EQ(size, row.expectedSize);
        EXPECT_EQ(image.pixelColor(0, 0), row.expectedPixel);
    }
}

QStringList* capturedWarnings = nullptr;

void captureWarning(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message) {
    if (capturedWarnings && type != QtDebugMsg && type != QtInfoMsg) capturedWarnings->append(message);
}

// The controller publishes before its notification, so the binding that names the new id finds the
// picture already there.
TEST(DashboardThumbnailProviderTest, TheLoadingOverlayShowsTheSelectionsThumbnailWithoutAWarning) {
    KESTRUM_REQUIRE_DISPLAY();
    const MatchVideo newest = recording(QStringLiteral("/recordings/newest.mov"));
    const MatchVideo match = recording(QStringLiteral("/recordings/thumbnailed.mov"), 900);
    DashboardHarness dashboard;
    dashboard.loads.thumbnails[match.url] = filled({320, 180}, Qt::darkCyan);
    QmlViewHarness harness;
    auto* provider = new ui::DashboardThumbnailProvider();  // owned by the engine
    provider->follow(dashboard.controller());
    harness.engine().addImageProvider(QString::fromLatin1(ui::DashboardThumbnailProvider::kProviderID),
                                      provider);
    dashboard.controller().appear();
    dashboard.showLibrary({newest, match});
    ASSERT_TRUE(harness.show(QUrl(QStringLiteral("qrc:/qt/qml/Kestrum/Dashboard/DashboardView.qml")),
                             {{QStringLiteral("controller"), QVariant::fromValue(&dashboard.controller())}},
                             {1280, 800}))
        << harness.errors().toStdString();

    QStringList warnings;
    capturedWarnings = &warnings;
    const QtMessageHandler previous = qInstallMessageHandler(captureWarning);
    dashboard.select(match);
    qInstallMessageHandler(previous);
    capturedWarnings = nullptr;

    ASSERT_TRUE(dashboard.controller().showsLoadingOverlay()) << "the detail is still loading";
    QQuickItem* thumbnail = harness.findItem(QStringLiteral("loadingThumbnail"));
    ASSERT_TRUE(thumbnail);
    EXPECT_TRUE(thumbnail->isVisible());
    EXPECT_EQ(thumbnail->property("status").toInt(), 1) << "Image.Ready";
    EXPECT_EQ(thumbnail->property("sourceSize").toSize(), QSize(320, 180));
    EXPECT_TRUE(warnings.isEmpty()) << warnings.join(QLatin1Char('\n')).toStdString();
    dashboard.controller().disappear();
}

}  // namespace
}  // namespace kestrum::test

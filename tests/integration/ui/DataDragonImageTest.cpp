// DataDragonImage in a real window, loading from the simulator's stand-in of the art host through the
// asset store: the placeholder first, then the art stretched to the frame; the placeholder stays when
// the host cannot be reached; a new identifier starts over.
#include "ArtTile.h"
#include "QmlViewHarness.h"
#include "core/settings/SettingsKeys.h"
#include "support/ArtHostProcess.h"
#include "support/TestEnvironment.h"
#include "ui/style/KestrumStyle.h"
#include "ui/style/assets/DataDragonAssets.h"

#include <gtest/gtest.h>

#include <QQuickItem>
#include <QTcpServer>
#include <QTemporaryDir>

#include <memory>

namespace kestrum::test {
namespace {

using ui::DataDragonAssets;

constexpr int kLoadTimeoutMs = 15000;

class DataDragonImageView : public ::testing::Test {
  protected:
    void SetUp() override {
        KESTRUM_REQUIRE_DISPLAY();
        ui::KestrumStyle::instance().setDark(false);
        defaults_ = std::make_unique<UserDefaults>(folder_.filePath(QStringLiteral("defaults.json")));
    }

    // A fresh store (no cache) on `baseAddress`, for the pictures made from now on.
    void useStoreAt(const QString& baseAddress) {
        defaults_->setString(baseAddress, SettingsKeys::dataDragonBaseAddress);
        store_ = std::make_unique<DataDragonAssetStore>(*defaults_, QString());
        DataDragonAssets::instance().setStore(*store_);
    }

    QQuickItem* showImage(const char* identifier) {
        const QByteArray qml =
            QByteArrayLiteral(
                "import QtQuick\nimport Kestrum.Style\nRectangle {\ncolor: Style.background\n"
                "DataDragonImage { objectName: 'art'; x: 20; y: 20; width: 60; height: 60; "
                "kind: DataDragonPicture.Champion; identifier: '") +
            identifier + "' }\n}\n";
        QQuickItem* root = harness_.showText(qml);
        EXPECT_TRUE(root) << harness_.errors().toStdString();
        return root ? root->findChild<QQuickItem*>(QStringLiteral("art")) : nullptr;
    }

    bool loadsEnded() {
        return waitUntil([] { return DataDragonAssets::instance().loadsInFlight() == 0; }, kLoadTimeoutMs);
    }

    QTemporaryDir folder_;
    std::unique_ptr<UserDefaults> defaults_;
    std::unique_ptr<DataDragonAssetStore> store_;
    QmlViewHarness harness_;
};

TEST_F(DataDragonImageView, ShowsThePlaceholderThenTheArtStretchedToTheFrame) {
    ArtHostProcess host;
    ASSERT_TRUE(host.start()) << host.failure().toStdString();
    useStoreAt(host.baseAddress());
    QQuickItem* art = showImage("Ahri");
    ASSERT_TRUE(art);
    EXPECT_FALSE(art->property("hasImage").toBool()) << "nothing has arrived in the first frame";
    ASSERT_TRUE(waitUntil([&] { return art->property("hasImage").toBool(); }, kLoadTimeoutMs));
    const QImage picture =
        harness_.screenshot([] { return DataDragonAssets::instance().loadsInFlight() == 0; });
    // The 120-pixel tile fills the 60-pixel frame: its ground at the frame's corners.
    const QRgb ground = simulator::ArtTile::colour(QStringLiteral("Ahri")).rgb();
    EXPECT_EQ(picture.pixelColor(21, 21).rgb(), ground);
    EXPECT_EQ(picture.pixelColor(78, 78).rgb(), ground);
    EXPECT_EQ(picture.pixelColor(81, 81).rgb(), ui::KestrumStyle::instance().background().rgb())
        << "not beyond it";

    // Another identifier clears the picture and loads its own.
    art->setProperty("identifier", QStringLiteral("Garen"));
    EXPECT_FALSE(art->property("hasImage").toBool());
    ASSERT_TRUE(waitUntil([&] { return art->property("hasImage").toBool(); }, kLoadTimeoutMs));
    EXPECT_EQ(harness_.screenshot().pixelColor(21, 21).rgb(),
              simulator::ArtTile::colour(QStringLiteral("Garen")).rgb());
    EXPECT_TRUE(loadsEnded());
}

TEST_F(DataDragonImageView, KeepsThePlaceholderWhenTheHostCannotBeReached) {
    // A port that was free a moment ago: nothing answers there.
    QTcpServer probe;
    ASSERT_TRUE(probe.listen(QHostAddress::LocalHost, 0));
    const quint16 port = probe.serverPort();
    probe.close();
    useStoreAt(QStringLiteral("http://127.0.0.1:%1").arg(port));
    QQuickItem* art = showImage("Ahri");
    ASSERT_TRUE(art);
    ASSERT_TRUE(loadsEnded()) << "both attempts end";
    EXPECT_FALSE(art->property("hasImage").toBool());
    // The placeholder is the sunken ground with the hairline border.
    EXPECT_EQ(harness_.screenshot().pixelColor(50, 50).rgb(),
              ui::KestrumStyle::instance().surfaceSunken().rgb());
}

TEST_F(DataDragonImageView, RefreshesTheVersionWhenAPanelAsks) {
    ArtHostProcess host;
    ASSERT_TRUE(host.start()) << host.failure().toStdString();
    useStoreAt(host.baseAddress());
    const QByteArray qml = QByteArrayLiteral(
        "import QtQuick\nimport Kestrum.Style\nItem {\nComponent.onCompleted: "
        "DataDragonAssets.refreshVersion()\n"
        "property string version: DataDragonAssets.currentVersion\n}\n");
    QQuickItem* panel = harness_.showText(qml);
    ASSERT_TRUE(panel) << harness_.errors().toStdString();
    EXPECT_TRUE(waitUntil([&] { return panel->property("version").toString() == QLatin1String("16.10.1"); },
                          kLoadTimeoutMs))
        << panel->property("version").toString().toStdString();
}

}  // namespace
}  // namespace kestrum::test

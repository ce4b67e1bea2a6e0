// The simulator's stand-in of the art host, met the way the review window meets the real one: through
// DataDragonAssetStore, with a private settings file and disk cache.
#include "ArtTile.h"
#include "core/assets/DataDragonAssetStore.h"
#include "core/settings/SettingsKeys.h"
#include "support/ArtHostProcess.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QCoroTask>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QTemporaryDir>

#include <memory>

namespace kestrum::test {
namespace {

using simulator::ArtTile;
using Kind = DataDragonAssetStore::AssetKind;

TEST(ArtTile, InitialsFollowTheWordsOfTheIdentifier) {
    const struct {
        const char* identifier;
        const char* initials;
    } rows[] = {
        {"MissFortune", "MF"},
        {"Kai'Sa", "KS"},
        {"Ahri", "Ah"},
        {"KSante", "KS"},
        {"3031", "3031"},
        {"123456", "1234"},
        {"SummonerFlash", "SF"},
        {"Jarvan IV", "JI"},
        {"", "?"},
        {"'_'", "?"},
        {"Nunu&Willump", "NW"},
        {"x", "x"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ArtTile::initials(QString::fromUtf8(row.identifier)), QString::fromUtf8(row.initials))
            << row.identifier;
    }
}

TEST(ArtTile, ColourIsTheIdentifiersOwnOnEveryRun) {
    // The same name always gives the same colour; a name differing in one letter gives another.
    EXPECT_EQ(ArtTile::colour(QStringLiteral("Ahri")), ArtTile::colour(QStringLiteral("Ahri")));
    EXPECT_NE(ArtTile::colour(QStringLiteral("Ahri")), ArtTile::colour(QStringLiteral("Ahrj")));
    // FNV-1a of "Ahri" is fixed by its definition, so the hue is too: a change of hash breaks stored
    // pictures.
    EXPECT_EQ(ArtTile::colour(QStringLiteral("Ahri")).hue(), static_cast<int>(0x21c93469u % 360));
}

class ArtHostTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(host_.start()) << host_.failure().toStdString();
        defaults_ = std::make_unique<UserDefaults>(folder_.filePath(QStringLiteral("defaults.json")));
        defaults_->setString(host_.baseAddress(), SettingsKeys::dataDragonBaseAddress);
        store_ = std::make_unique<DataDragonAssetStore>(*defaults_,
                                                        folder_.filePath(QStringLiteral("DataDragon")));
    }

    QTemporaryDir folder_;
    ArtHostProcess host_;
    std::unique_ptr<UserDefaults> defaults_;
    std::unique_ptr<DataDragonAssetStore> store_;
};

TEST_F(ArtHostTest, VersionRefreshAdoptsTheNewestListedVersion) {
    const QString version = QCoro::waitFor(store_->refreshVersion());
    EXPECT_EQ(version, QStringLiteral("16.10.1"));
    EXPECT_EQ(defaults_->stringForKey(SettingsKeys::dataDragonAssetVersion), QStringLiteral("16.10.1"));
}

TEST_F(ArtHostTest, ServesATileOfEachKindThroughTheStore) {
    const struct {
        Kind kind;
        const char* kindWord;
        const char* identifier;
        const char* fileName;
        int side;
    } rows[] = {
        // An apostrophe travels percent-encoded and comes back as the same identifier.
        {Kind::champion, "champion", "Kai'Sa", "Kai_Sa.png", ArtTile::kChampionSide},
        {Kind::item, "item", "3031", "3031.png", ArtTile::kIconSide},
        {Kind::spell, "spell", "SummonerFlash", "SummonerFlash.png", ArtTile::kIconSide},
    };
    for (const auto& row : rows) {
        const QString identifier = QString::fromUtf8(row.identifier);
        const std::optional<QImage> image = QCoro::waitFor(store_->image(row.kind, identifier));
        ASSERT_TRUE(image) << row.identifier;
        EXPECT_EQ(image->size(), QSize(row.side, row.side)) << row.identifier;
        // The corner is the tile's ground: the identifier's own colour, so the right name reached the host.
        EXPECT_EQ(image->pixelColor(1, 1).rgb(), ArtTile::colour(identifier).rgb()) << row.identifier;
        const QString cached =
            folder_.filePath(QStringLiteral("DataDragon/16.9.1/%1/%2")
                                 .arg(QLatin1String(row.kindWord), QLatin1String(row.fileName)));
        EXPECT_TRUE(QFileInfo::exists(cached)) << cached.toStdString();
    }
}

TEST_F(ArtHostTest, AnswersNotFoundOutsideTheHostsPaths) {
    QNetworkAccessManager network;
    for (const char* path :
         {"/cdn/16.9.1/img/rune/Conqueror.png", "/cdn/16.9.1/champion/Ahri.png", "/api/other.json"}) {
        std::unique_ptr<QNetworkReply> reply(
            network.get(QNetworkRequest(QUrl(host_.baseAddress() + QLatin1String(path)))));
        ASSERT_TRUE(waitUntil([&] { return reply->isFinished(); }, 10000)) << path;
        EXPECT_EQ(reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), 404) << path;
    }
}

TEST(ArtHostCommandLine, RefusesAPortThatIsNoNumber) {
    QProcess simulator;
    simulator.setProcessChannelMode(QProcess::MergedChannels);
    simulator.start(QStringLiteral(KESTRUM_GAME_SIMULATOR),
                    {QStringLiteral("--art-host"), QStringLiteral("http")});
    ASSERT_TRUE(simulator.waitForFinished(30000));
    EXPECT_EQ(simulator.exitCode(), 1);
    EXPECT_TRUE(simulator.readAll().contains("bad --art-host")) << "the refusal names the option";
}

}  // namespace
}  // namespace kestrum::test

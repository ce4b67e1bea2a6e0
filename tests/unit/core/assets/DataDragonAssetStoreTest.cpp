// The asset store against a real HTTP server on loopback, with real files in a private cache folder.
#include "DataDragonTestServer.h"
#include "core/assets/DataDragonAssetStore.h"
#include "core/settings/SettingsKeys.h"

#include <gtest/gtest.h>

#include <QCoroTask>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <memory>
#include <optional>
#include <vector>

namespace kestrum {
namespace {

using Kind = DataDragonAssetStore::AssetKind;
using test::DataDragonTestServer;
using test::pngOfColour;

constexpr QRgb kRed = 0xffff0000;
constexpr QRgb kBlue = 0xff0000ff;

QString imagePath(const QString& version, const QString& kind, const QString& identifier) {
    return QStringLiteral("/cdn/%1/img/%2/%3.png").arg(version, kind, identifier);
}

class DataDragonAssetStoreTest : public ::testing::Test {
  protected:
    DataDragonAssetStoreTest() : defaults_(folder_.filePath(QStringLiteral("defaults.json"))) {
        defaults_.setString(server_.baseAddress(), SettingsKeys::dataDragonBaseAddress);
    }

    std::unique_ptr<DataDragonAssetStore> makeStore(bool withDiskCache = true) {
        return std::make_unique<DataDragonAssetStore>(defaults_, withDiskCache ? diskFolder() : QString());
    }
    QString diskFolder() const { return folder_.filePath(QStringLiteral("DataDragon")); }

    QTemporaryDir folder_;
    DataDragonTestServer server_;
    UserDefaults defaults_;
};

QCoro::Task<std::optional<QImage>> fetch(DataDragonAssetStore& store, Kind kind, QString identifier,
                                         std::optional<QString> version = std::nullopt) {
    return store.image(kind, std::move(identifier), std::move(version));
}

TEST_F(DataDragonAssetStoreTest, ConcurrentViewsOfOneImageShareOneDownload) {
    server_.serve(imagePath("16.9.1", "champion", "Ahri"), 200, pngOfColour(kRed));
    const auto store = makeStore();
    // One view names no version, the other the current one: the same key.
    QCoro::Task<std::optional<QImage>> first = fetch(*store, Kind::champion, "Ahri");
    QCoro::Task<std::optional<QImage>> second = fetch(*store, Kind::champion, "Ahri", "16.9.1");
    const std::optional<QImage> a = QCoro::waitFor(std::move(first));
    const std::optional<QImage> b = QCoro::waitFor(std::move(second));
    ASSERT_TRUE(a && b);
    EXPECT_EQ(a->pixel(0, 0), kRed);
    EXPECT_EQ(b->pixel(0, 0), kRed);
    EXPECT_EQ(server_.requestCount(imagePath("16.9.1", "champion", "Ahri")), 1);
    EXPECT_TRUE(QFile::exists(diskFolder() + "/16.9.1/champion/Ahri.png"));

    // From memory now: no further request; an empty identifier makes none either.
    EXPECT_TRUE(QCoro::waitFor(fetch(*store, Kind::champion, "Ahri")));
    EXPECT_FALSE(QCoro::waitFor(fetch(*store, Kind::champion, "")));
    EXPECT_EQ(server_.totalRequestCount(), 1);
}

TEST_F(DataDragonAssetStoreTest, AFailedImageIsAbsentLeavesNoFileAndIsTriedAgain) {
    struct Case {
        const char* identifier;
        int status;
        QByteArray body;
    };
    const std::vector<Case> cases{
        {"1001", 404, "not found"},
        {"1002", 500, "oops"},
        {"1003", 200, "not an image"},
        {"1004", 201, pngOfColour(kRed)},
    };
    const auto store = makeStore();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.identifier);
        const QString path = imagePath("16.9.1", "item", c.identifier);
        server_.serve(path, c.status, c.body);
        EXPECT_FALSE(QCoro::waitFor(fetch(*store, Kind::item, c.identifier)));
        EXPECT_FALSE(QFile::exists(diskFolder() + "/16.9.1/item/" + c.identifier + ".png"));
        EXPECT_FALSE(QCoro::waitFor(fetch(*store, Kind::item, c.identifier)));
        EXPECT_EQ(server_.requestCount(path), 2);
    }
}

TEST_F(DataDragonAssetStoreTest, AnApostropheIsEncodedInTheUrlAndBecomesAnUnderscoreOnDisk) {
    server_.serve(imagePath("16.9.1", "champion", "Kai'Sa"), 200, pngOfColour(kBlue));
    const auto store = makeStore();
    const std::optional<QImage> image = QCoro::waitFor(fetch(*store, Kind::champion, "Kai'Sa"));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->pixel(0, 0), kBlue);
    ASSERT_EQ(server_.rawTargets().size(), 1);
    EXPECT_TRUE(server_.rawTargets()[0] == "/cdn/16.9.1/img/champion/Kai'Sa.png" ||
                server_.rawTargets()[0] == "/cdn/16.9.1/img/champion/Kai%27Sa.png")
        << server_.rawTargets()[0].toStdString();
    EXPECT_TRUE(QFile::exists(diskFolder() + "/16.9.1/champion/Kai_Sa.png"));
}

TEST(DataDragonAssetStoreNames, FileNamesKeepLettersMarksAndDigitsOnly) {
    const std::vector<std::pair<QString, QString>> cases{
        {"Kai'Sa", "Kai_Sa.png"},         {"Nunu & Willump", "Nunu___Willump.png"},
        {"Ren\u00e9e", "Ren\u00e9e.png"},  // a letter stays
        {"Re\u0301e", "Re\u0301e.png"},    // so does a combining mark
        {"\U0001F600x", "_x.png"},         // one scalar outside the BMP, one "_"
    };
    for (const auto& [identifier, expected] : cases) {
        EXPECT_EQ(DataDragonAssetStore::diskFileName(identifier), expected) << identifier.toStdString();
    }
}

TEST(DataDragonAssetStoreNames, UrlsKeepAnIdentifierInOneSegment) {
    const auto url = DataDragonAssetStore::imageUrl("https://cdn.example/", "16.9.1", Kind::item, "a/b c");
    ASSERT_TRUE(url);
    EXPECT_EQ(url->toString(QUrl::FullyEncoded).toStdString(),
              "https://cdn.example/cdn/16.9.1/img/item/a%2Fb%20c.png");
    EXPECT_FALSE(DataDragonAssetStore::imageUrl("not an address", "16.9.1", Kind::item, "1"));
}

TEST_F(DataDragonAssetStoreTest, TheMemoryCacheHoldsThreeHundredImages) {
    const auto store = makeStore(/*withDiskCache=*/false);
    const int count = DataDragonAssetStore::kMemoryCacheCount + 1;
    for (int i = 0; i < count; ++i) {
        server_.serve(imagePath("16.9.1", "item", QString::number(i)), 200, pngOfColour(kRed, 1));
    }
    for (int i = 0; i < count; ++i)
        ASSERT_TRUE(QCoro::waitFor(fetch(*store, Kind::item, QString::number(i))));
    // The oldest went; the 300 after it all stayed, the oldest of them included.
    ASSERT_TRUE(QCoro::waitFor(fetch(*store, Kind::item, "1")));
    EXPECT_EQ(server_.requestCount(imagePath("16.9.1", "item", "1")), 1);
    ASSERT_TRUE(QCoro::waitFor(fetch(*store, Kind::item, "0")));
    EXPECT_EQ(server_.requestCount(imagePath("16.9.1", "item", "0")), 2);
}

TEST_F(DataDragonAssetStoreTest, TheDiskCacheServesImagesWhenTheServerIsGone) {
    server_.serve(imagePath("16.9.1", "spell", "SummonerFlash"), 200, pngOfColour(kBlue));
    ASSERT_TRUE(QCoro::waitFor(fetch(*makeStore(), Kind::spell, "SummonerFlash")));
    server_.shutDown();

    const auto fresh = makeStore();
    const std::optional<QImage> image = QCoro::waitFor(fetch(*fresh, Kind::spell, "SummonerFlash"));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->pixel(0, 0), kBlue);
    EXPECT_FALSE(QCoro::waitFor(fetch(*fresh, Kind::spell, "SummonerHeal")));
}

struct VersionCase {
    const char* name;
    int status;
    QByteArray body;
    std::optional<QString> expected;  // absent: the version stays
};

TEST_F(DataDragonAssetStoreTest, TheVersionFollowsTheNewestEntryOfAGoodList) {
    const std::vector<VersionCase> cases{
        {"newest first", 200, R"(["16.10.1","16.9.1"])", "16.10.1"},
        {"empty list", 200, "[]", std::nullopt},
        {"not JSON", 200, "<html>", std::nullopt},
        {"not strings", 200, "[16.1]", std::nullopt},
        {"an object", 200, R"({"v":"1"})", std::nullopt},
        {"not found", 404, R"(["16.10.1"])", std::nullopt},
    };
    for (const VersionCase& c : cases) {
        SCOPED_TRACE(c.name);
        defaults_.removeObjectForKey(SettingsKeys::dataDragonAssetVersion);
        server_.serve("/api/versions.json", c.status, c.body);
        const auto store = makeStore();
        QSignalSpy published(store.get(), &DataDragonAssetStore::currentVersionChanged);
        const QString version = QCoro::waitFor(store->refreshVersion());
        EXPECT_EQ(version, c.expected.value_or("16.9.1"));
        EXPECT_EQ(store->currentVersion(), version);
        EXPECT_EQ(published.count(), c.expected ? 1 : 0);
        EXPECT_EQ(defaults_.stringForKey(SettingsKeys::dataDragonAssetVersion), c.expected);
    }
}

TEST_F(DataDragonAssetStoreTest, ConcurrentRefreshesShareOneRequestAndLaterImagesUseTheNewVersion) {
    defaults_.setString("15.1.1", SettingsKeys::dataDragonAssetVersion);
    server_.serve("/api/versions.json", 200, R"(["16.10.1"])");
    server_.serve(imagePath("16.10.1", "item", "1001"), 200, pngOfColour(kBlue));
    server_.serve(imagePath("15.1.1", "item", "1001"), 200, pngOfColour(kRed));
    const auto store = makeStore();
    EXPECT_EQ(store->currentVersion(), "15.1.1");
    QCoro::Task<QString> first = store->refreshVersion();
    QCoro::Task<QString> second = store->refreshVersion();
    EXPECT_EQ(QCoro::waitFor(std::move(first)), "16.10.1");
    EXPECT_EQ(QCoro::waitFor(std::move(second)), "16.10.1");
    EXPECT_EQ(server_.requestCount("/api/versions.json"), 1);

    EXPECT_EQ(QCoro::waitFor(fetch(*store, Kind::item, "1001"))->pixel(0, 0), kBlue);
    EXPECT_EQ(QCoro::waitFor(fetch(*store, Kind::item, "1001", "15.1.1"))->pixel(0, 0), kRed);
    EXPECT_TRUE(QFile::exists(diskFolder() + "/16.10.1/item/1001.png"));
}

}  // namespace
}  // namespace kestrum

// The view's loader on the real store and server, with time moved by hand.
#include "DataDragonTestServer.h"
#include "base/async/ManualClock.h"
#include "core/assets/DataDragonImageLoader.h"
#include "core/settings/SettingsKeys.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <chrono>

namespace kestrum {
namespace {

using Kind = DataDragonAssetStore::AssetKind;
using std::chrono::milliseconds;
using test::waitUntil;

constexpr QRgb kGreen = 0xff00ff00;
constexpr QRgb kRed = 0xffff0000;

class DataDragonImageLoaderTest : public ::testing::Test {
  protected:
    DataDragonImageLoaderTest()
        : defaults_(folder_.filePath(QStringLiteral("defaults.json"))), store_(defaults_, QString()) {
        defaults_.setString(server_.baseAddress(), SettingsKeys::dataDragonBaseAddress);
    }

    static QString path(const char* identifier) {
        return QStringLiteral("/cdn/16.9.1/img/item/%1.png").arg(identifier);
    }

    // Lets the running load reach its end, then reports whether it did.
    static bool finished(const DataDragonImageLoader& loader) {
        return waitUntil([&] { return loader.currentLoad() && loader.currentLoad()->isFinished(); });
    }

    QTemporaryDir folder_;
    test::DataDragonTestServer server_;
    UserDefaults defaults_;
    DataDragonAssetStore store_;
    ManualClock clock_;
};

TEST_F(DataDragonImageLoaderTest, AFailedFirstAttemptIsRetriedOnceAfterTheDelay) {
    DataDragonImageLoader loader(store_, clock_);
    loader.show({Kind::item, "404", std::nullopt});
    ASSERT_TRUE(waitUntil([&] { return clock_.pendingSleepCount() == 1; }));
    EXPECT_EQ(server_.requestCount(path("404")), 1);

    clock_.advance(DataDragonImageLoader::kRetryDelay - milliseconds(1));
    test::processEventsFor(20);
    EXPECT_EQ(server_.requestCount(path("404")), 1);
    clock_.advance(milliseconds(1));
    ASSERT_TRUE(finished(loader));
    EXPECT_EQ(server_.requestCount(path("404")), 2);
    EXPECT_FALSE(loader.image());
    EXPECT_EQ(clock_.pendingSleepCount(), 0u);
}

TEST_F(DataDragonImageLoaderTest, AnImageOnTheFirstAttemptIsShownWithoutWaiting) {
    server_.serve(path("3078"), 200, test::pngOfColour(kGreen));
    DataDragonImageLoader loader(store_, clock_);
    int changes = 0;
    loader.setImageChangedHandler([&] { ++changes; });
    loader.show({Kind::item, "3078", std::nullopt});
    ASSERT_TRUE(finished(loader));
    ASSERT_TRUE(loader.image());
    EXPECT_EQ(loader.image()->pixel(0, 0), kGreen);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(clock_.pendingSleepCount(), 0u);
}

TEST_F(DataDragonImageLoaderTest, ANewIdentityDropsWhatTheOldLoadStillBrings) {
    DataDragonImageLoader loader(store_, clock_);
    loader.show({Kind::item, "1001", std::nullopt});
    ASSERT_TRUE(waitUntil([&] { return clock_.pendingSleepCount() == 1; }));
    // The old load's second attempt would now succeed; the cancelled sleep goes on to it at once.
    server_.serve(path("1001"), 200, test::pngOfColour(kRed));
    server_.serve(path("3006"), 200, test::pngOfColour(kGreen));
    loader.show({Kind::item, "3006", std::nullopt});
    ASSERT_TRUE(finished(loader));
    ASSERT_TRUE(waitUntil([&] { return server_.requestCount(path("1001")) == 2; }));
    test::processEventsFor(50);
    ASSERT_TRUE(loader.image());
    EXPECT_EQ(loader.image()->pixel(0, 0), kGreen);
}

}  // namespace
}  // namespace kestrum

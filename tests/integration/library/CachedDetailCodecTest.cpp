// The detail cache's file form, its keys and the thumbnail memory bound: the parts of the detail loader
// that need no movie.
#include "core/library/detail/CachedDetailCodec.h"
#include "core/library/detail/DetailCacheKeys.h"
#include "core/library/detail/ThumbnailMemoryCache.h"

#include <gtest/gtest.h>

#include <QRegularExpression>

#include <optional>
#include <string>
#include <vector>

namespace kestrum {
namespace {

CachedDetail sampleEntry() {
    CachedDetail entry;
    entry.version = 1;
    entry.fingerprint = {{789456123.123456789, 5'000'000}, {std::nullopt, std::nullopt}};
    RecordingEvent kill;
    kill.id = 7;
    kill.name = "ChampionKill";
    kill.videoTime = 61.25;
    kill.detail = "Kai'Sa \xe2\x86\x92 Lux";
    kill.assisterNames = std::vector<std::string>{"A#EUW", "B#EUW"};
    entry.detail.events = {kill};
    RecordingScoreboardPlayer player;
    player.championName = "Kai'Sa";
    player.summonerName = "A#EUW";
    player.team = "ORDER";
    player.items = {{1, "Statikk Shiv", 3087, 2900, 0}};
    entry.detail.scoreboard = {{60.5, 58.0, {player}}};
    entry.detail.matchData = RecordingMatchData{"EUW1_1", "16.9.1", 420, 1800, std::nullopt, {}, {}};
    entry.detail.duration = 1801.5;
    entry.detail.aspectRatio = 0.5625;
    return entry;
}

TEST(CachedDetailCodec, AnEntryReadsBackAsItWasWritten) {
    std::vector<CachedDetail> entries{sampleEntry(), sampleEntry()};
    entries[1].detail.matchData.reset();
    entries[1].detail.scoreboard.clear();
    entries[1].fingerprint.video = {};
    for (const CachedDetail& entry : entries) {
        const Result<std::string> text = encodeCachedDetail(entry);
        ASSERT_TRUE(text.ok()) << text.error().description.toStdString();
        EXPECT_TRUE(text.value().starts_with(R"({"detail":{"aspectRatio":)")) << text.value();
        const Result<CachedDetail> back = decodeCachedDetail(text.value());
        ASSERT_TRUE(back.ok()) << back.error().description.toStdString();
        EXPECT_EQ(back.value(), entry);
    }
}

TEST(CachedDetailCodec, ABadFileFailsAsAWhole) {
    const std::string good = encodeCachedDetail(sampleEntry()).value();
    const auto replaced = [&](const std::string& from, const std::string& to) {
        std::string text = good;
        const std::size_t at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        return at == std::string::npos ? text : text.replace(at, from.size(), to);
    };
    const std::vector<std::pair<const char*, std::string>> cases{
        {"cut short", good.substr(0, good.size() / 2)},
        {"not an object", "[1]"},
        {"version missing", replaced(R"(,"version":1)", "")},
        {"version a fraction", replaced(R"("version":1)", R"("version":1.5)")},
        {"detail null", replaced(R"({"detail":{)", R"({"detail":null,"x":{)")},
        {"duration a string", replaced(R"("duration":1801.5)", R"("duration":"1801.5")")},
        {"scoreboard missing", replaced(R"(,"scoreboard":)", R"(,"other":)")},
        {"event without name", replaced(R"("name":"ChampionKill",)", "")},
        {"version given twice", replaced(R"("version":1)", R"("version":1,"version":1)")},
        {"duration given twice", replaced(R"("duration":1801.5)", R"("duration":1801.5,"duration":2)")},
    };
    for (const auto& [name, text] : cases) {
        EXPECT_FALSE(decodeCachedDetail(text).ok()) << name;
    }
}

TEST(DetailCacheKeys, KeysAreLowerCaseSha256OfTheStandardizedPath) {
    // sha256("/videos/a.mov") as printed by sha256sum.
    const QString expected =
        QStringLiteral("a40ac1667fb7d5c49b523ad8a47b3c002bd25396ea62a04fbf80da28e53ff7e6");
    const QString key = detailCacheKey(QStringLiteral("/videos/a.mov"));
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^[0-9a-f]{64}$")).match(key).hasMatch());
    EXPECT_EQ(key.toStdString(), expected.toStdString());
    EXPECT_EQ(detailCacheKey(QStringLiteral("/videos/./old/../a.mov")), key);
    EXPECT_NE(detailCacheKey(QStringLiteral("/videos/b.mov")), key);

    // Only the video's stamp is in the thumbnail key; an absent field counts as 0.
    EXPECT_NE(thumbnailCacheKey(key, {100.5, 2048}), thumbnailCacheKey(key, {100.5, 2049}));
    EXPECT_EQ(thumbnailCacheKey(key, {}), thumbnailCacheKey(key, {0.0, 0}));
}

TEST(DetailCacheKeys, AThumbnailIsTakenASecondEarlierButNeverBeforeTheStart) {
    const std::vector<std::pair<std::optional<double>, double>> cases{
        {std::nullopt, 0.0}, {0.0, 0.0}, {0.4, 0.0}, {1.0, 0.0}, {5.5, 4.5}};
    for (const auto& [time, expected] : cases) EXPECT_DOUBLE_EQ(thumbnailRequestTime(time), expected);
}

TEST(ThumbnailMemoryCache, HoldsTwentyFourLeastRecentlyStoredFirstOut) {
    ThumbnailMemoryCache cache;
    const QImage picture(2, 2, QImage::Format_RGB32);
    const auto key = [](int i) { return QStringLiteral("k%1").arg(i); };
    for (int i = 1; i <= 24; ++i) cache.store(key(i), picture);
    // A lookup is no use: k1 stays the oldest.
    EXPECT_TRUE(cache.find(key(1)));
    cache.store(key(25), picture);
    EXPECT_FALSE(cache.find(key(1)));
    EXPECT_TRUE(cache.find(key(2)));
    EXPECT_EQ(cache.order().size(), 24u);

    // Storing k2 again makes it the newest, so k3 is the next to go.
    cache.store(key(2), picture);
    EXPECT_EQ(cache.order().back(), key(2));
    cache.store(key(26), picture);
    EXPECT_TRUE(cache.find(key(2)));
    EXPECT_FALSE(cache.find(key(3)));
}

}  // namespace
}  // namespace kestrum

#include "LibraryTestSupport.h"
#include "core/library/MatchVideoCodec.h"

namespace kestrum {
namespace {

TEST(MatchVideoCodec, RoundTripsWithTheUrlAsEncodedFileUrl) {
    MatchVideo video{.url = "/home/ann/Videos/2026-01-02_10-00-00_Kai'Sa #1.mov",
                     .date = ReferenceDate{789'000'123.25},
                     .matchTitle = "Classic · Kai'Sa",
                     .mediaKind = std::nullopt,
                     .queueID = 420,
                     .champion = "Kaisa",
                     .championAssetName = "Kaisa",
                     .gameVersion = "14.1.1",
                     .gameMode = "CLASSIC",
                     .role = "BOTTOM",
                     .mapID = 11,
                     .finalKills = 10,
                     .finalDeaths = 2,
                     .finalAssists = 8,
                     .finalCreepScore = 250,
                     .killParticipation = 64,
                     .gameDuration = 1834,
                     .finalItemIDs = std::vector<std::int64_t>{3031, 6672},
                     .legendaryItemIDsInPurchaseOrder = std::vector<std::int64_t>{},
                     .didWin = false,
                     .damageReason = "The movie was cut off before it was finished: it has no index."};
    const std::string encoded = encodeMatchVideo(video).value();
    EXPECT_TRUE(encoded.starts_with(
        R"({"champion":"Kaisa","championAssetName":"Kaisa","damageReason":"The movie was cut off )"
        R"(before it was finished: it has no index.","date":789000123.25,)"));
    EXPECT_TRUE(
        encoded.ends_with(R"("url":"file:\/\/\/home\/ann\/Videos\/2026-01-02_10-00-00_Kai'Sa%20%231.mov"})"))
        << encoded;
    EXPECT_EQ(decodeMatchVideo(encoded).value(), video);

    const LibraryCache cache{"/home/ann/Videos",
                             {video, test::entry("/v/a.mov", QDateTime::currentDateTime())}};
    EXPECT_EQ(decodeLibraryCache(encodeLibraryCache(cache).value()).value(), cache);
}

// A path spelled two ways reads as one, and what is read is written back as it was read.
TEST(MatchVideoCodec, ReadsEveryUrlSpellingAsTheCleanPathItWritesBack) {
    const std::vector<std::pair<const char*, const char*>> rows{
        {"file:////Vb.me/a.mov", "/Vb.me/a.mov"},
        {"file:///v//b/./a.mov", "/v/b/a.mov"},
        {"file:///v/My%20Game.mov", "/v/My Game.mov"},
    };
    for (const auto& [url, path] : rows) {
        const std::string document = std::string(R"({"date":1,"url":")") + url + R"("})";
        const MatchVideo read = decodeMatchVideo(document).value();
        EXPECT_EQ(read.url, QString::fromUtf8(path)) << url;
        EXPECT_EQ(decodeMatchVideo(encodeMatchVideo(read).value()).value(), read) << url;
    }
}

TEST(MatchVideoCodec, RejectsWhatNamesNoMovieAndFailsWhole) {
    const std::vector<std::pair<const char*, const char*>> rows{
        {R"({"date":1})", "url: missing required key"},
        {R"({"date":1,"url":"/v/a.mov"})", "url: not a local file URL"},
        {R"({"date":1,"url":"https://example.com/a.mov"})", "url: not a local file URL"},
        {R"({"date":1,"url":"file:e:///v/a.mov"})", "url: not an absolute file URL"},
        {R"({"date":1,"url":"file:v/a.mov"})", "url: not an absolute file URL"},
        {R"({"date":1,"url":7})", "url: expected a file URL string, found a number"},
        {R"({"url":"file:///v/a.mov"})", "date: missing required key"},
        {R"({"date":1,"url":"file:///v/a.mov","finalItemIDs":[1.5]})", "finalItemIDs[0]"},
    };
    for (const auto& [json, reason] : rows) {
        const Result<MatchVideo> decoded = decodeMatchVideo(json);
        ASSERT_FALSE(decoded.ok()) << json;
        EXPECT_TRUE(decoded.error().description.contains(QString::fromUtf8(reason))) << json;
    }
    EXPECT_FALSE(
        decodeLibraryCache(R"({"folderPath":"/v","matches":[{"date":1,"url":"file:///v/a"},{"date":1}]})")
            .ok());
}

}  // namespace
}  // namespace kestrum

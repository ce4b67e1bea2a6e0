// The scanner's disk cache: what one scanner built, the next one (the next launch) takes without
// reading the sidecar, exactly while the stamps hold; a cache file that was not written here counts as
// missing.
#include "LibraryTestSupport.h"
#include "core/library/RecordingLibraryScanner.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

namespace kestrum {
namespace {

constexpr const char* kFirst = "2026-01-02_10-00-00_CLASSIC_Ahri_MIDDLE.mov";
constexpr const char* kSecond = "2026-01-02_11-00-00_ARAM_Lux.mov";

class RecordingLibraryDiskCacheTest : public testing::Test {
  protected:
    QString movie(const char* name) const { return folder_.path() + QLatin1Char('/') + QLatin1String(name); }
    QString cacheFile() const {
        return caches_.path() + QStringLiteral("/Kestrum/RecordingLibraryScan.json");
    }

    void writeTitled(const char* name, const std::string& title) {
        RecordingSessionData session = test::savedSession();
        session.title = title;
        test::writeSidecar(movie(name), session);
    }
    // A title of the same length written over the sidecar, its modification time put back: the stamp
    // does not change, so only a scanner that reads the file sees the new title.
    void retitleUnstamped(const char* name, const std::string& title) {
        const QString sidecar = sessionDocumentPath(movie(name));
        const QDateTime modified = QFileInfo(sidecar).lastModified();
        writeTitled(name, title);
        QFile file(sidecar);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.setFileTime(modified, QFileDevice::FileModificationTime));
    }
    // A scan by a new scanner, as at the next launch; returns the titles by movie file name. The cache
    // file is written behind the scan, and waited for.
    std::map<QString, std::string> launchAndScan(const QString& diskCacheFile) {
        RecordingLibraryScanner scanner(diskCacheFile);
        std::map<QString, std::string> titles;
        const std::vector<MatchVideo> matches = scanner.scan(folder_.path()).result().value();
        for (const MatchVideo& match : matches)
            titles[QFileInfo(match.url).fileName()] = match.matchTitle.value_or("");
        (void)scanner.cachedPaths();
        return titles;
    }
    std::optional<LibraryScanCache> cacheOnDisk() const {
        const QByteArray bytes = test::readFileBytes(cacheFile());
        return decodeLibraryScanCache(std::string_view(bytes.constData(), bytes.size())).toOptional();
    }

    QTemporaryDir folder_;
    QTemporaryDir caches_;
};

TEST_F(RecordingLibraryDiskCacheTest, ALaunchRebuildsOnlyWhatChanged) {
    test::writeFile(movie(kFirst));
    test::writeFile(movie(kSecond));
    writeTitled(kFirst, "My game A");
    writeTitled(kSecond, "My game B");
    EXPECT_EQ(launchAndScan(cacheFile())[kFirst], "My game A");

    retitleUnstamped(kFirst, "My game X");
    writeTitled(kSecond, "My game B, again");
    const std::map<QString, std::string> relaunched = launchAndScan(cacheFile());
    EXPECT_EQ(relaunched.at(kFirst), "My game A") << "an unchanged sidecar was read again";
    EXPECT_EQ(relaunched.at(kSecond), "My game B, again");
    // Without the disk cache the first sidecar is read, which tells the two apart.
    EXPECT_EQ(launchAndScan(QString()).at(kFirst), "My game X");

    ASSERT_TRUE(QFile::remove(movie(kSecond)));
    launchAndScan(cacheFile());
    const std::optional<LibraryScanCache> stored = cacheOnDisk();
    ASSERT_TRUE(stored);
    ASSERT_EQ(stored->recordings.size(), 1u);
    EXPECT_EQ(stored->recordings[0].match.url, movie(kFirst));
    EXPECT_EQ(stored->recordings[0].fingerprint.sidecar,
              LibraryScanCache::FileStamp::of(sessionDocumentPath(movie(kFirst))));
}

TEST_F(RecordingLibraryDiskCacheTest, ACacheFileNotWrittenHereCountsAsMissing) {
    test::writeFile(movie(kFirst));
    writeTitled(kFirst, "My game A");
    launchAndScan(cacheFile());
    const QByteArray good = test::readFileBytes(cacheFile());
    ASSERT_FALSE(good.isEmpty());
    retitleUnstamped(kFirst, "My game X");

    const auto edited = [&](const std::function<void(LibraryScanCache&)>& edit) {
        LibraryScanCache cache = decodeLibraryScanCache(good.toStdString()).value();
        edit(cache);
        return QByteArray::fromStdString(encodeLibraryScanCache(cache).value());
    };
    const std::vector<std::pair<const char*, QByteArray>> rows{
        {"the file as written", good},
        {"cut short", good.left(good.size() - 2)},
        {"not JSON", "\x89PNG\r\n"},
        {"an empty file", ""},
        {"another version", edited([](LibraryScanCache& cache) { cache.version = 2; })},
        {"a movie listed twice",
         edited([](LibraryScanCache& cache) { cache.recordings.push_back(cache.recordings[0]); })},
        {"a movie named by a web address", QByteArray(good).replace("file://", "https://x")},
        {"a size that is text", QByteArray(good).replace("\"fileSize\":", "\"fileSize\":\"1\",\"x\":")},
    };
    for (const auto& [what, bytes] : rows) {
        SCOPED_TRACE(what);
        ASSERT_TRUE(test::writeFileBytes(cacheFile(), bytes));
        const bool trusted = bytes == good;
        EXPECT_EQ(launchAndScan(cacheFile()).at(kFirst), trusted ? "My game A" : "My game X");
        // Rebuilt entries are written back; a trusted file with nothing changed is left alone.
        const std::optional<LibraryScanCache> stored = cacheOnDisk();
        ASSERT_TRUE(stored);
        EXPECT_EQ(stored->version, LibraryScanCache::currentVersion);
        ASSERT_EQ(stored->recordings.size(), 1u);
        EXPECT_EQ(stored->recordings[0].match.matchTitle, trusted ? "My game A" : "My game X");
    }
}

TEST_F(RecordingLibraryDiskCacheTest, ACacheThatCannotBeWrittenLosesNothingButTheSpeed) {
    test::writeFile(movie(kFirst));
    writeTitled(kFirst, "My game A");
    // The cache's folder is taken by a file.
    test::writeFile(caches_.path() + QStringLiteral("/Kestrum"), "not a folder");
    EXPECT_EQ(launchAndScan(cacheFile()).at(kFirst), "My game A");
    EXPECT_FALSE(QFileInfo::exists(cacheFile()));
    retitleUnstamped(kFirst, "My game X");
    EXPECT_EQ(launchAndScan(cacheFile()).at(kFirst), "My game X");
}

// A quit during a long scan: the scanner's end waits for the movie at hand only. What the scan built stays
// cached, what it did not reach keeps what an earlier launch cached, and a scan queued behind gives nothing.
TEST_F(RecordingLibraryDiskCacheTest, EndedDuringAScanItStopsBeforeTheNextMovieAndKeepsTheCache) {
    std::vector<std::string> names;
    for (int day = 1; day <= 6; ++day) {
        names.push_back(
            QStringLiteral("2026-01-0%1_10-00-00_CLASSIC_Ahri_MIDDLE.mov").arg(day).toStdString());
        test::writeFile(movie(names.back().c_str()));
        writeTitled(names.back().c_str(), "Earlier");
    }
    launchAndScan(cacheFile());
    for (const std::string& name : names) writeTitled(name.c_str(), "Changed title");

    std::atomic<int> started = 0;
    std::atomic<bool> ending = false;
    auto scanner = std::make_unique<RecordingLibraryScanner>(cacheFile(), [&](const QFileInfo&) {
        // The first movie is held until the scanner's end has begun, and a little longer.
        if (started.fetch_add(1) == 0) {
            while (!ending) std::this_thread::sleep_for(std::chrono::milliseconds(1));
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
        return std::optional<QDateTime>();
    });
    QFuture<Result<std::vector<MatchVideo>>> scan = scanner->scan(folder_.path());
    QFuture<Result<std::vector<MatchVideo>>> queued = scanner->scan(folder_.path());
    ASSERT_TRUE(test::waitUntil([&] { return started >= 1; }));
    ending = true;
    scanner.reset();

    EXPECT_EQ(started, 1) << "the end waited for movies the scan had not reached";
    EXPECT_TRUE(scan.result().value().empty());
    EXPECT_TRUE(queued.result().value().empty());
    const std::optional<LibraryScanCache> stored = cacheOnDisk();
    ASSERT_TRUE(stored);
    ASSERT_EQ(stored->recordings.size(), names.size());
    int rebuilt = 0;
    for (const LibraryScanCache::Recording& recording : stored->recordings) {
        rebuilt += recording.match.matchTitle == "Changed title" ? 1 : 0;
    }
    EXPECT_EQ(rebuilt, 1);
}

TEST(LibraryScanCacheCodec, RoundTripsStampsWithAbsentParts) {
    LibraryScanCache cache;
    cache.recordings.push_back(
        {{{ReferenceDate{812'345'678.125}, 1'048'576}, {}},
         test::entry("/v/2026-01-02_10-00-00_ARAM_Lux.mov", QDateTime::currentDateTime())});
    cache.recordings.push_back(
        {{{std::nullopt, 0}, {ReferenceDate{-1.5}, std::nullopt}}, test::entry("/v/b c.mp4", QDateTime())});
    const std::string encoded = encodeLibraryScanCache(cache).value();
    EXPECT_TRUE(
        encoded.starts_with(R"({"recordings":[{"fingerprint":{"sidecar":{},"video":{"fileSize":1048576,)"
                            R"("modificationDate":812345678.125}},"match":{)"))
        << encoded;
    EXPECT_TRUE(encoded.ends_with(R"(],"version":2})")) << encoded;
    EXPECT_EQ(decodeLibraryScanCache(encoded).value(), cache);
}

}  // namespace
}  // namespace kestrum

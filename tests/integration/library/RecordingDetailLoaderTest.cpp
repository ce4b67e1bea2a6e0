// The detail loader on real movies written by the FFmpeg writer, real sidecars and a real cache folder.
#include "../media/MediaTestSupport.h"
#include "base/async/Detached.h"
#include "core/library/detail/CachedDetailCodec.h"
#include "core/library/detail/DetailCacheKeys.h"
#include "core/library/detail/RecordingDetailLoader.h"
#include "core/telemetry/RecordingSidecarStore.h"
#include "core/telemetry/SessionDocumentBuilder.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QCoroFuture>
#include <QCoroTask>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <memory>
#include <string_view>

namespace kestrum::test {
namespace {

// A two-second 320x180 movie (or the given size) with one frame every 0.1 s.
QString writeSmallMovie(const QString& path, int width = 320, int height = 180) {
    MovieScript script;
    script.video = videoOutputSettings(OutputResolution::native, OutputFrameRate::fps30, width, height);
    script.frameSeconds = evenFrameTimes(0, 2.0, 10);
    return writeMovie(path, script).status == MovieWriterStatus::completed ? path : QString();
}

MatchVideo videoAt(const QString& path) {
    MatchVideo video;
    video.url = path;
    return video;
}

QCoro::Task<std::shared_ptr<const RecordingDetail>> awaited(
    QFuture<std::shared_ptr<const RecordingDetail>> future) {
    co_return co_await future;
}

RecordingSessionData sessionWithEvents(int count) {
    RecordingSessionData session;
    for (int i = 0; i < count; ++i) {
        RecordingEvent event;
        event.id = i;
        event.name = "TurretKilled";
        event.videoTime = 0.5 + i;
        session.events.push_back(event);
    }
    return session;
}

class RecordingDetailLoaderTest : public ::testing::Test {
  protected:
    void SetUp() override {
        KESTRUM_REQUIRE_MEDIA(encoderAvailable("libx264"), "libx264");
        movie_.url =
            writeSmallMovie(folder_.filePath(QStringLiteral("2026-01-02_10-00-00_CLASSIC_Ahri_MIDDLE.mov")));
        ASSERT_FALSE(movie_.url.isEmpty());
    }

    // Disk cache files are written after their results are given; let them land before the folder goes.
    void TearDown() override { utilityPool().waitForDone(); }

    QString cacheFolder() const { return folder_.filePath(QStringLiteral("RecordingDetails")); }
    QString detailFile() const { return cacheFolder() + '/' + detailCacheKey(movie_.url) + ".json"; }
    void writeSidecar(const RecordingSessionData& session) {
        ASSERT_TRUE(
            RecordingSidecarStore::shared().writeSessionData(session, sessionDocumentPath(movie_.url)).ok());
    }
    // An entry for the movie as the files stand now, of `version`, with a duration no measure gives.
    void writeForgedEntry(std::int64_t version) {
        CachedDetail entry;
        entry.version = version;
        entry.fingerprint = {takeFileStamp(movie_.url), takeFileStamp(sessionDocumentPath(movie_.url))};
        entry.detail.duration = 123.0;
        ASSERT_TRUE(QDir().mkpath(cacheFolder()));
        ASSERT_TRUE(
            writeFileBytes(detailFile(), QByteArray::fromStdString(encodeCachedDetail(entry).value())));
    }
    std::optional<CachedDetail> entryOnDisk() const {
        const QByteArray bytes = readFileBytes(detailFile());
        return decodeCachedDetail(std::string_view(bytes.constData(), bytes.size())).toOptional();
    }
    // The disk file is filled once the caller has its detail; waits for an entry of this layout holding
    // `detail`.
    bool diskHolds(const RecordingDetail& detail) const {
        return waitUntil([&] {
            const std::optional<CachedDetail> entry = entryOnDisk();
            return entry && entry->version == RecordingDetailLoader::cacheVersion && entry->detail == detail;
        });
    }

    QTemporaryDir folder_;
    MatchVideo movie_;
};

TEST_F(RecordingDetailLoaderTest, ReadsTheSidecarMeasuresTheMovieAndFollowsAChangedSidecar) {
    writeSidecar(sessionWithEvents(3));
    RecordingDetailLoader loader(cacheFolder());
    // Awaited on the main thread, as the review window does.
    const std::shared_ptr<const RecordingDetail> detail = QCoro::waitFor(awaited(loader.detail(movie_)));
    ASSERT_TRUE(detail);
    EXPECT_EQ(detail->events.size(), 3u);
    EXPECT_NEAR(detail->duration, 2.0, 0.15);
    EXPECT_NEAR(detail->aspectRatio, 16.0 / 9.0, 1e-6);
    EXPECT_TRUE(diskHolds(*detail));

    // A repeat look is the very same entry.
    EXPECT_EQ(loader.detail(movie_).result(), detail);

    writeSidecar(sessionWithEvents(5));
    const std::shared_ptr<const RecordingDetail> changed = loader.detail(movie_).result();
    EXPECT_EQ(changed->events.size(), 5u);
    EXPECT_TRUE(diskHolds(*changed));
    EXPECT_EQ(entryOnDisk()->fingerprint.sidecar, takeFileStamp(sessionDocumentPath(movie_.url)));
}

TEST_F(RecordingDetailLoaderTest, AMatchingDiskEntryIsUsedAndAnyOtherIsReplaced) {
    constexpr std::int64_t kVersion = RecordingDetailLoader::cacheVersion;
    writeSidecar(sessionWithEvents(2));
    struct Case {
        const char* name;
        std::function<void()> prepare;
        bool fromDisk;
    };
    const std::vector<Case> cases{
        {"this version with the files' stamps", [&] { writeForgedEntry(kVersion); }, true},
        {"the version before", [&] { writeForgedEntry(kVersion - 1); }, false},
        {"a later version", [&] { writeForgedEntry(kVersion + 1); }, false},
        {"corrupt JSON", [&] { ASSERT_TRUE(writeFileBytes(detailFile(), R"({"detail":{"aspectRatio":)")); },
         false},
        {"a stale sidecar stamp",
         [&] {
             writeForgedEntry(kVersion);
             writeSidecar(sessionWithEvents(4));
         },
         false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        c.prepare();
        // A fresh loader has nothing in memory: what it gives comes from the disk or from the files.
        RecordingDetailLoader loader(cacheFolder());
        const std::shared_ptr<const RecordingDetail> detail = loader.detail(movie_).result();
        ASSERT_TRUE(detail);
        if (c.fromDisk) {
            EXPECT_DOUBLE_EQ(detail->duration, 123.0);
            continue;
        }
        EXPECT_NEAR(detail->duration, 2.0, 0.15);
        // The bad entry was not deleted but overwritten with a good one.
        EXPECT_TRUE(diskHolds(*detail));
    }
}

TEST_F(RecordingDetailLoaderTest, AMissingSidecarGivesAnEmptyTimelineAndAPortraitMovieARatioBelowOne) {
    const QString portrait = writeSmallMovie(folder_.filePath(QStringLiteral("portrait.mov")), 180, 320);
    ASSERT_FALSE(portrait.isEmpty());
    RecordingDetailLoader loader(cacheFolder());
    const auto detail = loader.detail(videoAt(portrait)).result();
    EXPECT_TRUE(detail->events.empty());
    EXPECT_TRUE(detail->scoreboard.empty());
    EXPECT_FALSE(detail->matchData);
    EXPECT_NEAR(detail->aspectRatio, 180.0 / 320.0, 1e-6);

    KESTRUM_REQUIRE_MEDIA(programAvailable(QStringLiteral("ffmpeg")), "ffmpeg");
    // A landscape picture that the track's transform turns upright.
    const QString rotated = makeMovieWithFfmpeg(folder_.path(), QStringLiteral("rotated.mov"),
                                                {"-f", "lavfi", "-i", "testsrc=s=320x180:r=10:d=1"},
                                                {"-c:v", "libx264", "-pix_fmt", "yuv420p"}, 90);
    ASSERT_FALSE(rotated.isEmpty());
    EXPECT_NEAR(loader.detail(videoAt(rotated)).result()->aspectRatio, 180.0 / 320.0, 1e-6);
}

TEST_F(RecordingDetailLoaderTest, ThumbnailsComeFromMemoryThenDiskAndTheTwentyFifthEvictsTheFirst) {
    // 25 recordings: copies of one movie, each its own key.
    std::vector<MatchVideo> movies;
    for (int i = 0; i < 25; ++i) {
        const QString copy = folder_.filePath(QStringLiteral("copy-%1.mov").arg(i));
        ASSERT_TRUE(QFile::copy(movie_.url, copy));
        movies.push_back(videoAt(copy));
    }
    RecordingDetailLoader loader(cacheFolder());
    EXPECT_FALSE(loader.cachedThumbnail(movies[0]).result());
    for (const MatchVideo& movie : movies) {
        const std::optional<QImage> picture = loader.thumbnail(movie, 1.5).result();
        ASSERT_TRUE(picture);
        EXPECT_EQ(picture->size(), QSize(320, 180));
    }
    // The files are written once the pictures are given.
    const auto pngs = [&] { return QDir(cacheFolder()).entryList({"*.png"}, QDir::Files); };
    ASSERT_TRUE(waitUntil([&] { return pngs().size() == 25; }));

    // A new loader reads them from disk without making any.
    EXPECT_TRUE(RecordingDetailLoader(cacheFolder()).cachedThumbnail(movies[0]).result());

    // Without the disk files only the memory is left: 24 pictures, the first one gone.
    for (const QString& png : pngs()) ASSERT_TRUE(QFile::remove(cacheFolder() + '/' + png));
    EXPECT_FALSE(loader.cachedThumbnail(movies[0]).result());
    EXPECT_TRUE(loader.cachedThumbnail(movies[1]).result());
    EXPECT_TRUE(loader.cachedThumbnail(movies[24]).result());
}

// A new recording saved under the name of an older one replaces its file: its card must not keep the
// old picture, from memory or from disk.
TEST_F(RecordingDetailLoaderTest, AReplacedMovieGetsANewThumbnail) {
    RecordingDetailLoader loader(cacheFolder());
    const std::optional<QImage> old = loader.thumbnail(movie_, 1.5).result();
    ASSERT_TRUE(old);
    EXPECT_EQ(old->size(), QSize(320, 180));

    const QString newer = writeSmallMovie(folder_.filePath(QStringLiteral("newer.mov")), 160, 90);
    ASSERT_FALSE(newer.isEmpty());
    ASSERT_TRUE(QFile::remove(movie_.url));
    ASSERT_TRUE(QFile::rename(newer, movie_.url));
    EXPECT_FALSE(loader.cachedThumbnail(movie_).result());
    EXPECT_FALSE(RecordingDetailLoader(cacheFolder()).cachedThumbnail(movie_).result());
    const std::optional<QImage> replaced = loader.thumbnail(movie_, 1.5).result();
    ASSERT_TRUE(replaced);
    EXPECT_EQ(replaced->size(), QSize(160, 90));
}

TEST_F(RecordingDetailLoaderTest, AMovieThatCannotBeOpenedSpansTheGameItsDocumentTells) {
    // The first half of a real movie: its index is gone, as after a crash mid-write.
    const QByteArray whole = readFileBytes(movie_.url);
    const QString damaged = folder_.filePath(QStringLiteral("2026-01-02_11-00-00_CLASSIC_Ahri_MIDDLE.mov"));
    ASSERT_TRUE(writeFileBytes(damaged, whole.left(whole.size() / 2)));
    RecordingSessionData session = sessionWithEvents(2);
    RecordingEvent start;
    start.id = 99;
    start.name = "GameStart";
    start.videoTime = 6;
    session.events.insert(session.events.begin(), start);
    RecordingScoreboardSnapshot last;
    last.videoTime = 1505;
    last.gameTime = 1500;
    session.scoreboard = std::vector<RecordingScoreboardSnapshot>{last};
    ASSERT_TRUE(RecordingSidecarStore::shared().writeSessionData(session, sessionDocumentPath(damaged)).ok());
    const QString bare = folder_.filePath(QStringLiteral("bare.mov"));
    ASSERT_TRUE(writeFileBytes(bare, "not a movie"));

    RecordingDetailLoader loader(cacheFolder());
    const std::shared_ptr<const RecordingDetail> detail = loader.detail(videoAt(damaged)).result();
    ASSERT_TRUE(detail);
    EXPECT_EQ(detail->events.size(), 3u);
    EXPECT_DOUBLE_EQ(detail->duration, 1506.0);
    EXPECT_NEAR(detail->aspectRatio, 16.0 / 9.0, 1e-6);
    const std::shared_ptr<const RecordingDetail> nothing = loader.detail(videoAt(bare)).result();
    ASSERT_TRUE(nothing);
    EXPECT_TRUE(nothing->events.empty());
    EXPECT_EQ(nothing->duration, 0);
}

TEST_F(RecordingDetailLoaderTest, AFileThatIsNoMovieGivesNoThumbnailAndLeavesNothingBehind) {
    const QString fake = folder_.filePath(QStringLiteral("fake.mov"));
    ASSERT_TRUE(writeFileBytes(fake, "not a movie"));
    RecordingDetailLoader loader(cacheFolder());
    EXPECT_FALSE(loader.thumbnail(videoAt(fake), 3.0).result());
    EXPECT_TRUE(QDir(cacheFolder()).entryList({"*.png"}, QDir::Files).isEmpty());
}

}  // namespace
}  // namespace kestrum::test

#include "LibraryTestSupport.h"
#include "core/library/MatchVideoDerivation.h"
#include "core/library/RecordingLibraryDate.h"
#include "core/library/RecordingLibraryScanner.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace kestrum {
namespace {

using std::nullopt;
using test::snapshotAt;
using Status = RecordingEnrichmentState::Status;

constexpr const char* kClassicAhri = "2026-01-02_10-00-00_CLASSIC_Ahri_MIDDLE.mov";

class RecordingLibraryScannerTest : public testing::Test {
  protected:
    QString path(const QString& relative) const { return folder_.path() + QLatin1Char('/') + relative; }

    std::vector<MatchVideo> scan(const QString& folder) {
        Result<std::vector<MatchVideo>> scanned = scanner_.scan(folder).result();
        EXPECT_TRUE(scanned.ok());
        return scanned ? std::move(scanned).value() : std::vector<MatchVideo>{};
    }
    std::vector<MatchVideo> scan() { return scan(folder_.path()); }

    MatchVideo scanOne() {
        const std::vector<MatchVideo> matches = scan();
        return matches.size() == 1 ? matches.front() : MatchVideo{};
    }

    static void setModified(const QString& file, const QDateTime& date) {
        QFile handle(file);
        ASSERT_TRUE(handle.open(QIODevice::ReadWrite));
        ASSERT_TRUE(handle.setFileTime(date, QFileDevice::FileModificationTime));
    }

    QTemporaryDir folder_;
    RecordingLibraryScanner scanner_;
};

QStringList sortedRelativePaths(const std::vector<MatchVideo>& matches, const QString& root) {
    QStringList paths;
    for (const auto& match : matches) paths << QDir(root).relativeFilePath(match.url);
    paths.sort();
    return paths;
}

TEST_F(RecordingLibraryScannerTest, ListsMoviesByExtensionOutsideHiddenItemsAndPackages) {
    for (const char* file :
         {"a.mov", "B.MP4", "c.mkv", "orphan.json", ".hidden.mov", "sub/d.mov", "sub/deep/e.Mp4",
          ".hiddenfolder/f.mov", "Game.app/g.mov", "Old.PhotosLibrary/h.mp4", "x.bundle/i.mov"}) {
        test::writeFile(path(QString::fromUtf8(file)));
    }
    EXPECT_EQ(sortedRelativePaths(scan(), folder_.path()),
              (QStringList{"B.MP4", "a.mov", "sub/d.mov", "sub/deep/e.Mp4"}));
}

// The cache holds the paths of the last listed folder; a folder that cannot be listed changes nothing.
TEST_F(RecordingLibraryScannerTest, CacheFollowsTheLastListedFolder) {
    test::writeFile(path("one/a.mov"));
    test::writeFile(path("two/b.mov"));
    ASSERT_EQ(scan(path("one")).size(), 1u);
    EXPECT_TRUE(scan(path("missing")).empty());
    EXPECT_TRUE(scan(path("one/a.mov")).empty());  // a file is no folder
    EXPECT_EQ(scanner_.cachedPaths(), std::vector<QString>{path("one/a.mov")});
    scan(path("two"));
    EXPECT_EQ(scanner_.cachedPaths(), std::vector<QString>{path("two/b.mov")});
}

// What the scanner does with a sidecar's title: it writes the repaired title once, with the document
// upgraded, and leaves highlights and titles of the user alone. A second scanner, as at the next
// launch, must not write again.
QByteArray atom(const char* type, const QByteArray& body = {}) {
    const auto size = static_cast<quint32>(8 + body.size());
    const char header[4] = {static_cast<char>(size >> 24), static_cast<char>(size >> 16),
                            static_cast<char>(size >> 8), static_cast<char>(size)};
    return QByteArray(header, 4) + QByteArray(type, 4) + body;
}

// Damage is told from the movie's own atoms, and the entry stays listed.
TEST_F(RecordingLibraryScannerTest, EntriesOfMoviesThatCannotPlaySayWhy) {
    const QByteArray head = atom("ftyp", QByteArray("qt  \0\0\0\0", 8)) + atom("wide");
    const QByteArray media = atom("mdat", QByteArray(64, 'x'));
    const QByteArray index = atom("moov", atom("mvhd"));
    const std::vector<std::pair<QByteArray, std::optional<std::string>>> rows{
        {head + media + index, nullopt},
        {head + media, "The movie was cut off before it was finished: it has no index."},
        {head + media.left(40), "The movie was cut off before it was finished: it has no index."},
        {head + media + index.left(10), "The movie was cut short: its last part is missing."},
        {QByteArray(), "The movie file is empty."},
        {QByteArray("{\"not\": \"a movie\"}"), "The file is not a QuickTime movie."},
    };
    for (const auto& [bytes, reason] : rows) {
        SCOPED_TRACE(reason.value_or("finished"));
        test::writeFile(path(QString::fromUtf8(kClassicAhri)), bytes);
        const MatchVideo entry = scanOne();
        EXPECT_EQ(entry.url, path(QString::fromUtf8(kClassicAhri)));
        EXPECT_EQ(entry.damageReason, reason);
        EXPECT_EQ(entry.isDamaged(), reason.has_value());
    }
}

TEST_F(RecordingLibraryScannerTest, RepairsMissingAndStaleTitlesOnce) {
    const auto stored = [](std::optional<std::string> title, std::optional<std::int64_t> revision = 1) {
        RecordingSessionData data = test::savedSession();
        data.title = std::move(title);
        data.metadataRevision = revision;
        return data;
    };
    RecordingSessionData custom = stored("Classic · Ahri · Mid");
    custom.enrichment = RecordingEnrichmentState{Status::failed, 5, nullopt, "HTTP 404"};
    RecordingSessionData highlight = stored(nullopt);
    highlight.mediaKind = "highlight";
    RecordingSessionData withGame = stored(nullopt, nullopt);
    withGame.gameID = "EUW1_42";
    RecordingSessionData withMatch = withGame;
    withMatch.matchData = RecordingMatchData{"EUW1_42", "14.1", 400, 1800, nullopt, {}, {}};
    const char* classic = "Classic · Ahri · Mid";
    // What: the stored document, its revision after the scan (absent: untouched byte for byte), the
    // entry's title, and the enrichment afterwards.
    const std::vector<
        std::tuple<RecordingSessionData, std::optional<std::int64_t>, const char*, std::optional<Status>>>
        rows{
            {stored(nullopt), 2, classic, nullopt},
            {stored("League Match · Ahri · Mid", 3), 4, classic, nullopt},
            {custom, 2, "Custom · Tournament Draft · Summoner's Rift · Ahri · Mid", Status::failed},
            {withGame, 2, classic, Status::pending},
            {withMatch, 2, "Normal Draft · Ahri · Mid", Status::complete},
            {stored("Finals with friends"), nullopt, "Finals with friends", nullopt},
            {highlight, nullopt, classic, nullopt},
        };
    for (const auto& [session, revisionAfter, title, enrichmentAfter] : rows) {
        SCOPED_TRACE(title);
        QTemporaryDir folder;
        const QString movie = folder.path() + QLatin1Char('/') + QLatin1String(kClassicAhri);
        test::writeFile(movie);
        test::writeSidecar(movie, session);
        const QByteArray before = test::readFileBytes(sessionDocumentPath(movie));
        EXPECT_EQ(scan(folder.path()).at(0).matchTitle, title);
        const std::optional<RecordingSessionData> after = test::readSidecar(movie);
        ASSERT_TRUE(after);
        if (!revisionAfter) {
            EXPECT_EQ(test::readFileBytes(sessionDocumentPath(movie)), before);
        } else {
            EXPECT_EQ(after->title, title);
            EXPECT_EQ((std::tuple{after->metadataRevision, after->schemaVersion, after->recordingID}),
                      (std::tuple{revisionAfter, std::optional<std::int64_t>{4}, session.recordingID}));
            EXPECT_EQ(after->enrichment ? std::optional{after->enrichment->status} : nullopt,
                      enrichmentAfter);
            EXPECT_EQ(after->enrichment && after->enrichment->lastAttempt,
                      enrichmentAfter == Status::complete);
        }
        const QByteArray scanned = test::readFileBytes(sessionDocumentPath(movie));
        RecordingLibraryScanner nextLaunch;
        EXPECT_EQ(nextLaunch.scan(folder.path()).result().value().at(0).matchTitle, title);
        EXPECT_EQ(test::readFileBytes(sessionDocumentPath(movie)), scanned) << "written twice";
    }
}

// The cache entry is valid exactly while both stamps are unchanged: the contents are never compared.
TEST_F(RecordingLibraryScannerTest, FreshnessFollowsTheStampsOfMovieAndSidecar) {
    const QString movie = path(kClassicAhri);
    const QString sidecar = sessionDocumentPath(movie);
    test::writeFile(movie);
    RecordingSessionData session = test::savedSession();
    session.title = "My game A";
    test::writeSidecar(movie, session);
    const QDateTime stamped = QDateTime::currentDateTime().addSecs(-60);
    setModified(sidecar, stamped);
    EXPECT_EQ(scanOne().matchTitle, "My game A");

    session.title = "My game B";  // same length, so the same size
    test::writeSidecar(movie, session);
    setModified(sidecar, stamped);
    EXPECT_EQ(scanOne().matchTitle, "My game A");

    setModified(sidecar, stamped.addSecs(1));
    EXPECT_EQ(scanOne().matchTitle, "My game B");

    test::writeFile(sidecar, "{not json");
    const MatchVideo fromName = scanOne();
    EXPECT_EQ(fromName.matchTitle, "Classic · Ahri · Mid");
    EXPECT_EQ(fromName.killParticipation, nullopt);
    EXPECT_EQ(test::readFileBytes(sidecar), "{not json");  // a bad document is never overwritten

    test::writeSidecar(movie, session);
    EXPECT_EQ(scanOne().matchTitle, "My game B");
    ASSERT_TRUE(QFile::remove(sidecar));
    EXPECT_EQ(scanOne().matchTitle, "Classic · Ahri · Mid");

    test::writeFile(movie, "grown");  // a changed movie is rebuilt too, and reads its new sidecar
    session.title = "My game C";
    test::writeSidecar(movie, session);
    EXPECT_EQ(scanOne().matchTitle, "My game C");
}

TEST_F(RecordingLibraryScannerTest, RealMovieFromTheWriter) {
    const QString movie = path(QStringLiteral("2026-01-02_10-00-00_CHERRY_Kaisa.mov"));
    if (!test::writeTinyMovie(movie)) GTEST_SKIP() << "the FFmpeg writer cannot make an H.264 movie here";
    RecordingSessionData session = test::savedSession();
    session.scoreboard = {test::snapshotAt(
        95.5, {test::boardPlayer(nullopt, "Kai'Sa", "ORDER", {1, 20, 2, 3}, {{447100, 0}, {3078, 1}})})};
    test::writeSidecar(movie, session);

    const ReferenceDate before = ReferenceDate::now();
    const MatchVideo video = scanOne();
    EXPECT_EQ(video.url, movie);
    if (fileBirthTime(QFileInfo(movie))) {
        EXPECT_LE(video.date, ReferenceDate::now());
        EXPECT_GT(video.date.secondsSince(before), -600);  // made just now
    } else {  // a file system without birth times: the name's date
        EXPECT_EQ(video.date.toDateTime(), QDateTime(QDate(2026, 1, 2), QTime(10, 0)));
    }
    EXPECT_EQ(video.matchTitle, "Arena · Kai'Sa");
    EXPECT_EQ(video.mapID, 30);
    EXPECT_EQ(video.gameDuration, 95);
    EXPECT_EQ(video.finalKills, 3);
    EXPECT_EQ(video.killParticipation, 100);
    EXPECT_EQ(video.legendaryItemIDsInPurchaseOrder, (std::vector<std::int64_t>{447100}));
}

// Where the file system keeps no birth time, the date at the head of the name stands for it, and only a
// name without one takes the time of the scan.
TEST(RecordingLibraryScannerDates, BirthTimeElseTheNamesDateElseTheScan) {
    const QDateTime born(QDate(2025, 5, 5), QTime(12, 0));
    const QDateTime named(QDate(2026, 1, 2), QTime(10, 0, 7));
    const std::optional<QDateTime> scanned;  // the time of the scan
    const std::vector<std::tuple<const char*, std::optional<QDateTime>, std::optional<QDateTime>>> rows{
        {"2026-01-02_10-00-07_CLASSIC_Ahri_MIDDLE.mov", born, born},
        {"2026-01-02_10-00-07_CLASSIC_Ahri_MIDDLE.mov", nullopt, named},
        {"2026-01-02_10-00-07.mov", nullopt, named},
        {"2026-01-02__10-00-07_ARAM.MP4", nullopt, named},
        {"clip.mov", born, born},
        {"clip.mov", nullopt, scanned},
        {"2026-13-40_10-00-07_ARAM_Lux.mov", nullopt, scanned},
        {"10-00-07_2026-01-02_ARAM_Lux.mov", nullopt, scanned},
        {"2026-01-02_10-00_ARAM_Lux.mov", nullopt, scanned},
        {"2026-01-02.mov", nullopt, scanned},
    };
    for (const auto& [name, birth, expected] : rows) {
        SCOPED_TRACE(std::string(name) + (birth ? " with a birth time" : " without a birth time"));
        QTemporaryDir folder;
        test::writeFile(folder.path() + QLatin1Char('/') + QString::fromUtf8(name));
        RecordingLibraryScanner scanner(QString(), [birth = birth](const QFileInfo&) { return birth; });
        const ReferenceDate before = ReferenceDate::now();
        const std::vector<MatchVideo> matches = scanner.scan(folder.path()).result().value();
        ASSERT_EQ(matches.size(), 1u);
        if (expected) {
            EXPECT_EQ(matches[0].date, ReferenceDate::fromDateTime(*expected));
        } else {
            EXPECT_GE(matches[0].date, before);
            EXPECT_LE(matches[0].date, ReferenceDate::now());
        }
    }
}

// The scanner reads a sidecar with its snapshots streamed away; the entry is the one the whole document
// gives, in every part that the snapshots feed.
TEST_F(RecordingLibraryScannerTest, StreamedSidecarsGiveTheEntriesOfTheWholeDocument) {
    const auto me = [](double gameTime, const test::Items& items,
                       RecordingScoreboardPlayer::Scores scores = {}) {
        return snapshotAt(gameTime, {test::boardPlayer("MIDDLE", "Ahri", "ORDER", scores, items),
                                     test::boardPlayer("TOP", "Garen", "ORDER", {0, 0, 0, 4})});
    };
    const auto withBoard = [](std::optional<std::vector<RecordingScoreboardSnapshot>> snapshots) {
        RecordingSessionData session = test::savedSession();
        session.title = "Finals with friends";
        session.scoreboard = std::move(snapshots);
        return session;
    };
    const std::vector<std::pair<const char*, RecordingSessionData>> rows{
        {"no scoreboard", withBoard(nullopt)},
        {"an empty scoreboard", withBoard(std::vector<RecordingScoreboardSnapshot>{})},
        {"snapshots out of game-time order",
         withBoard(std::vector{me(900, {{3031, 0}, {3078, 1}}, {1, 150, 2, 3}), me(300, {{773078, 2}}),
                               me(600, {{3031, 1}, {3078, 0}}),
                               me(1200, {{6672, 5}, {3031, 0}}, {4, 210, 2, 6})})},
        {"the local player missing from the last snapshot",
         withBoard(std::vector{me(60, {{3078, 0}}),
                               snapshotAt(120, {test::boardPlayer("TOP", "Garen", "ORDER")})})},
    };
    for (const auto& [what, session] : rows) {
        SCOPED_TRACE(what);
        QTemporaryDir folder;
        const QString movie = folder.path() + QLatin1Char('/') + QLatin1String(kClassicAhri);
        test::writeFile(movie);
        test::writeSidecar(movie, session);
        const MatchVideo scanned = scan(folder.path()).at(0);
        MatchVideo whole = deriveMatchVideo(movie, scanned.date, ParsedRecordingFileName::parse(movie),
                                            test::readSidecar(movie));
        whole.damageReason = "The movie file is empty.";
        EXPECT_EQ(scanned, whole);
        EXPECT_EQ(scanned.matchTitle, "Finals with friends");
    }
}

}  // namespace
}  // namespace kestrum

#include "core/library/RecordingLibraryScanner.h"

#include "base/common/AtomicFileWrite.h"
#include "core/library/LocalPlayerSearch.h"
#include "core/library/MatchVideoCodec.h"
#include "core/library/MatchVideoDerivation.h"
#include "core/library/ParsedRecordingFileName.h"
#include "core/library/RecordingLibraryDate.h"
#include "core/library/RecordingMovieWalk.h"
#include "core/library/RecordingTitles.h"
#include "core/library/SidecarTitleRepair.h"
#include "core/telemetry/RecordingSidecarStore.h"
#include "core/telemetry/SessionDocumentBuilder.h"
#include "media/MovieFileCheck.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <QStandardPaths>

#include <string_view>
#include <utility>

namespace kestrum {

namespace {

// The sidecar as the entry needs it: the document, and the digest of its scoreboard taken while it is
// decoded. Absent when the file cannot be read or decoded.
std::optional<SessionDigest> readDigest(const QString& sidecarPath,
                                        const std::optional<LocalPlayerSearch>& search) {
    ScoreboardDigest scoreboard;
    std::optional<RecordingSessionData> session = RecordingSidecarStore::shared().readSessionData(
        sidecarPath,
        [&](RecordingScoreboardSnapshot&& snapshot) { scoreboard.add(std::move(snapshot), search); });
    if (!session) return std::nullopt;
    SessionDigest digest;
    if (session->scoreboard) digest.scoreboard = std::move(scoreboard);
    session->scoreboard.reset();
    digest.session = std::move(*session);
    return digest;
}

// The session of a movie to build its entry from. A document with a missing or stale generated title
// is rewritten with the worked-out one, under the store's lock on the file's current content; whether
// that worked or not, the document is then read once more, so the entry shows what the file holds. Any
// failure on the way leaves the movie without a session, silently.
std::optional<SessionDigest> readSession(const QString& sidecarPath,
                                         const ParsedRecordingFileName& fileName) {
    const std::optional<LocalPlayerSearch> search = LocalPlayerSearch::fromFileName(fileName);
    std::optional<SessionDigest> digest = readDigest(sidecarPath, search);
    if (!digest) return std::nullopt;
    const std::optional<std::string> title = repairedTitle(digest->session, fileName);
    if (!title) return digest;
    // A failed rewrite is dropped: the stale title stays and is tried again at the sidecar's next change.
    (void)RecordingSidecarStore::shared().rewriteSessionData(
        sidecarPath, [&title](RecordingSessionData current) {
            return upgradedSessionDocument(std::move(current), *title);
        });
    return readDigest(sidecarPath, search);
}

// The records of a usable disk cache file, keyed by movie path; empty for anything else.
QHash<QString, LibraryScanCache::Recording> readDiskCache(const QString& file) {
    QFile handle(file);
    if (!handle.open(QIODevice::ReadOnly)) return {};
    const QByteArray bytes = handle.readAll();
    Result<LibraryScanCache> decoded =
        decodeLibraryScanCache(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
    if (!decoded || decoded.value().version != LibraryScanCache::currentVersion) return {};
    QHash<QString, LibraryScanCache::Recording> records;
    records.reserve(static_cast<qsizetype>(decoded.value().recordings.size()));
    for (auto& recording : decoded.value().recordings) {
        const QString path = recording.match.url;
        records.insert(path, std::move(recording));
    }
    return records;
}

}  // namespace

RecordingLibraryScanner::RecordingLibraryScanner(QString diskCacheFile, BirthTimeSource birthTime)
    : diskCacheFile_(std::move(diskCacheFile)),
      birthTime_(birthTime ? std::move(birthTime) : BirthTimeSource(&fileBirthTime)),
      queue_(QStringLiteral("com.kestrum.library.scanner")) {}

RecordingLibraryScanner::~RecordingLibraryScanner() {
    isClosing_ = true;
}

QString RecordingLibraryScanner::defaultDiskCacheFile() {
    const QString caches = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    if (caches.isEmpty()) return {};
    return caches + QStringLiteral("/Kestrum/RecordingLibraryScan.json");
}

QFuture<Result<std::vector<MatchVideo>>> RecordingLibraryScanner::scan(const QString& folderPath) {
    return queue_.submit(
        [this, folderPath]() -> Result<std::vector<MatchVideo>> { return scanOnQueue(folderPath); });
}

std::vector<QString> RecordingLibraryScanner::cachedPaths() {
    std::vector<QString> paths;
    queue_.sync([&] { paths.assign(cache_.keyBegin(), cache_.keyEnd()); });
    return paths;
}

std::vector<MatchVideo> RecordingLibraryScanner::scanOnQueue(const QString& folderPath) {
    if (isClosing_) return {};
    loadDiskCacheOnce();
    const ReferenceDate scanTime = ReferenceDate::now();
    std::vector<MatchVideo> matches;
    QSet<QString> seen;
    bool changed = false;
    const bool listed = forEachMovieIn(folderPath, [&](const QFileInfo& movie) {
        if (isClosing_) return;
        seen.insert(movie.filePath());
        matches.push_back(entryFor(movie, scanTime, changed));
    });
    if (!listed) return {};
    if (isClosing_) {
        // Cut short: the entries not reached stay cached as they were, for the next launch.
        if (changed && !diskCacheFile_.isEmpty()) storeDiskCache();
        return {};
    }
    for (auto entry = cache_.begin(); entry != cache_.end();) {
        if (seen.contains(entry.key())) {
            ++entry;
        } else {
            entry = cache_.erase(entry);
            changed = true;
        }
    }
    // Queued behind this scan, so its result is given first.
    if (changed && !diskCacheFile_.isEmpty()) queue_.async([this] { storeDiskCache(); });
    sortNewestFirst(matches);
    return matches;
}

MatchVideo RecordingLibraryScanner::entryFor(const QFileInfo& movie, ReferenceDate scanTime, bool& rebuilt) {
    const QString moviePath = movie.filePath();
    const QString sidecarPath = sessionDocumentPath(moviePath);
    const Fingerprint before{FileStamp::of(movie), FileStamp::of(sidecarPath)};
    if (const auto cached = cache_.constFind(moviePath); cached != cache_.constEnd()) {
        if (cached->fingerprint == before) return cached->match;
    }
    MatchVideo match = buildEntry(movie, sidecarPath, scanTime);
    // Stamped again: a repair has just changed the sidecar's date and size.
    cache_.insert(moviePath, CachedRecording{{FileStamp::of(moviePath), FileStamp::of(sidecarPath)}, match});
    rebuilt = true;
    return match;
}

MatchVideo RecordingLibraryScanner::buildEntry(const QFileInfo& movie, const QString& sidecarPath,
                                               ReferenceDate scanTime) const {
    const QString moviePath = movie.filePath();
    const ParsedRecordingFileName fileName = ParsedRecordingFileName::parse(moviePath);
    const ReferenceDate date = recordingLibraryDate(birthTime_(movie), moviePath, scanTime);
    MatchVideo match = deriveMatchVideo(moviePath, date, fileName, readSession(sidecarPath, fileName));
    // A few reads of the movie's top-level atoms, once per change of its stamp.
    if (const std::optional<QString> damage = movieFileDamage(moviePath))
        match.damageReason = damage->toStdString();
    return match;
}

void RecordingLibraryScanner::loadDiskCacheOnce() {
    if (diskCacheLoaded_) return;
    diskCacheLoaded_ = true;
    if (!diskCacheFile_.isEmpty()) cache_ = readDiskCache(diskCacheFile_);
}

void RecordingLibraryScanner::storeDiskCache() const {
    LibraryScanCache stored;
    stored.recordings.reserve(static_cast<std::size_t>(cache_.size()));
    for (const CachedRecording& recording : cache_) stored.recordings.push_back(recording);
    const Result<std::string> encoded = encodeLibraryScanCache(stored);
    if (!encoded) return;  // dropped: the next scan that changes something writes it again
    (void)QDir().mkpath(QFileInfo(diskCacheFile_).absolutePath());
    (void)writeFileAtomically(diskCacheFile_, QByteArray::fromStdString(encoded.value()));
}

}  // namespace kestrum

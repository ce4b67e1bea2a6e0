#include "core/library/RecordingLibraryScanner.h"

#include "core/library/MatchVideoDerivation.h"
#include "core/library/ParsedRecordingFileName.h"
#include "core/library/RecordingMovieWalk.h"
#include "core/library/RecordingTitles.h"
#include "core/library/SidecarTitleRepair.h"
#include "core/telemetry/RecordingSidecarStore.h"
#include "core/telemetry/SessionDocumentBuilder.h"

#include <QSet>

#include <utility>

namespace kestrum {

namespace {

// The session of a movie to build its entry from. A document with a missing or stale generated title
// is rewritten with the worked-out one, under the store's lock on the file's current content; whether
// that worked or not, the document is then read once more, so the entry shows what the file holds. Any
// failure on the way leaves the movie without a session, silently.
std::optional<RecordingSessionData> readSession(const QString& sidecarPath,
                                                const ParsedRecordingFileName& fileName) {
    RecordingSidecarStore& store = RecordingSidecarStore::shared();
    std::optional<RecordingSessionData> session = store.readSessionData(sidecarPath);
    if (!session) return std::nullopt;
    const std::optional<std::string> title = repairedTitle(*session, fileName);
    if (!title) return session;
    // A failed rewrite is dropped: the stale title stays and is tried again at the sidecar's next change.
    (void)store.rewriteSessionData(sidecarPath, [&title](RecordingSessionData current) {
        return upgradedSessionDocument(std::move(current), *title);
    });
    return store.readSessionData(sidecarPath);
}

// The creation date, where the file system keeps one (statx birth time); else the time of the scan.
ReferenceDate creationDateOf(const QFileInfo& movie, ReferenceDate scanTime) {
    const QDateTime birth = movie.birthTime();
    return birth.isValid() ? ReferenceDate::fromDateTime(birth) : scanTime;
}

}  // namespace

RecordingLibraryScanner::FileStamp RecordingLibraryScanner::FileStamp::of(const QString& path) {
    return of(QFileInfo(path));
}

RecordingLibraryScanner::FileStamp RecordingLibraryScanner::FileStamp::of(const QFileInfo& info) {
    if (!info.exists()) return {};
    FileStamp stamp;
    const QDateTime modified = info.lastModified();
    if (modified.isValid()) stamp.modificationDate = ReferenceDate::fromDateTime(modified);
    stamp.fileSize = info.size();
    return stamp;
}

RecordingLibraryScanner::RecordingLibraryScanner() : queue_(QStringLiteral("com.kestrum.library.scanner")) {}

RecordingLibraryScanner::~RecordingLibraryScanner() = default;

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
    const ReferenceDate scanTime = ReferenceDate::now();
    std::vector<MatchVideo> matches;
    QSet<QString> seen;
    const bool listed = forEachMovieIn(folderPath, [&](const QFileInfo& movie) {
        seen.insert(movie.filePath());
        matches.push_back(entryFor(movie, scanTime));
    });
    if (!listed) return {};
    for (auto entry = cache_.begin(); entry != cache_.end();) {
        entry = seen.contains(entry.key()) ? std::next(entry) : cache_.erase(entry);
    }
    sortNewestFirst(matches);
    return matches;
}

MatchVideo RecordingLibraryScanner::entryFor(const QFileInfo& movie, ReferenceDate scanTime) {
    const QString moviePath = movie.filePath();
    const QString sidecarPath = sessionDocumentPath(moviePath);
    const Fingerprint before{FileStamp::of(movie), FileStamp::of(sidecarPath)};
    if (const auto cached = cache_.constFind(moviePath); cached != cache_.constEnd()) {
        if (cached->fingerprint == before) return cached->match;
    }
    MatchVideo match = buildEntry(movie, sidecarPath, scanTime);
    // Stamped again: a repair has just changed the sidecar's date and size.
    cache_.insert(moviePath, CachedRecording{{FileStamp::of(moviePath), FileStamp::of(sidecarPath)}, match});
    return match;
}

MatchVideo RecordingLibraryScanner::buildEntry(const QFileInfo& movie, const QString& sidecarPath,
                                               ReferenceDate scanTime) {
    const QString moviePath = movie.filePath();
    const ParsedRecordingFileName fileName = ParsedRecordingFileName::parse(moviePath);
    const std::optional<RecordingSessionData> session = readSession(sidecarPath, fileName);
    return deriveMatchVideo(moviePath, creationDateOf(movie, scanTime), fileName, session);
}

}  // namespace kestrum

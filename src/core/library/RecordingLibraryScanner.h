#pragma once

#include "base/async/SerialQueue.h"
#include "base/common/ReferenceDate.h"
#include "base/common/Result.h"
#include "core/library/LibraryScanCache.h"
#include "core/library/MatchVideo.h"

#include <QDateTime>
#include <QFileInfo>
#include <QFuture>
#include <QHash>
#include <QString>

#include <atomic>
#include <functional>
#include <optional>
#include <vector>

namespace kestrum {

// Turns the recordings folder into the list of library entries, newest first. It reads the file system
// and the sidecars, and writes to one place only: it repairs a sidecar's stored title when that title is
// missing or a stale generated one, once, never for a highlight or a title the user set.
//
// An entry is built again only when its movie's or its sidecar's stamp (size and modification time)
// has changed since it was last built. The entries so built outlive the program in a disk cache, one
// JSON file beside the detail loader's cache, read at the first scan and written after each scan that
// changed something, so that a launch decodes only the sidecars that changed. A cache file that cannot
// be read, does not decode or is of another version counts as missing; a write that fails is dropped.
// A sidecar is decoded with its snapshots streamed, keeping only what the entry needs of them.
//
// Threads: every scan runs on the scanner's own serial queue, one file at a time, so a second scan waits
// for the first; the disk cache is written there too, after the scan's result is given. `cache_` and
// `diskCacheLoaded_` belong to that queue. The sidecar lock is held only around each read or rewrite,
// so a save of a new recording can slip in between two files. Callable from any thread; the main thread
// awaits the future. Destruction does not wait for a long first scan (a thousand documents to decode and
// repair hold a quit for many seconds): the scan under way stops before its next movie, keeps in the
// disk cache what it built so far and every entry it did not reach, and the scans queued behind it give
// nothing; then the queue is joined.
class RecordingLibraryScanner {
  public:
    using FileStamp = LibraryScanCache::FileStamp;
    using Fingerprint = LibraryScanCache::Fingerprint;
    using CachedRecording = LibraryScanCache::Recording;
    // A movie's birth time, or absent where the file system keeps none. Runs on the scanner's queue.
    using BirthTimeSource = std::function<std::optional<QDateTime>(const QFileInfo& movie)>;

    // `diskCacheFile` empty: no disk cache. `birthTime` is the file system's unless a test gives one.
    explicit RecordingLibraryScanner(QString diskCacheFile = defaultDiskCacheFile(),
                                     BirthTimeSource birthTime = {});
    ~RecordingLibraryScanner();
    RecordingLibraryScanner(const RecordingLibraryScanner&) = delete;
    RecordingLibraryScanner& operator=(const RecordingLibraryScanner&) = delete;

    // <GenericCacheLocation>/Kestrum/RecordingLibraryScan.json, or empty when the system names no cache
    // folder.
    static QString defaultDiskCacheFile();

    // The entries of every movie under `folderPath`, newest first (a stable sort by date, so entries of
    // one date keep the walk's order). A missing or unlisted folder gives an empty list and leaves the
    // cache as it is. The result is declared as able to fail, for the model's sake, but no condition in
    // a scan fails it: unreadable sidecars, failed repairs and odd names all still give entries.
    QFuture<Result<std::vector<MatchVideo>>> scan(const QString& folderPath);

    // The movie paths the cache holds now, after the scans asked for so far. For tests and diagnostics.
    std::vector<QString> cachedPaths();

  private:
    std::vector<MatchVideo> scanOnQueue(const QString& folderPath);
    // The entry of one movie, from the cache when both stamps are unchanged, else built afresh (and
    // `rebuilt` set).
    MatchVideo entryFor(const QFileInfo& movie, ReferenceDate scanTime, bool& rebuilt);
    MatchVideo buildEntry(const QFileInfo& movie, const QString& sidecarPath, ReferenceDate scanTime) const;
    void loadDiskCacheOnce();
    void storeDiskCache() const;

    const QString diskCacheFile_;
    const BirthTimeSource birthTime_;
    // Movie path -> what the last scan that saw it built. Belongs to queue_.
    QHash<QString, CachedRecording> cache_;
    // Whether the disk cache has been read into cache_. Belongs to queue_.
    bool diskCacheLoaded_ = false;
    // Set by the destructor on the owner's thread; read on queue_ before each movie.
    std::atomic<bool> isClosing_ = false;
    // Last member: destroyed first, so a running scan ends before the cache goes.
    SerialQueue queue_;
};

}  // namespace kestrum

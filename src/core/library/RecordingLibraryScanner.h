#pragma once

#include "base/async/SerialQueue.h"
#include "base/common/ReferenceDate.h"
#include "base/common/Result.h"
#include "core/library/MatchVideo.h"

#include <QFileInfo>
#include <QFuture>
#include <QHash>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace kestrum {

// Turns the recordings folder into the list of library entries, newest first. It reads the file system
// and the sidecars, and writes to one place only: it repairs a sidecar's stored title when that title is
// missing or a stale generated one, once, never for a highlight or a title the user set.
//
// Threads: every scan runs on the scanner's own serial queue, one file at a time, so a second scan waits
// for the first. `cache_` belongs to that queue. The sidecar lock is held only around each read or
// rewrite, so a save of a new recording can slip in between two files. Callable from any thread; the
// main thread awaits the future. Destruction lets a scan that was asked for run to its end.
class RecordingLibraryScanner {
  public:
    // What one file-attribute query of a file gives; both absent when the query fails, as for a missing
    // sidecar. The modification date has the file system's resolution as Qt reports it (milliseconds).
    struct FileStamp {
        std::optional<ReferenceDate> modificationDate;
        std::optional<std::int64_t> fileSize;

        static FileStamp of(const QString& path);
        // From an info whose attributes may already be cached (as the walk's are, at most once).
        static FileStamp of(const QFileInfo& info);
        friend bool operator==(const FileStamp&, const FileStamp&) = default;
    };

    struct Fingerprint {
        FileStamp video;
        FileStamp sidecar;

        friend bool operator==(const Fingerprint&, const Fingerprint&) = default;
    };

    struct CachedRecording {
        Fingerprint fingerprint;
        MatchVideo match;
    };

    RecordingLibraryScanner();
    ~RecordingLibraryScanner();
    RecordingLibraryScanner(const RecordingLibraryScanner&) = delete;
    RecordingLibraryScanner& operator=(const RecordingLibraryScanner&) = delete;

    // The entries of every movie under `folderPath`, newest first (a stable sort by date, so entries of
    // one date keep the walk's order). A missing or unlisted folder gives an empty list and leaves the
    // cache as it is. The result is declared as able to fail, for the model's sake, but no condition in
    // a scan fails it: unreadable sidecars, failed repairs and odd names all still give entries.
    QFuture<Result<std::vector<MatchVideo>>> scan(const QString& folderPath);

    // The movie paths the cache holds now, after the scans asked for so far. For tests and diagnostics.
    std::vector<QString> cachedPaths();

  private:
    std::vector<MatchVideo> scanOnQueue(const QString& folderPath);
    // The entry of one movie, from the cache when both stamps are unchanged, else built afresh.
    MatchVideo entryFor(const QFileInfo& movie, ReferenceDate scanTime);
    static MatchVideo buildEntry(const QFileInfo& movie, const QString& sidecarPath, ReferenceDate scanTime);

    // Movie path -> what the last scan that saw it built. Belongs to queue_. Starts empty at every launch.
    QHash<QString, CachedRecording> cache_;
    // Last member: destroyed first, so a running scan ends before the cache goes.
    SerialQueue queue_;
};

}  // namespace kestrum

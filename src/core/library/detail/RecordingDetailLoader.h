#pragma once

#include "core/library/MatchVideo.h"
#include "core/library/detail/CachedDetail.h"
#include "core/library/detail/RecordingDetail.h"

#include <QFuture>
#include <QImage>
#include <QString>

#include <cstdint>
#include <memory>
#include <optional>

namespace kestrum {

// The detail of a selected recording (its telemetry and the movie's shape) and the pictures of the match
// cards, each kept in memory and on disk so that a second look costs next to nothing. Entries are keyed
// by the movie and checked against the files' stamps, so a changed recording is never shown from a
// stale entry.
//
// Disk cache: one folder (by default <GenericCacheLocation>/Kestrum/RecordingDetails), made with its
// parents on first use. A detail is "<detail key>.json", a thumbnail "<thumbnail key>.png" (see
// DetailCacheKeys.h). A file that cannot be read or decoded is a miss: it is not deleted and the next
// good result overwrites it. A result made afresh is given as soon as it is in memory; its file is then
// encoded and written atomically on the utility pool, so a reader sees the old file or the new one. No
// failure of a cache is reported; a failed write is dropped.
//
// Threads: every operation may be called from any thread and gives a future that the main thread awaits
// with co_await. The maps belong to the loader's own serial queue, "com.kestrum.library.detail". The work
// that takes long (reading a cache file or the sidecar, measuring the movie, making a picture, writing)
// runs on the utility pool while the queue goes on with other calls, and its result is stored back on the
// queue: so two calls can make the same entry at once, and the later store wins. Sidecars are read
// through RecordingSidecarStore::shared(), under its lock. Work still running when the loader goes keeps
// what it needs alive, finishes, and is dropped.
class RecordingDetailLoader {
  public:
    using FileStamp = CachedDetail::FileStamp;
    using Fingerprint = CachedDetail::Fingerprint;

    // The version of the on-disk layout and of what an entry holds, written into each entry; an entry of
    // another version is ignored and overwritten on next use. 2: a movie that cannot be measured lasts
    // as long as the game its document tells (1 gave it 0 s, which would stay so from the disk).
    static constexpr std::int64_t cacheVersion = 2;

    // `diskCacheFolder` empty: no disk cache at all.
    explicit RecordingDetailLoader(QString diskCacheFolder = defaultDiskCacheFolder());
    ~RecordingDetailLoader();
    RecordingDetailLoader(const RecordingDetailLoader&) = delete;
    RecordingDetailLoader& operator=(const RecordingDetailLoader&) = delete;

    // <GenericCacheLocation>/Kestrum/RecordingDetails, or empty when the system names no cache folder.
    static QString defaultDiskCacheFolder();

    // The detail of `video`, from memory, from disk, or read and measured afresh. A missing or bad
    // sidecar gives no events, no scoreboard and no match data; a movie that cannot be measured gives a
    // duration of 0 and a ratio of 16/9. Shared, because a long game's telemetry is large and a repeat
    // look must not copy it.
    QFuture<std::shared_ptr<const RecordingDetail>> detail(const MatchVideo& video);

    // A thumbnail that is ready at once, from memory or from its disk file; never makes one.
    QFuture<std::optional<QImage>> cachedThumbnail(const MatchVideo& video);

    // A thumbnail, made from the movie at `timeSeconds` less one second (not below 0; 0 when absent)
    // when neither cache has it. Absent when no picture can be made; nothing is left behind then.
    QFuture<std::optional<QImage>> thumbnail(const MatchVideo& video, std::optional<double> timeSeconds);

  private:
    struct Core;
    std::shared_ptr<Core> core_;
};

}  // namespace kestrum

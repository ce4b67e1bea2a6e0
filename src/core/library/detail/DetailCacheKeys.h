#pragma once

#include "core/library/detail/CachedDetail.h"

#include <QString>

#include <optional>

namespace kestrum {

// The names and stamps the detail loader keys its caches with. Pure apart from the stamp's file query;
// safe on any thread.

// The file's content modification time and size, from two attribute queries; both absent when either
// query fails, as for a missing file.
CachedDetail::FileStamp takeFileStamp(const QString& path);

// The movie's absolute path with "." and ".." resolved and no doubled or trailing separator; symbolic
// links are kept as they are.
QString standardizedMoviePath(const QString& moviePath);

// SHA-256 of the UTF-8 bytes of `text` as 64 lower-case hexadecimal digits.
QString sha256Hex(const QString& text);

// The detail key: sha256Hex of the standardized movie path. Also the stem of its disk cache file.
QString detailCacheKey(const QString& moviePath);

// The thumbnail key: sha256Hex of detail key "|" modification time "|" size, where an absent time or size
// writes as 0, the time in its shortest round-trip form. The video stamp alone is in it: a changed
// sidecar leaves thumbnails valid.
QString thumbnailCacheKey(const QString& detailKey, const CachedDetail::FileStamp& videoStamp);

// The movie time a thumbnail is taken at, seconds: one second before `timeSeconds`, never below 0; 0
// when absent.
double thumbnailRequestTime(std::optional<double> timeSeconds);

}  // namespace kestrum

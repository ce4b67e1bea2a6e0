#pragma once

#include "base/common/Result.h"
#include "core/library/LibraryCache.h"
#include "core/library/LibraryScanCache.h"
#include "core/library/MatchVideo.h"

#include <string>
#include <string_view>

namespace kestrum {

// The JSON form of the library's records, by the house rules: compact, keys in ascending byte order,
// absent fields omitted; reading is strict and one error fails the whole document. The keys equal the
// field names. `url` is the fully encoded file URL of the movie's path and must read back as a local file
// URL; `date` is a number of seconds since 2001-01-01 00:00:00 UTC. Pure functions, safe on any thread.
Result<MatchVideo> decodeMatchVideo(std::string_view bytes);
Result<std::string> encodeMatchVideo(const MatchVideo& video);

// The library cache: {"folderPath": string, "matches": [MatchVideo]}, both required.
Result<LibraryCache> decodeLibraryCache(std::string_view bytes);
Result<std::string> encodeLibraryCache(const LibraryCache& cache);

// The scanner's disk cache: {"recordings": [{"fingerprint": {"sidecar": stamp, "video": stamp},
// "match": MatchVideo}], "version": integer}, a stamp being {"fileSize"?: integer, "modificationDate"?:
// date}. Everything is required but the stamps' members. A file that names one movie twice fails: it
// was not written here. The version is read, not judged; the scanner ignores a file of another one.
// The file lies in the user's cache folder, where anything may have been put: this is a reader of
// outside input.
Result<LibraryScanCache> decodeLibraryScanCache(std::string_view bytes);
Result<std::string> encodeLibraryScanCache(const LibraryScanCache& cache);

}  // namespace kestrum

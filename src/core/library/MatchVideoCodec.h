#pragma once

#include "base/common/Result.h"
#include "core/library/LibraryCache.h"
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

}  // namespace kestrum

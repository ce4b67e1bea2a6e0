#pragma once

#include "base/common/Result.h"
#include "core/library/detail/CachedDetail.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace kestrum {

// The JSON file of one detail cache entry, by the house rules: compact, keys in ascending byte order,
// absent fields omitted, doubles in shortest round-trip form; reading is strict and one error anywhere
// fails the whole entry. `detail.events`, `detail.scoreboard` and `detail.matchData` are written and read
// by the session document's own codec, so a detail holds exactly what a sidecar can hold. Unknown keys
// are ignored, as everywhere, except that inside `detail` a key the session document knows ("title")
// must hold that document's type. Pure functions, safe on any thread.
Result<std::string> encodeCachedDetail(const CachedDetail& entry);
Result<CachedDetail> decodeCachedDetail(std::string_view bytes);

// The same encoding from parts, for a caller that holds the detail alone (shared, so not to be copied
// into a CachedDetail first).
Result<std::string> encodeCachedDetail(std::int64_t version, const CachedDetail::Fingerprint& fingerprint,
                                       const RecordingDetail& detail);

}  // namespace kestrum

#pragma once

#include <QString>

#include <optional>
#include <string_view>

namespace kestrum {

// The newest version of the art host's `/api/versions.json` answer: the first element of a non-empty
// JSON array of strings. Absent for anything else; the caller keeps its fallback. The answer comes from
// the network: any bytes. A pure function, safe on any thread.
std::optional<QString> newestDataDragonVersion(std::string_view body);

}  // namespace kestrum

#pragma once

#include "base/common/Result.h"
#include "core/telemetry/RecordingEvent.h"

#include <string>
#include <vector>

namespace kestrum::tools {

// The rows as a JSON array in exactly the session document's form (the document codec writes them).
Result<std::string> encodeEventRows(const std::vector<RecordingEvent>& events);

}  // namespace kestrum::tools

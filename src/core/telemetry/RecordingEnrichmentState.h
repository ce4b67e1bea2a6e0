#pragma once

#include "base/common/ReferenceDate.h"

#include <cstdint>
#include <optional>
#include <string>

namespace kestrum {

// State of a post-game enrichment. No code here moves a status forward: every status but `pending`
// reaches the program only from existing files.
struct RecordingEnrichmentState {
    // Stored as "pending", "retrying", "waitingForAPIKey", "complete", "failed".
    enum class Status : std::uint8_t { pending, retrying, waitingForAPIKey, complete, failed };

    Status status = Status::pending;
    std::int64_t attempts = 0;
    std::optional<ReferenceDate> lastAttempt;
    std::optional<std::string> lastError;

    friend bool operator==(const RecordingEnrichmentState&, const RecordingEnrichmentState&) = default;
};

}  // namespace kestrum

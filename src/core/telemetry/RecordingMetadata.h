#pragma once

#include <optional>
#include <string>

namespace kestrum {

// What the local service tells about the game being recorded. `gameID` stays absent in what this
// system produces, because the service gives none.
struct RecordingMetadata {
    std::optional<std::string> gameID;
    std::optional<std::string> gameMode;
    std::optional<std::string> champion;
    std::optional<std::string> position;

    friend bool operator==(const RecordingMetadata&, const RecordingMetadata&) = default;
};

}  // namespace kestrum

#pragma once

#include <cstdint>

namespace kestrum {

// One action-rate sample. The format carries it; nothing in this system produces one.
struct RecordingAPMSample {
    // Seconds from the movie's first frame.
    double videoTime = 0;
    std::int64_t actionsPerMinute = 0;
    std::int64_t averageActionsPerMinute = 0;

    friend bool operator==(const RecordingAPMSample&, const RecordingAPMSample&) = default;
};

}  // namespace kestrum

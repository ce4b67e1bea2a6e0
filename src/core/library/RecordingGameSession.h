#pragma once

#include "core/library/MatchVideo.h"

#include <vector>

namespace kestrum {

// A group of recordings played in one sitting: neighbours no more than 3600 seconds apart. Never
// empty; newest first, like the list it comes from.
struct RecordingGameSession {
    std::vector<MatchVideo> matches;

    friend bool operator==(const RecordingGameSession&, const RecordingGameSession&) = default;
};

}  // namespace kestrum

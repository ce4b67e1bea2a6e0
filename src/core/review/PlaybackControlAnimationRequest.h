#pragma once

#include <cstdint>

namespace kestrum {

// A request from the keyboard to show a control of the strip briefly (the speed or the volume) with its
// old and new value. Each request has its own id, so that the same change twice is still two requests.
struct PlaybackControlAnimationRequest {
    std::int64_t id = 0;
    double previousValue = 0;
    double newValue = 0;
    bool isIncrease = false;

    friend bool operator==(const PlaybackControlAnimationRequest&,
                           const PlaybackControlAnimationRequest&) = default;
};

}  // namespace kestrum

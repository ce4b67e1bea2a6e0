#include "core/dashboard/PlaybackRateSteps.h"

#include "core/review/PlaybackControlTexts.h"

#include <algorithm>
#include <cmath>

namespace kestrum {

std::size_t nearestPlaybackRateIndex(double rate) {
    std::size_t nearest = 0;
    double nearestDistance = std::abs(kPlaybackRates[0] - rate);
    for (std::size_t index = 1; index < kPlaybackRates.size(); ++index) {
        const double distance = std::abs(kPlaybackRates[index] - rate);
        if (distance < nearestDistance) {
            nearest = index;
            nearestDistance = distance;
        }
    }
    return nearest;
}

double steppedPlaybackRate(double rate, int step) {
    const auto last = static_cast<long>(kPlaybackRates.size()) - 1;
    const long index = std::clamp(static_cast<long>(nearestPlaybackRateIndex(rate)) + step, 0L, last);
    return kPlaybackRates[static_cast<std::size_t>(index)];
}

}  // namespace kestrum

#pragma once

#include <cstddef>

namespace kestrum {

// The index of the speed in kPlaybackRates nearest to `rate`, scanning from the start; of two at the
// same distance the earlier wins, so 3 (between 2 and 4) counts as 2. A NaN rate gives 0.
std::size_t nearestPlaybackRateIndex(double rate);

// The speed one place from the entry nearest to `rate`: `step` is +1 or -1, and the index is kept within
// the list. At either end this is the entry itself.
double steppedPlaybackRate(double rate, int step);

}  // namespace kestrum

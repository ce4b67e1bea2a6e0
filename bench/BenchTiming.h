#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <vector>

namespace kestrum::bench {

// The median of `samples` (the upper one of an even count); 0 for none.
inline double median(std::vector<double> samples) {
    if (samples.empty()) return 0;
    std::sort(samples.begin(), samples.end());
    return samples[samples.size() / 2];
}

// The median wall time of `runs` runs of `body`, in milliseconds. `between`, when given, runs untimed
// after each run (to settle work a run left behind, so that no run pays for the one before).
inline double medianMilliseconds(int runs, const std::function<void()>& body,
                                 const std::function<void()>& between = {}) {
    std::vector<double> samples;
    for (int run = 0; run < runs; ++run) {
        const auto start = std::chrono::steady_clock::now();
        body();
        samples.push_back(
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
        if (between) between();
    }
    std::sort(samples.begin(), samples.end());
    return samples[samples.size() / 2];
}

}  // namespace kestrum::bench

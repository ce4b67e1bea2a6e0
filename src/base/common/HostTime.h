#pragma once

#include <cstdint>
#include <ctime>

namespace kestrum {

// The host clock: CLOCK_MONOTONIC in integer nanoseconds. Every captured sample is stamped with it and
// the movie writer's session starts at one; it never jumps with wall-clock changes.
using HostTimeNs = std::int64_t;

inline HostTimeNs hostTimeNow() {
    timespec ts{};
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return static_cast<HostTimeNs>(ts.tv_sec) * 1'000'000'000 + ts.tv_nsec;
}

constexpr double hostTimeToSeconds(HostTimeNs ns) {
    return static_cast<double>(ns) / 1e9;
}
constexpr HostTimeNs secondsToHostTime(double seconds) {
    return static_cast<HostTimeNs>(seconds * 1e9);
}

}  // namespace kestrum

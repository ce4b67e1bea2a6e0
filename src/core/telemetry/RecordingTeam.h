#pragma once

#include <cstdint>

namespace kestrum {

// The side an event counts for. Stored as "blue" and "red"; in the game's own words "blue" is the side
// called "ORDER" and "red" the side called "CHAOS".
enum class RecordingTeam : std::uint8_t { blue, red };

}  // namespace kestrum

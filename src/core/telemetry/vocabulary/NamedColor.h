#pragma once

#include <cstdint>

namespace kestrum {

// The platform's standard named colours the vocabulary refers to; the interface maps each to its own
// palette value. `secondary` is the secondary label colour.
enum class NamedColor : std::uint8_t { yellow, orange, brown, cyan, mint, blue, green, secondary };

}  // namespace kestrum

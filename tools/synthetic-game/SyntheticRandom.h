#pragma once

#include <cstdint>
#include <random>

namespace kestrum::synthetic {

// The one source of chance of the synthetic game. The standard distributions are free to differ between
// libraries, so draws are made from the engine's raw 32-bit output here: the same seed gives the same
// game everywhere, and the gallery's screenshots stay stable.
class SyntheticRandom {
  public:
    explicit SyntheticRandom(std::uint32_t seed) : engine_(seed) {}

    // A draw in [0, 1).
    double unit() { return static_cast<double>(engine_()) / 4294967296.0; }
    // A draw in [low, high).
    double between(double low, double high) { return low + (high - low) * unit(); }
    // An integer in [0, count).
    int below(int count) { return static_cast<int>(unit() * count); }
    bool chance(double probability) { return unit() < probability; }

  private:
    std::mt19937 engine_;
};

}  // namespace kestrum::synthetic

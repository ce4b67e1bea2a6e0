#pragma once

#include "core/telemetry/RecordingSessionData.h"

#include <cstdint>
#include <string>

namespace kestrum::synthetic {

struct SyntheticGameOptions {
    // The same seed gives the same game, byte for byte, on every machine.
    std::uint32_t seed = 14;
    // The game's length on its own clock; 2400 is forty minutes.
    double gameSeconds = 2400;
    // Movie seconds before the game's clock starts (the loading screen).
    double loadingSeconds = 48.5;
};

// A recording of a long made-up game, as the recorder would have saved it, for the gallery's built-in
// document and for benchmarks: about 600 events of every kind the timeline shows, a scoreboard snapshot
// every second, and after-game data with ranks.
struct SyntheticGame {
    RecordingSessionData document;
    // The movie's length: the loading screen, the game, and a few seconds after its end.
    double movieDurationSeconds = 0;
    // The local player, as the library's entry of the recording would name them.
    std::string localChampionIdentifier;
    std::string localPosition;
};

SyntheticGame makeSyntheticGame(const SyntheticGameOptions& options = {});

}  // namespace kestrum::synthetic

#include "core/telemetry/vocabulary/GameModeTitle.h"

#include "core/telemetry/vocabulary/TextCase.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kestrum {

namespace {

constexpr std::array<std::pair<std::string_view, std::string_view>, 6> kGameModeTitles{{
    {"ARAM", "ARAM"},
    {"KIWI", "ARAM Mayhem"},
    {"URF", "URF"},
    {"CLASSIC", "Classic"},
    {"CHERRY", "Arena"},
    {"PRACTICETOOL", "Practice Tool"},
}};

}  // namespace

std::string gameModeTitle(std::string_view gameMode) {
    const std::string upper = upperCased(gameMode);
    for (const auto& [mode, title] : kGameModeTitles) {
        if (mode == upper) return std::string(title);
    }
    std::string spaced(gameMode);
    std::replace(spaced.begin(), spaced.end(), '_', ' ');
    return capitalizedWords(spaced);
}

}  // namespace kestrum

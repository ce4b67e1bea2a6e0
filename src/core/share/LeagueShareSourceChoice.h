#pragma once

#include "platform/ports/ShareableContent.h"

#include <optional>

namespace kestrum {

// The window League Share shows, and whether it is the game or the League client.
struct LeagueShareSource {
    enum class Kind { client, game };
    ShareableWindow window;
    Kind kind = Kind::client;
};

// Of the windows strictly wider and higher than 100 points: the largest game window, otherwise the
// largest League client window (of equal ones the first listed); absent when there is neither. The owner
// tells which is which by its bundle identifier; a window with no owner is neither.
std::optional<LeagueShareSource> chooseLeagueShareSource(const ShareableContentSnapshot& snapshot);

}  // namespace kestrum

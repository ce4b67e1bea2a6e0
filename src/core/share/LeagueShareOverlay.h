#pragma once

#include "core/share/LeagueShareStatus.h"

#include <QString>

namespace kestrum {

// What the share window lays over its picture. `isShown` false: the picture alone.
struct LeagueShareOverlay {
    bool isShown = false;
    QString message;
    QString symbol;  // symbol name; empty for none

    friend bool operator==(const LeagueShareOverlay&, const LeagueShareOverlay&) = default;
};

// While sharing with the source in front and updating: no overlay. While sharing otherwise: "Gameplay
// paused", no symbol. Any other status: its title and symbol.
LeagueShareOverlay leagueShareOverlay(const LeagueShareStatus& status, bool isSourceFocused,
                                      bool isSourceUpdating);

}  // namespace kestrum

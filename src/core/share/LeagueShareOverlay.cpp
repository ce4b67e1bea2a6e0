#include "core/share/LeagueShareOverlay.h"

namespace kestrum {

LeagueShareOverlay leagueShareOverlay(const LeagueShareStatus& status, bool isSourceFocused,
                                      bool isSourceUpdating) {
    if (!status.isSharing()) return {true, status.title(), status.symbol()};
    if (isSourceFocused && isSourceUpdating) return {};
    return {true, QStringLiteral("Gameplay paused"), {}};
}

}  // namespace kestrum

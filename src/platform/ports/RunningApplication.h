#pragma once

#include <QString>

#include <optional>

namespace kestrum {

// One running application as the workspace reports it. A plain value: copies are independent of the
// process, which may have ended by the time a copy is read.
struct RunningApplication {
    // The application's identity (for the game, "com.riotgames.LeagueofLegends.GameClient"); absent for
    // a process the workspace cannot name, which then matches no identifier.
    std::optional<QString> bundleIdentifier;
    qint32 processIdentifier = 0;
    // The name shown to the user; absent when the workspace has none.
    std::optional<QString> localizedName;

    friend bool operator==(const RunningApplication&, const RunningApplication&) = default;
};

}  // namespace kestrum

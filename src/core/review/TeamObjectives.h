#pragma once

#include "core/telemetry/RecordingEvent.h"
#include "core/telemetry/RecordingTeam.h"

#include <QString>

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace kestrum {

// One of a team's four dragon slots in the header.
struct DragonSlot {
    bool isFilled = false;
    QString artName;  // the dragon kind's art; empty for an empty slot
    QString
        helpText;  // the dragon's name ("... Soul secured" on the fourth of a soul), or "Empty dragon slot"

    friend bool operator==(const DragonSlot&, const DragonSlot&) = default;
};

// A team's objectives at the playhead, over the elapsed events credited to it; each part with whether it
// shows, its art and its help text.
struct TeamObjectives {
    int voidGrubCount = 0;
    QString voidGrubHelp;  // "<n> of 3 Void Grubs secured"
    bool hasRiftHerald = false;
    QString riftHeraldHelp;  // "Rift Herald secured"
    // The seconds left of the power play, for 180 seconds from the team's last "BaronKill".
    std::optional<double> baronPowerPlaySeconds;
    QString baronPowerPlayText;  // whole seconds left (a ceiling, not below 0) as minutes and "%02d" seconds
    QString baronPowerPlayHelp;  // "Baron power play time remaining"
    int elderDragonCount = 0;
    QString elderDragonHelp;  // "Elder Dragon secured", or "<n> Elder Dragons secured"
    std::array<DragonSlot, 4> dragonSlots;
    bool hasDragonSoul = false;

    friend bool operator==(const TeamObjectives&, const TeamObjectives&) = default;
};

inline constexpr double kBaronPowerPlaySeconds = 180;

// The objectives of `team` among the elapsed events, at movie time `currentTime`.
TeamObjectives teamObjectives(const std::vector<const RecordingEvent*>& elapsed, RecordingTeam team,
                              double currentTime);

// The name of a dragon by its detail: "Dragon" when absent or empty; the detail as it stands when it
// contains "dragon" in any case ("Elder Dragon"); else the detail and " Dragon" ("Infernal Dragon").
QString dragonName(const std::optional<std::string>& detail);

}  // namespace kestrum

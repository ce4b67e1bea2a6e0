#pragma once

#include "core/review/TimelineKillerNames.h"
#include "core/telemetry/RecordingEvent.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace kestrum {

// A killer or a victim on the hover card: a player shows the portrait of `championIdentifier`; anything
// else (a minion, a turret, a monster) shows `symbolName` when the killer symbol rule names one.
struct TimelineCardPerson {
    QString name;
    QString championIdentifier;  // the champion key, empty when the person is no player
    QString symbolName;          // empty for a player, and for a name the rule does not know

    friend bool operator==(const TimelineCardPerson&, const TimelineCardPerson&) = default;
};

// What the hover card of one event shows: its art (or symbol), its title, its time, and for kills and
// multikills the killer and the victims.
struct TimelineHoverCardContent {
    std::int64_t eventID = 0;
    QString title;
    QString timeText;
    QString symbolName;
    QString artName;  // empty when the event has no art
    bool showsPeople = false;
    std::optional<TimelineCardPerson> killer;
    std::vector<TimelineCardPerson> victims;

    friend bool operator==(const TimelineHoverCardContent&, const TimelineHoverCardContent&) = default;
};

// Seconds between two kills of one streak: the game's window for a multikill to go on.
inline constexpr double kStreakGapSeconds = 10;

// The card of the event at `index`. The victims: a kill's own victim; for a "Multikill", the victims of
// its killer's streak that ends at its kill (kills of the same killer and team, each at most 10 seconds
// after the one before), at most as many as the streak's size; for an "Ace", likewise the victims of the
// team's chain of kills that ends at its kill, at most five.
TimelineHoverCardContent timelineHoverCardContent(const std::vector<RecordingEvent>& events,
                                                  std::size_t index, const TimelineKillerNames& killers);

}  // namespace kestrum

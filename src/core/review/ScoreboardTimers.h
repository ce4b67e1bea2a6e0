#pragma once

#include "core/telemetry/RecordingEvent.h"

#include <QString>

#include <vector>

namespace kestrum {

// The events up to the playhead: those whose videoTime is not later than `currentTime`, in list order.
std::vector<const RecordingEvent*> elapsedEvents(const std::vector<RecordingEvent>& events,
                                                 double currentTime);

// Whether the game is over at the playhead: an elapsed "GameEnd" or nexus event. Every timer then reads
// "DONE".
bool isGameOver(const std::vector<const RecordingEvent*>& elapsed);

// A countdown of the header: its name, its art, the seconds from now, and its texts.
struct ObjectiveTimer {
    QString name;
    QString artName;
    double secondsFromNow = 0;
    // timerText of the seconds, or "DONE" once the game is over.
    QString text;
    // "<name> is available" at 0 or below, else "<name> is available in <text>"; empty once over.
    QString helpText;

    friend bool operator==(const ObjectiveTimer&, const ObjectiveTimer&) = default;
};

// The help text of a timer (see ObjectiveTimer::helpText).
QString timerHelpText(const QString& name, double secondsFromNow);

// Seconds to the next dragon: 300 minus the game time before the first; after it, from the last dragon's
// videoTime, 360 when that one was an Elder or when a team has taken four elemental dragons (a soul: the
// next is an Elder), else 300; minus `currentTime`.
double nextDragonSeconds(const std::vector<const RecordingEvent*>& elapsed, double currentTime,
                         double gameTime);

// Whether the next dragon is an Elder: a team holds a soul, or the last dragon was an Elder.
bool isElderDragonNext(const std::vector<const RecordingEvent*>& elapsed);

// The next dragon's timer: "Elder Dragon" with "dragon_elder" when an Elder comes next, else "Dragon" with
// "dragon_generic".
ObjectiveTimer nextDragonTimer(const std::vector<const RecordingEvent*>& elapsed, double currentTime,
                               double gameTime);

// The one big objective timer, by phase: "Void Grubs" ("void_grub") while fewer than three grubs have
// fallen and the game time is below 900, counting to 480; else "Rift Herald" ("rift_herald") while no
// herald has fallen and the game time is below 1200, counting to 900; else "Baron" ("baron"), 360 seconds
// after the last baron, or counting to 1200 before the first.
ObjectiveTimer nextBigObjectiveTimer(const std::vector<const RecordingEvent*>& elapsed, double currentTime,
                                     double gameTime);

}  // namespace kestrum

#pragma once

#include "core/review/TimelineFilterSet.h"
#include "core/review/TimelineKillerNames.h"
#include "core/telemetry/RecordingEvent.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace kestrum {

// Which of a recording's events get a timeline marker. Events are addressed by their index in the
// recording's list, which is taken as stored. Pure functions; main thread like the panels.

// How close, in seconds, a kill must be to its "Multikill" or "Ace", and an "Ace" to the "Multikill" that
// makes it redundant.
inline constexpr double kRelatedKillWindowSeconds = 3;

// The kill a "Multikill" or "Ace" belongs to: among the "ChampionKill" and "FirstBlood" events no later
// than it and at most 3 seconds before, with the same team when both have one and, for a "Multikill", the
// same killer, the latest; at equal times the earlier in the list. Absent for other events or none found.
std::optional<std::size_t> relatedKillIndex(const std::vector<RecordingEvent>& events, std::size_t index,
                                            const TimelineKillerNames& killers);

// Whether an "Ace" says what a "Multikill" already says: a "Multikill" within 3 seconds of it, either
// side, of the same team when both have one, whose killer is the killer of the Ace's kill (of the Ace
// itself when it has no kill).
bool isAceCoveredByMultikill(const std::vector<RecordingEvent>& events, std::size_t index,
                             const TimelineKillerNames& killers);

// Whose event a kill or multikill is: the local player's when the event has the local player's kill,
// death or assist (for a "Multikill" or "Ace", also when its kill is the local player's), else its
// team's. Absent when it has no team: the event is then hidden.
std::optional<TimelineActorFilter> timelineActor(const std::vector<RecordingEvent>& events, std::size_t index,
                                                 const TimelineKillerNames& killers);

// The indices of the events that get a marker under `filters`, in list order: events of no class never;
// a redundant "Ace" never; objectives whenever their class is on; kills and multikills when their class
// and their actor are on.
std::vector<std::size_t> visibleEventIndices(const std::vector<RecordingEvent>& events,
                                             const TimelineFilterSet& filters,
                                             const TimelineKillerNames& killers);

// Whether an event is a champion kill ("ChampionKill" or "FirstBlood", the first kill's stored name).
bool isChampionKill(const RecordingEvent& event);

// Whether two events count for the same team: true when either has none.
bool sameTeamWhenBothHaveOne(const RecordingEvent& first, const RecordingEvent& second);

}  // namespace kestrum

#pragma once

#include "core/telemetry/RecordingEvent.h"
#include "core/telemetry/RecordingMatchData.h"
#include "core/telemetry/RecordingScoreboardSnapshot.h"

#include <optional>
#include <vector>

namespace kestrum {

// How long a recording's timeline is, in seconds of movie time (the time markers are placed in).
//
// A movie that opened gives its measured duration, whatever the document says. A movie that cannot be
// opened (a damaged file) leaves the document as the only witness of the game: its span is the game's
// length (the post-game record's `gameDuration` when there is one, else the last scoreboard snapshot's
// game time) moved by the first "GameStart" event's movie time (0 without one), so that it ends where the
// game ended in the movie; it never ends before the last event or the last snapshot, so no marker falls
// off the track. Neither a movie nor anything in the document: 0.
double recordingTimelineSpanSeconds(std::optional<double> movieDurationSeconds,
                                    const std::vector<RecordingEvent>& events,
                                    const std::vector<RecordingScoreboardSnapshot>& scoreboard,
                                    const std::optional<RecordingMatchData>& matchData);

}  // namespace kestrum

#include "core/library/detail/RecordingTimelineSpan.h"

#include "core/telemetry/vocabulary/LiveEventNames.h"

#include <algorithm>
#include <cmath>

namespace kestrum {

namespace {

// A value a document may hold that cannot place anything (negative, NaN, infinite) counts as 0.
double usable(double seconds) {
    return std::isfinite(seconds) && seconds > 0 ? seconds : 0;
}

}  // namespace

double recordingTimelineSpanSeconds(std::optional<double> movieDurationSeconds,
                                    const std::vector<RecordingEvent>& events,
                                    const std::vector<RecordingScoreboardSnapshot>& scoreboard,
                                    const std::optional<RecordingMatchData>& matchData) {
    if (movieDurationSeconds) return *movieDurationSeconds;
    const auto start = std::find_if(events.begin(), events.end(), [](const RecordingEvent& event) {
        return event.name == liveEventName::gameStart;
    });
    const double gameStartSeconds = start == events.end() ? 0 : usable(start->videoTime);
    double gameSeconds = 0;
    if (matchData) {
        gameSeconds = usable(static_cast<double>(matchData->gameDuration));
    } else if (!scoreboard.empty()) {
        gameSeconds = usable(scoreboard.back().gameTime);
    }
    double span = gameSeconds > 0 ? gameStartSeconds + gameSeconds : 0;
    // The stored lists are in time order, but a hand-edited document need not be.
    for (const RecordingEvent& event : events) span = std::max(span, usable(event.videoTime));
    for (const RecordingScoreboardSnapshot& snapshot : scoreboard)
        span = std::max(span, usable(snapshot.videoTime));
    return span;
}

}  // namespace kestrum

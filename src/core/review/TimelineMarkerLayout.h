#pragma once

#include "core/review/TimelineMarker.h"
#include "core/telemetry/RecordingEvent.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace kestrum {

// The geometry of the timeline strip, in points (eventPreRollSeconds in seconds).
namespace timelineLayout {
inline constexpr double laneCenter = 32;             // vertical centre of the track
inline constexpr double timelineControlHeight = 74;  // height of the strip
inline constexpr double timestampGutterCenter = 65;  // vertical centre of the time texts under the track
inline constexpr double eventCardCenter = -20;       // vertical centre of the hover card, above the strip
inline constexpr double eventPreRollSeconds = 5;     // a click on a marker starts this long before it
inline constexpr double markerInset = 11;            // markers stay this far inside both ends of the track
inline constexpr double teamRowOffset = 12;          // blue below the centre, red above
inline constexpr double hitHalfWidth = 14;           // a pointer this far from a marker in x still hits it
inline constexpr double hitHalfHeight = 18;          // ... and this far in y
inline constexpr double tieDistance = 0.5;           // hits whose x distances differ by no more are tied
}  // namespace timelineLayout

struct TimelinePoint {
    double x = 0;
    double y = 0;
    friend bool operator==(const TimelinePoint&, const TimelinePoint&) = default;
};

// The marker's point at track width `width`: x is videoTime * width / duration, kept between 11 and
// width - 11 (11 whenever duration is 0 or less); y is the lane centre, 12 lower for blue, 12 higher for
// red. Markers of one team at one time lie on each other.
TimelinePoint markerPosition(const RecordingEvent& event, double width, double durationSeconds);

// The hover's tie-break (see TimelineMarker::priority).
int hoverPriority(const RecordingEvent& event);

// The markers of the visible events, in their order, at track width `width`.
std::vector<TimelineMarker> layoutTimelineMarkers(const std::vector<RecordingEvent>& events,
                                                  const std::vector<std::size_t>& visibleIndices,
                                                  double width, double durationSeconds);

// The marker under the pointer at (px, py), as an index into `markers`: of the hoverable markers within 14
// points in x and 18 in y, the nearest in x; distances within 0.5 of the nearest are tied, and ties go to
// the higher priority, then to the greater event id.
std::optional<std::size_t> hitTimelineMarker(const std::vector<TimelineMarker>& markers, double px,
                                             double py);

// The movie time under track position `x`: x * duration / width, within 0 and duration; 0 for a track or
// movie of no length.
double timeAtTrackPosition(double x, double width, double durationSeconds);

}  // namespace kestrum

#include "core/review/TimelineMarkerLayout.h"

#include "core/review/TimelineEventPresentation.h"
#include "core/review/TimelineVisibility.h"
#include "core/telemetry/vocabulary/LiveEventNames.h"

#include <algorithm>
#include <cmath>

namespace kestrum {

namespace {

namespace names = liveEventName;
using namespace timelineLayout;

bool isLocalKillOrDeath(const RecordingEvent& event) {
    return isChampionKill(event) &&
           (event.isLocalPlayerKill.value_or(false) || event.isLocalPlayerDeath.value_or(false));
}

TimelineMarkerKind markerKind(const RecordingEvent& event) {
    if (isChampionKill(event)) {
        if (event.isLocalPlayerKill.value_or(false)) return TimelineMarkerKind::localKill;
        if (event.isLocalPlayerDeath.value_or(false)) return TimelineMarkerKind::localDeath;
        return TimelineMarkerKind::kill;
    }
    if (event.name == names::multikill) return TimelineMarkerKind::multikill;
    if (event.name == names::ace) return TimelineMarkerKind::ace;
    if (event.name == names::gameStart) return TimelineMarkerKind::gameStart;
    if (event.name == names::gameEnd) return TimelineMarkerKind::gameEnd;
    return TimelineMarkerKind::objective;
}

// Whether `candidate` wins the tie against `best`: the higher priority, then the greater id.
bool winsTie(const TimelineMarker& candidate, const TimelineMarker& best) {
    if (candidate.priority != best.priority) return candidate.priority > best.priority;
    return candidate.eventID > best.eventID;
}

bool isWithinReach(const TimelineMarker& marker, double px, double py) {
    return marker.isHoverable && std::abs(marker.y - py) <= hitHalfHeight &&
           std::abs(marker.x - px) <= hitHalfWidth;
}

}  // namespace

TimelinePoint markerPosition(const RecordingEvent& event, double width, double durationSeconds) {
    double x = markerInset;
    if (durationSeconds > 0) {
        // The upper bound is applied last, so a track narrower than both insets puts markers at width - 11.
        x = std::min(std::max(event.videoTime * width / durationSeconds, markerInset), width - markerInset);
    }
    double y = laneCenter;
    if (event.team) y += *event.team == RecordingTeam::blue ? teamRowOffset : -teamRowOffset;
    return {x, y};
}

int hoverPriority(const RecordingEvent& event) {
    if (isLocalKillOrDeath(event)) return 4;
    if (event.name == names::multikill) return 3;
    if (event.name == names::ace) return 2;
    return 1;
}

std::vector<TimelineMarker> layoutTimelineMarkers(const std::vector<RecordingEvent>& events,
                                                  const std::vector<std::size_t>& visibleIndices,
                                                  double width, double durationSeconds) {
    std::vector<TimelineMarker> markers;
    markers.reserve(visibleIndices.size());
    for (const std::size_t index : visibleIndices) {
        const RecordingEvent& event = events[index];
        const TimelinePoint point = markerPosition(event, width, durationSeconds);
        const TimelineMarkerKind kind = markerKind(event);
        markers.push_back({event.id, index, point.x, point.y, kind, event.team, hoverPriority(event),
                           kind != TimelineMarkerKind::gameStart && kind != TimelineMarkerKind::gameEnd,
                           timelineEventSymbolName(event), timelineEventArtName(event).value_or(QString())});
    }
    return markers;
}

std::optional<std::size_t> hitTimelineMarker(const std::vector<TimelineMarker>& markers, double px,
                                             double py) {
    double nearest = hitHalfWidth;
    bool any = false;
    for (const TimelineMarker& marker : markers) {
        if (!isWithinReach(marker, px, py)) continue;
        nearest = std::min(nearest, std::abs(marker.x - px));
        any = true;
    }
    if (!any) return std::nullopt;
    std::optional<std::size_t> best;
    for (std::size_t index = 0; index < markers.size(); ++index) {
        const TimelineMarker& marker = markers[index];
        if (!isWithinReach(marker, px, py) || std::abs(marker.x - px) - nearest > tieDistance) continue;
        if (!best || winsTie(marker, markers[*best])) best = index;
    }
    return best;
}

double timeAtTrackPosition(double x, double width, double durationSeconds) {
    if (!(width > 0) || !(durationSeconds > 0) || !std::isfinite(x)) return 0;
    return std::clamp(x * durationSeconds / width, 0.0, durationSeconds);
}

}  // namespace kestrum

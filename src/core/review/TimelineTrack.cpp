#include "core/review/TimelineTrack.h"

#include "core/review/TimelineVisibility.h"

#include <algorithm>
#include <utility>

namespace kestrum {

namespace {

const std::vector<RecordingEvent>& noEvents() {
    static const std::vector<RecordingEvent> empty;
    return empty;
}

}  // namespace

TimelineTrack::TimelineTrack() = default;

void TimelineTrack::setRecording(std::shared_ptr<const RecordingDetail> recording) {
    recording_ = std::move(recording);
    killers_ = recording_ ? TimelineKillerNames(recording_->scoreboard) : TimelineKillerNames();
    hoveredEventID_.reset();
    timelineHoverLocation_.reset();
    recompute();
}

const std::vector<RecordingEvent>& TimelineTrack::events() const {
    return recording_ ? recording_->events : noEvents();
}

double TimelineTrack::durationSeconds() const {
    return recording_ ? recording_->duration : 0;
}

void TimelineTrack::setFilters(const TimelineFilterSet& filters) {
    if (filters == filters_) return;
    filters_ = filters;
    recompute();
    if (!hoveredEventID_) return;
    const bool stillShown =
        std::any_of(visibleIndices_.begin(), visibleIndices_.end(),
                    [&](std::size_t index) { return events()[index].id == *hoveredEventID_; });
    if (!stillShown) leave();
}

const std::vector<TimelineMarker>& TimelineTrack::markers(double width) {
    if (markersWidth_ != width) {
        markers_ = layoutTimelineMarkers(events(), visibleIndices_, width, durationSeconds());
        markersWidth_ = width;
    }
    return markers_;
}

bool TimelineTrack::hover(double px, double py, double width) {
    const std::vector<TimelineMarker>& laidOut = markers(width);
    const std::optional<std::size_t> hit = hitTimelineMarker(laidOut, px, py);
    const std::optional<std::int64_t> eventID =
        hit ? std::optional<std::int64_t>(laidOut[*hit].eventID) : std::nullopt;
    timelineHoverLocation_ = TimelinePoint{px, py};
    const bool changed = eventID != hoveredEventID_;
    hoveredEventID_ = eventID;
    return changed;
}

bool TimelineTrack::leave() {
    const bool hadHover = hoveredEventID_.has_value();
    hoveredEventID_.reset();
    timelineHoverLocation_.reset();
    return hadHover;
}

std::optional<TimelineMarker> TimelineTrack::hoveredMarker() const {
    if (!hoveredEventID_ || !markersWidth_) return std::nullopt;
    const auto found = std::find_if(markers_.begin(), markers_.end(), [&](const TimelineMarker& marker) {
        return marker.eventID == *hoveredEventID_;
    });
    if (found == markers_.end()) return std::nullopt;
    return *found;
}

std::optional<TimelineHoverCardContent> TimelineTrack::hoveredCard() const {
    const std::optional<TimelineMarker> marker = hoveredMarker();
    if (!marker) return std::nullopt;
    return timelineHoverCardContent(events(), marker->eventIndex, killers_);
}

std::optional<std::size_t> TimelineTrack::eventIndex(std::int64_t eventID) const {
    const std::vector<RecordingEvent>& list = events();
    const auto found = std::find_if(list.begin(), list.end(),
                                    [eventID](const RecordingEvent& event) { return event.id == eventID; });
    if (found == list.end()) return std::nullopt;
    return static_cast<std::size_t>(found - list.begin());
}

void TimelineTrack::recompute() {
    visibleIndices_ = visibleEventIndices(events(), filters_, killers_);
    markersWidth_.reset();
}

}  // namespace kestrum

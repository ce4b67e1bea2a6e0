#pragma once

#include "core/library/detail/RecordingDetail.h"
#include "core/review/TimelineFilterSet.h"
#include "core/review/TimelineHoverCardContent.h"
#include "core/review/TimelineKillerNames.h"
#include "core/review/TimelineMarker.h"
#include "core/review/TimelineMarkerLayout.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace kestrum {

// The timeline's track: which events of the recording show under the filters, their markers at the
// track's width, and the hovered one. The work that depends only on the recording (the killers' names)
// is done when the recording is set, the visible list when the filters change, and the markers once per
// width; a hover is one search over the markers.
//
// Main thread. The recording is shared, never copied: a long game's telemetry is large.
class TimelineTrack {
  public:
    TimelineTrack();

    // A new recording keeps the filters and clears the hover. Null: no recording (no events, duration 0).
    void setRecording(std::shared_ptr<const RecordingDetail> recording);
    const std::vector<RecordingEvent>& events() const;
    double durationSeconds() const;
    const TimelineKillerNames& killers() const { return killers_; }

    const TimelineFilterSet& filters() const { return filters_; }
    // Clears the hover when the hovered event stops showing.
    void setFilters(const TimelineFilterSet& filters);

    const std::vector<std::size_t>& visibleIndices() const { return visibleIndices_; }
    // The markers at track width `width`; the list stays valid until the next call with another width, or
    // a change of recording or filters.
    const std::vector<TimelineMarker>& markers(double width);

    // The event under the pointer, by the hit search; sets or clears the hover. True when the hovered
    // event changed.
    bool hover(double px, double py, double width);
    // The pointer left the track: clears the hover. True when there was one.
    bool leave();

    const std::optional<std::int64_t>& hoveredEventID() const { return hoveredEventID_; }
    const std::optional<TimelinePoint>& hoverLocation() const { return timelineHoverLocation_; }
    // The hovered event's marker at the last width, and its card.
    std::optional<TimelineMarker> hoveredMarker() const;
    std::optional<TimelineHoverCardContent> hoveredCard() const;

    // The index of the event with `eventID`, in the recording's list.
    std::optional<std::size_t> eventIndex(std::int64_t eventID) const;

  private:
    void recompute();

    std::shared_ptr<const RecordingDetail> recording_;
    TimelineKillerNames killers_;
    TimelineFilterSet filters_;
    std::vector<std::size_t> visibleIndices_;
    std::vector<TimelineMarker> markers_;
    std::optional<double> markersWidth_;  // the width `markers_` were laid out at; absent: stale
    std::optional<std::int64_t> hoveredEventID_;
    std::optional<TimelinePoint> timelineHoverLocation_;
};

}  // namespace kestrum

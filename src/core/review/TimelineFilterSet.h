#pragma once

#include "core/review/TimelineEventFilter.h"

#include <cstdint>

namespace kestrum {

// The two sets of the timeline's filter pop-up: the enabled event classes (all three at first) and the
// enabled actors (the local player alone at first). Either may be emptied. A plain value.
class TimelineFilterSet {
  public:
    bool contains(TimelineEventFilter filter) const { return (filters_ & bit(filter)) != 0; }
    bool contains(TimelineActorFilter actor) const { return (actors_ & bit(actor)) != 0; }

    void toggle(TimelineEventFilter filter) { filters_ ^= bit(filter); }
    void toggle(TimelineActorFilter actor) { actors_ ^= bit(actor); }

    // "Reset Filters": every class, and the local player alone.
    void reset() { *this = TimelineFilterSet(); }
    // Whether both sets equal the defaults, where a reset has nothing to change.
    bool isAtDefaults() const { return *this == TimelineFilterSet(); }

    friend bool operator==(const TimelineFilterSet&, const TimelineFilterSet&) = default;

  private:
    template <class Member>
    static constexpr std::uint8_t bit(Member member) {
        return static_cast<std::uint8_t>(1U << static_cast<unsigned>(member));
    }

    std::uint8_t filters_ = bit(TimelineEventFilter::kills) | bit(TimelineEventFilter::multikills) |
                            bit(TimelineEventFilter::objectives);
    std::uint8_t actors_ = bit(TimelineActorFilter::localPlayer);
};

}  // namespace kestrum

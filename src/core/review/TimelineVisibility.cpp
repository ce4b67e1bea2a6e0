#include "core/review/TimelineVisibility.h"

#include "core/telemetry/vocabulary/LiveEventNames.h"

#include <cmath>

namespace kestrum {

namespace {

bool isFlagSet(const std::optional<bool>& flag) {
    return flag.value_or(false);
}

bool involvesLocalPlayer(const RecordingEvent& event) {
    return isFlagSet(event.isLocalPlayerKill) || isFlagSet(event.isLocalPlayerDeath) ||
           isFlagSet(event.isLocalPlayerAssist);
}

}  // namespace

bool isChampionKill(const RecordingEvent& event) {
    return event.name == liveEventName::championKill || event.name == liveEventName::firstBlood;
}

bool sameTeamWhenBothHaveOne(const RecordingEvent& first, const RecordingEvent& second) {
    return !first.team || !second.team || *first.team == *second.team;
}

std::optional<std::size_t> relatedKillIndex(const std::vector<RecordingEvent>& events, std::size_t index,
                                            const TimelineKillerNames& killers) {
    const RecordingEvent& event = events[index];
    const bool isMultikill = event.name == liveEventName::multikill;
    if (!isMultikill && event.name != liveEventName::ace) return std::nullopt;
    std::optional<std::size_t> best;
    for (std::size_t candidate = 0; candidate < events.size(); ++candidate) {
        const RecordingEvent& kill = events[candidate];
        if (!isChampionKill(kill)) continue;
        if (kill.videoTime > event.videoTime ||
            kill.videoTime < event.videoTime - kRelatedKillWindowSeconds) {
            continue;
        }
        if (!sameTeamWhenBothHaveOne(kill, event)) continue;
        if (isMultikill && !killers.sameKiller(kill, event)) continue;
        // Strictly later only: at equal times the earlier in the list stays.
        if (!best || kill.videoTime > events[*best].videoTime) best = candidate;
    }
    return best;
}

bool isAceCoveredByMultikill(const std::vector<RecordingEvent>& events, std::size_t index,
                             const TimelineKillerNames& killers) {
    const RecordingEvent& ace = events[index];
    if (ace.name != liveEventName::ace) return false;
    const std::optional<std::size_t> kill = relatedKillIndex(events, index, killers);
    const RecordingEvent& killer = kill ? events[*kill] : ace;
    for (const RecordingEvent& multikill : events) {
        if (multikill.name != liveEventName::multikill) continue;
        if (std::abs(multikill.videoTime - ace.videoTime) > kRelatedKillWindowSeconds) continue;
        if (!sameTeamWhenBothHaveOne(multikill, ace)) continue;
        if (killers.sameKiller(multikill, killer)) return true;
    }
    return false;
}

std::optional<TimelineActorFilter> timelineActor(const std::vector<RecordingEvent>& events, std::size_t index,
                                                 const TimelineKillerNames& killers) {
    const RecordingEvent& event = events[index];
    if (involvesLocalPlayer(event)) return TimelineActorFilter::localPlayer;
    if (event.name == liveEventName::multikill || event.name == liveEventName::ace) {
        const std::optional<std::size_t> kill = relatedKillIndex(events, index, killers);
        if (kill && isFlagSet(events[*kill].isLocalPlayerKill)) return TimelineActorFilter::localPlayer;
    }
    if (!event.team) return std::nullopt;
    return *event.team == RecordingTeam::blue ? TimelineActorFilter::blue : TimelineActorFilter::red;
}

std::vector<std::size_t> visibleEventIndices(const std::vector<RecordingEvent>& events,
                                             const TimelineFilterSet& filters,
                                             const TimelineKillerNames& killers) {
    std::vector<std::size_t> visible;
    for (std::size_t index = 0; index < events.size(); ++index) {
        const std::optional<TimelineEventFilter> eventClass = timelineEventClass(events[index].name);
        if (!eventClass || !filters.contains(*eventClass)) continue;
        if (*eventClass == TimelineEventFilter::objectives) {
            visible.push_back(index);
            continue;
        }
        if (isAceCoveredByMultikill(events, index, killers)) continue;
        const std::optional<TimelineActorFilter> actor = timelineActor(events, index, killers);
        if (actor && filters.contains(*actor)) visible.push_back(index);
    }
    return visible;
}

}  // namespace kestrum

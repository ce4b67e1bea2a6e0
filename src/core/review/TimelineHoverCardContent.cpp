#include "core/review/TimelineHoverCardContent.h"

#include "core/review/ReviewTimeText.h"
#include "core/review/TimelineEventFilter.h"
#include "core/review/TimelineEventPresentation.h"
#include "core/review/TimelineVisibility.h"
#include "core/telemetry/vocabulary/LiveEventNames.h"

#include <algorithm>
#include <string_view>

namespace kestrum {

namespace {

constexpr std::size_t kTeamSize = 5;

QString beforeFirstHash(const std::string& name) {
    return QString::fromStdString(name.substr(0, name.find('#'))).trimmed();
}

TimelineCardPerson person(const std::optional<std::string>& name,
                          const std::optional<std::string>& champion) {
    TimelineCardPerson result;
    if (name) result.name = beforeFirstHash(*name);
    if (champion && !champion->empty()) {
        result.championIdentifier = QString::fromStdString(*champion);
        if (result.name.isEmpty()) result.name = result.championIdentifier;
    } else if (name) {
        result.symbolName = killerSymbolName(*name).value_or(QString());
    }
    return result;
}

TimelineCardPerson victimOf(const RecordingEvent& kill) {
    return person(kill.victimName, kill.victimChampion);
}

// The victims of the chain of kills that ends at `last`, walking back while each kill is within the
// streak gap of the next and `belongs` holds, oldest first.
template <class Belongs>
std::vector<TimelineCardPerson> chainVictims(const std::vector<RecordingEvent>& events, std::size_t last,
                                             std::size_t limit, Belongs belongs) {
    std::vector<std::size_t> chain{last};
    for (std::size_t index = last; index-- > 0 && chain.size() < limit;) {
        const RecordingEvent& kill = events[index];
        const double gap = events[chain.back()].videoTime - kill.videoTime;
        if (gap > kStreakGapSeconds) break;
        if (gap < 0 || !isChampionKill(kill) || !belongs(kill)) continue;
        chain.push_back(index);
    }
    std::vector<TimelineCardPerson> victims;
    for (auto index = chain.rbegin(); index != chain.rend(); ++index)
        victims.push_back(victimOf(events[*index]));
    return victims;
}

std::vector<TimelineCardPerson> multikillVictims(const std::vector<RecordingEvent>& events, std::size_t index,
                                                 const TimelineKillerNames& killers) {
    const RecordingEvent& event = events[index];
    const std::optional<std::size_t> kill = relatedKillIndex(events, index, killers);
    if (!kill) return {};
    const RecordingEvent& streakKill = events[*kill];
    if (event.name == liveEventName::ace) {
        return chainVictims(events, *kill, kTeamSize, [&](const RecordingEvent& other) {
            return sameTeamWhenBothHaveOne(other, streakKill);
        });
    }
    const auto streak =
        static_cast<std::size_t>(std::clamp<std::int64_t>(event.multiKillCount.value_or(2), 1, 5));
    return chainVictims(events, *kill, streak, [&](const RecordingEvent& other) {
        return sameTeamWhenBothHaveOne(other, streakKill) && killers.sameKiller(other, streakKill);
    });
}

}  // namespace

TimelineHoverCardContent timelineHoverCardContent(const std::vector<RecordingEvent>& events,
                                                  std::size_t index, const TimelineKillerNames& killers) {
    const RecordingEvent& event = events[index];
    TimelineHoverCardContent card;
    card.eventID = event.id;
    card.title = timelineEventTitle(event);
    card.timeText = formatTime(event.videoTime);
    card.symbolName = timelineEventSymbolName(event);
    card.artName = timelineEventArtName(event).value_or(QString());
    const std::optional<TimelineEventFilter> eventClass = timelineEventClass(event.name);
    card.showsPeople =
        eventClass == TimelineEventFilter::kills || eventClass == TimelineEventFilter::multikills;
    if (!card.showsPeople) return card;
    if (event.killerName || event.killerChampion)
        card.killer = person(event.killerName, event.killerChampion);
    if (isChampionKill(event)) {
        if (event.victimName || event.victimChampion) card.victims.push_back(victimOf(event));
    } else {
        card.victims = multikillVictims(events, index, killers);
    }
    return card;
}

}  // namespace kestrum

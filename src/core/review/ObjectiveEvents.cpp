#include "core/review/ObjectiveEvents.h"

#include "core/telemetry/vocabulary/LiveEventNames.h"
#include "core/telemetry/vocabulary/TextCase.h"

#include <algorithm>

namespace kestrum {

bool isElderDragonKill(const RecordingEvent& event) {
    return event.name == liveEventName::dragonKill &&
           containsIgnoringCase(event.detail.value_or(""), "elder");
}

bool isElementalDragonKill(const RecordingEvent& event) {
    return event.name == liveEventName::dragonKill && !isElderDragonKill(event);
}

bool isVoidGrubKill(const RecordingEvent& event) {
    return event.name == liveEventName::hordeKill || event.name == liveEventName::voidGrubKill;
}

int elementalDragonCount(const std::vector<const RecordingEvent*>& events, RecordingTeam team) {
    return static_cast<int>(std::count_if(events.begin(), events.end(), [team](const RecordingEvent* event) {
        return event->team == team && isElementalDragonKill(*event);
    }));
}

}  // namespace kestrum

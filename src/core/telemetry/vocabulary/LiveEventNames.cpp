#include "core/telemetry/vocabulary/LiveEventNames.h"

#include "core/telemetry/vocabulary/TextCase.h"

#include <algorithm>
#include <array>

namespace kestrum {

namespace {

constexpr std::array<std::string_view, 15> kKeptEventNames{
    liveEventName::championKill,   liveEventName::multikill,    liveEventName::ace,
    liveEventName::dragonKill,     liveEventName::baronKill,    liveEventName::heraldKill,
    liveEventName::hordeKill,      liveEventName::voidGrubKill, liveEventName::turretKilled,
    liveEventName::inhibKilled,    liveEventName::nexusKill,    liveEventName::nexusKilled,
    liveEventName::nexusDestroyed, liveEventName::gameStart,    liveEventName::gameEnd};

}  // namespace

bool isQuestEventName(std::string_view name) {
    return containsIgnoringCase(name, "quest");
}

bool isKeptEventName(std::string_view name) {
    return std::find(kKeptEventNames.begin(), kKeptEventNames.end(), name) != kKeptEventNames.end() ||
           isQuestEventName(name);
}

}  // namespace kestrum

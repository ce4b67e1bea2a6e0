#include "core/review/TimelineEventFilter.h"

#include "core/telemetry/vocabulary/LiveEventNames.h"

namespace kestrum {

namespace {

namespace names = liveEventName;

constexpr std::array<std::string_view, 12> kObjectiveNames{
    names::dragonKill,   names::baronKill,      names::heraldKill,  names::hordeKill,
    names::voidGrubKill, names::turretKilled,   names::inhibKilled, names::nexusKill,
    names::nexusKilled,  names::nexusDestroyed, names::gameStart,   names::gameEnd};

}  // namespace

std::string_view rawWord(TimelineEventFilter filter) {
    switch (filter) {
        case TimelineEventFilter::kills:
            return "kills";
        case TimelineEventFilter::multikills:
            return "multikills";
        case TimelineEventFilter::objectives:
            return "objectives";
    }
    return {};
}

std::string_view rawWord(TimelineActorFilter filter) {
    switch (filter) {
        case TimelineActorFilter::localPlayer:
            return "localPlayer";
        case TimelineActorFilter::blue:
            return "blue";
        case TimelineActorFilter::red:
            return "red";
    }
    return {};
}

QString filterLabel(TimelineEventFilter filter) {
    switch (filter) {
        // The kills row is written as "Champion" followed by its own label, " Kills".
        case TimelineEventFilter::kills:
            return QStringLiteral("Champion") + QStringLiteral(" Kills");
        case TimelineEventFilter::multikills:
            return QStringLiteral("Multikills");
        case TimelineEventFilter::objectives:
            return QStringLiteral("Objectives");
    }
    return {};
}

QString filterLabel(TimelineActorFilter filter) {
    switch (filter) {
        case TimelineActorFilter::localPlayer:
            return QStringLiteral("My Events");
        case TimelineActorFilter::blue:
            return QStringLiteral("Blue Team");
        case TimelineActorFilter::red:
            return QStringLiteral("Red Team");
    }
    return {};
}

std::optional<TimelineEventFilter> timelineEventClass(std::string_view name) {
    if (name == names::championKill || name == names::firstBlood) return TimelineEventFilter::kills;
    if (name == names::multikill || name == names::ace) return TimelineEventFilter::multikills;
    for (const std::string_view objective : kObjectiveNames) {
        if (name == objective) return TimelineEventFilter::objectives;
    }
    return std::nullopt;
}

}  // namespace kestrum

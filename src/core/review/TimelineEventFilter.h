#pragma once

#include <QString>

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kestrum {

// The classes of timeline events, each a row of the filter pop-up, in this order.
enum class TimelineEventFilter : std::uint8_t { kills, multikills, objectives };
// Whose kills and multikills show; objectives ignore these.
enum class TimelineActorFilter : std::uint8_t { localPlayer, blue, red };

inline constexpr std::array<TimelineEventFilter, 3> kTimelineEventFilters{
    TimelineEventFilter::kills, TimelineEventFilter::multikills, TimelineEventFilter::objectives};
inline constexpr std::array<TimelineActorFilter, 3> kTimelineActorFilters{
    TimelineActorFilter::localPlayer, TimelineActorFilter::blue, TimelineActorFilter::red};

// The raw words ("kills", "multikills", "objectives"; "localPlayer", "blue", "red").
std::string_view rawWord(TimelineEventFilter filter);
std::string_view rawWord(TimelineActorFilter filter);

// The rows' labels: "Champion Kills", "Multikills", "Objectives"; "My Events", "Blue Team", "Red Team".
QString filterLabel(TimelineEventFilter filter);
QString filterLabel(TimelineActorFilter filter);

// The class of an event by its stored name: "ChampionKill" and "FirstBlood" are kills, "Multikill" and
// "Ace" multikills, the dragons, barons, heralds, grubs, structures, nexus, "GameStart" and "GameEnd"
// objectives. Any other name has none, and such an event never shows.
std::optional<TimelineEventFilter> timelineEventClass(std::string_view name);

}  // namespace kestrum

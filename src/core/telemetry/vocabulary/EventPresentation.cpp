#include "core/telemetry/vocabulary/EventPresentation.h"

#include "core/telemetry/vocabulary/DragonKind.h"
#include "core/telemetry/vocabulary/LiveEventNames.h"

#include <array>
#include <utility>

namespace kestrum {

namespace {

using NameAndText = std::pair<std::string_view, std::string_view>;

// Titles of the names that need no more than the name; quests and multikills are decided before.
constexpr std::array<NameAndText, 15> kTitles{{
    {liveEventName::championKill, "Champion kill"},
    {liveEventName::firstBlood, "First blood"},
    {liveEventName::ace, "Ace"},
    {liveEventName::dragonKill, "Dragon"},
    {liveEventName::baronKill, "Baron"},
    {liveEventName::heraldKill, "Rift Herald"},
    {liveEventName::hordeKill, "Void Grub"},
    {liveEventName::voidGrubKill, "Void Grub"},
    {liveEventName::turretKilled, "Turret"},
    {liveEventName::inhibKilled, "Inhibitor"},
    {liveEventName::nexusKill, "Nexus destroyed"},
    {liveEventName::nexusKilled, "Nexus destroyed"},
    {liveEventName::nexusDestroyed, "Nexus destroyed"},
    {liveEventName::gameStart, "Game started"},
    {liveEventName::gameEnd, "Game ended"},
}};

constexpr std::array<NameAndText, 11> kSymbols{{
    {liveEventName::baronKill, "crown.fill"},
    {liveEventName::heraldKill, "shield.fill"},
    {liveEventName::hordeKill, "ladybug.fill"},
    {liveEventName::voidGrubKill, "ladybug.fill"},
    {liveEventName::turretKilled, "building.columns.fill"},
    {liveEventName::inhibKilled, "diamond.bottomhalf.filled"},
    {liveEventName::nexusKill, "burst.fill"},
    {liveEventName::nexusKilled, "burst.fill"},
    {liveEventName::nexusDestroyed, "burst.fill"},
    {liveEventName::multikill, "bolt.horizontal.circle.fill"},
    {liveEventName::gameStart, "play.fill"},
}};

constexpr std::array<std::string_view, 4> kMultikillTitles{"Double kill", "Triple kill", "Quadra kill",
                                                           "Pentakill"};

std::string multikillTitle(const std::optional<std::int64_t>& count) {
    if (!count || *count < 2 || *count > 5) return std::string(liveEventName::multikill);
    return std::string(kMultikillTitles[static_cast<std::size_t>(*count - 2)]);
}

}  // namespace

std::string eventDisplayTitle(const RecordingEvent& event) {
    if (isQuestEventName(event.name)) return "Position quest completed";
    if (event.name == liveEventName::multikill) return multikillTitle(event.multiKillCount);
    for (const auto& [name, title] : kTitles) {
        if (name == event.name) return std::string(title);
    }
    return event.name;
}

std::string_view eventSymbolName(const RecordingEvent& event) {
    if (event.name == liveEventName::dragonKill) return dragonSymbolName(event.detail.value_or(""));
    if (event.name == liveEventName::gameEnd) return "flag.checkered";
    for (const auto& [name, symbol] : kSymbols) {
        if (name == event.name) return symbol;
    }
    return "circle.fill";
}

}  // namespace kestrum

#pragma once

#include <string_view>

namespace kestrum {

// The feed's event names that the system knows, and "FirstBlood", the stored name of the first
// champion kill of a game.
namespace liveEventName {
inline constexpr std::string_view championKill = "ChampionKill";
inline constexpr std::string_view firstBlood = "FirstBlood";
inline constexpr std::string_view multikill = "Multikill";
inline constexpr std::string_view ace = "Ace";
inline constexpr std::string_view dragonKill = "DragonKill";
inline constexpr std::string_view baronKill = "BaronKill";
inline constexpr std::string_view heraldKill = "HeraldKill";
inline constexpr std::string_view hordeKill = "HordeKill";
inline constexpr std::string_view voidGrubKill = "VoidGrubKill";
inline constexpr std::string_view turretKilled = "TurretKilled";
inline constexpr std::string_view inhibKilled = "InhibKilled";
inline constexpr std::string_view nexusKill = "NexusKill";
inline constexpr std::string_view nexusKilled = "NexusKilled";
inline constexpr std::string_view nexusDestroyed = "NexusDestroyed";
inline constexpr std::string_view gameStart = "GameStart";
inline constexpr std::string_view gameEnd = "GameEnd";
}  // namespace liveEventName

// Whether a feed row of this name becomes a timeline row: one of the fifteen kept names (exact match),
// or any name containing "quest" in any case. Everything else, the feed's own "FirstBlood" included,
// is dropped.
bool isKeptEventName(std::string_view name);

// Whether the name contains "quest", ignoring case: the role and position quest rows.
bool isQuestEventName(std::string_view name);

}  // namespace kestrum

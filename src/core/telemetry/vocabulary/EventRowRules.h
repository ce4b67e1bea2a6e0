#pragma once

#include "core/telemetry/LiveGamePayloads.h"

#include <optional>
#include <string>
#include <vector>

namespace kestrum {

// How far back, in game seconds, a "Multikill" looks for the champion kill it closes; a kill exactly
// this much earlier still counts.
inline constexpr double kMultikillKillWindowSeconds = 2.0;

// A "TurretKilled" row whose KillerName is "obelisk" in normal form: Azir's sun disc took the turret.
bool isObeliskRow(const LiveEvent& row);

// The name the row credits: KillerName, else Acer; absent on obelisk rows.
std::optional<std::string> killerAliasOf(const LiveEvent& row);

// The "ChampionKill" of `feed` that a "Multikill" closes: not later than the multikill, at most
// kMultikillKillWindowSeconds earlier, by a killer whose normal form is that of `killerAlias` (absent
// names count as empty); the latest such kill, the first in feed order on a tie. Points into `feed`.
const LiveEvent* multikillKill(const std::vector<LiveEvent>& feed, const LiveEvent& multikill,
                               const std::optional<std::string>& killerAlias);

// The short text of a row from its own fields: a non-empty DragonType; else nothing without a
// KillerName; else "killer → victim" when both are non-empty; else the KillerName.
std::optional<std::string> eventDetail(const LiveEvent& row);

// The row's place on the movie's time axis: elapsed - (gameTime - eventTime), all seconds, never below 0.
double eventVideoTime(double elapsedSeconds, double gameTimeSeconds, double eventTimeSeconds);

}  // namespace kestrum

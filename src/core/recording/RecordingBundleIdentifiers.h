#pragma once

#include <QLatin1String>
#include <QString>

namespace kestrum {

// The applications the coordinator watches, matched exactly and case-sensitively.
namespace RecordingBundleIdentifiers {
// The game itself.
inline constexpr QLatin1String gameClient("com.riotgames.LeagueofLegends.GameClient");
// The League client and its interface: either counts as a running client.
inline constexpr QLatin1String leagueClient("com.riotgames.LeagueofLegends.LeagueClient");
inline constexpr QLatin1String leagueClientUx("com.riotgames.LeagueofLegends.LeagueClientUx");
// The launcher: its launch and end trigger a refresh, but it never counts as a running client.
inline constexpr QLatin1String riotClient("com.riotgames.RiotGames.RiotClient");

// Whether `identifier` is one of the League client's (the client or its interface).
inline bool isLeagueClient(const QString& identifier) {
    return identifier == leagueClient || identifier == leagueClientUx;
}
}  // namespace RecordingBundleIdentifiers

}  // namespace kestrum

// libFuzzer target for the decoders of the local game service's answers, which arrive from another
// process over the network. The first byte picks the decoder, the rest is the body. Any body may fail
// to decode; one that decodes must not break the conversion of the feed that follows it in the
// collector, so decoded feeds and player lists are also run through convertEvents.
#include "core/telemetry/vocabulary/EventConversion.h"
#include "core/telemetry/vocabulary/LiveGamePayloadCodec.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "live payload check broken: %s\n", what);
    std::abort();
}

// The decoded feed, converted against itself with an empty player list and with one player made of
// each row's killer, so that aliases, teams and the multikill lookup all see fuzzed names.
void convertFeed(const std::vector<kestrum::LiveEvent>& feed) {
    std::vector<kestrum::RecordingScoreboardPlayer> players;
    for (const auto& row : feed) {
        if (!row.killerName) continue;
        kestrum::RecordingScoreboardPlayer player;
        player.summonerName = *row.killerName;
        player.championName = row.victimName.value_or("Azir");
        player.rawChampionName = row.turretKilled;
        player.team = row.acingTeam.value_or("ORDER");
        players.push_back(std::move(player));
        if (players.size() >= 10) break;
    }
    const auto active = feed.empty() ? std::nullopt : feed.front().killerName;
    const auto events = kestrum::convertEvents(feed, players, active, 100.0, 50.0, {});
    for (const auto& event : events) {
        if (!(event.videoTime >= 0.0)) fail("a row was placed before the movie's start");
        if (!event.isLocalPlayerKill || !event.isLocalPlayerDeath || !event.isLocalPlayerAssist) {
            fail("a row lacks one of its local player flags");
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string_view body(reinterpret_cast<const char*>(data) + 1, size - 1);
    switch (data[0] % 5) {
        case 0: {
            const auto stats = kestrum::decodeGameStats(body);
            if (stats && !std::isfinite(stats.value().gameTime)) fail("a non-finite game time decoded");
            break;
        }
        case 1:
            (void)kestrum::decodeLiveGameData(body);
            break;
        case 2: {
            const auto feed = kestrum::decodeEventData(body);
            if (feed) convertFeed(feed.value());
            break;
        }
        case 3:
            (void)kestrum::decodeActivePlayerName(body);
            break;
        default: {
            const auto players = kestrum::decodePlayerList(body);
            if (players) (void)kestrum::convertEvents({}, players.value(), std::string("a"), 0, 0, {});
            break;
        }
    }
    return 0;
}

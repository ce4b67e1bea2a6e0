#pragma once

#include "base/common/Result.h"
#include "core/telemetry/LiveGamePayloads.h"
#include "core/telemetry/RecordingScoreboardPlayer.h"

#include <string>
#include <string_view>
#include <vector>

namespace kestrum {

// Decoders of the local game service's answers (the bodies of 200 responses). Each is strict: the body
// must be exactly one JSON value of the expected type; a missing, null or mistyped required key, a
// mistyped optional key, a number that is not an exact in-range integer where an integer is due, or
// any parse error fails the whole answer. Keys the records do not name are ignored. On failure the
// Error's description names the place ("Events[4].EventTime: missing required key"), which the client
// writes into its throttled failure line. Pure functions, safe on any thread.

// /liveclientdata/gamestats: an object with "gameMode" (string) and "gameTime" (number, game seconds).
Result<GameStats> decodeGameStats(std::string_view bytes);

// /liveclientdata/allgamedata, reduced to the active player, the players and the game mode.
Result<LiveGameData> decodeLiveGameData(std::string_view bytes);

// /liveclientdata/eventdata: the rows of the object's required "Events" array, in feed order.
Result<std::vector<LiveEvent>> decodeEventData(std::string_view bytes);

// /liveclientdata/activeplayername: the body is one JSON string (quoted), returned unescaped.
Result<std::string> decodeActivePlayerName(std::string_view bytes);

// /liveclientdata/playerlist: a JSON array of players, read by the session document's own player table
// (the stored scoreboard row and the service's row are one record with the same keys).
Result<std::vector<RecordingScoreboardPlayer>> decodePlayerList(std::string_view bytes);

}  // namespace kestrum

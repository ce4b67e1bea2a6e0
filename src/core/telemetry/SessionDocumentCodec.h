#pragma once

#include "base/common/Result.h"
#include "core/telemetry/RecordingScoreboardPlayer.h"
#include "core/telemetry/RecordingSessionData.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrum {

// The JSON form of the session document. Writing is compact with sorted keys, absent fields omitted;
// reading is strict: one error anywhere fails the whole document, and the Error's description names
// the failing path ("scoreboard[3].players[1].respawnTimer: missing required key"). Unknown keys are
// ignored, a null counts as missing, and a key given twice in one object fails. Pure functions, safe
// on any thread.
Result<RecordingSessionData> decodeSessionData(std::string_view bytes);
Result<std::string> encodeSessionData(const RecordingSessionData& session);

// Receives the snapshots of a document's scoreboard one at a time, in stored order.
using ScoreboardSnapshotVisitor = std::function<void(RecordingScoreboardSnapshot&& snapshot)>;

// Decodes as decodeSessionData does, with the same checks and so the same success or failure, but keeps
// no snapshot: each goes to `visitSnapshot` as soon as it is decoded, and the result's `scoreboard` is
// then present and empty (absent when the document has none). A long game's scoreboard, the bulk of its
// document, is thus never held whole, neither as JSON values nor as records. Snapshots may reach the
// visitor before a later part of the document fails it.
Result<RecordingSessionData> decodeSessionData(std::string_view bytes,
                                               const ScoreboardSnapshotVisitor& visitSnapshot);

// A JSON array of scoreboard players: the local service's `/liveclientdata/playerlist` answer.
Result<std::vector<RecordingScoreboardPlayer>> decodeScoreboardPlayers(std::string_view bytes);
Result<std::string> encodeScoreboardPlayers(const std::vector<RecordingScoreboardPlayer>& players);

}  // namespace kestrum

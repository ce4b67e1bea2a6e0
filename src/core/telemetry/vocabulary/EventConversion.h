#pragma once

#include "core/telemetry/LiveGamePayloads.h"
#include "core/telemetry/RecordingEvent.h"
#include "core/telemetry/RecordingScoreboardPlayer.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kestrum {

// The ids of the events a collection run has already converted. The collector owns it across passes
// (it is the key set of its events by id); a conversion only reads it.
using KnownEventIDs = std::set<std::int64_t>;

// The new timeline rows of one answer of the event feed.
//
// `feed` is the whole answer, in feed order; the first kill and a multikill's kill are looked up in it
// alone, whatever earlier answers held. `players` is the player list of the same pass (may be empty)
// and `activePlayerName` the local player's name once known (absent: nobody is the local player).
// `elapsedSeconds` (seconds of movie time at the pass) and `gameTimeSeconds` (the game clock of the same
// moment) place each row at videoTime = elapsed - (gameTime - EventTime), and 0 if that is negative.
//
// Rows whose name is not kept, and rows whose id is in `knownIDs`, yield nothing; so does a later row
// repeating an id already converted in this same call (the first form stands). The result keeps feed
// order. Every row carries the three isLocalPlayer... flags, false where they do not apply. Pure.
std::vector<RecordingEvent> convertEvents(const std::vector<LiveEvent>& feed,
                                          const std::vector<RecordingScoreboardPlayer>& players,
                                          const std::optional<std::string>& activePlayerName,
                                          double elapsedSeconds, double gameTimeSeconds,
                                          const KnownEventIDs& knownIDs);

}  // namespace kestrum

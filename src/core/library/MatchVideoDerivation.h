#pragma once

#include "base/common/ReferenceDate.h"
#include "core/library/LocalPlayerSearch.h"
#include "core/library/MatchVideo.h"
#include "core/library/ParsedRecordingFileName.h"
#include "core/library/ScoreboardDigest.h"
#include "core/library/SessionDigest.h"
#include "core/telemetry/RecordingSessionData.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace kestrum {

// The library entry of one movie, from its file name and, when one could be read, its session's digest
// (taken with the search that LocalPlayerSearch::fromFileName(fileName) gives). Without a session only
// url, date, matchTitle, champion, championAssetName, gameMode, role and mapID can be present. `date` is
// the movie's creation date, or what stands for it (see RecordingLibraryDate.h). Pure.
MatchVideo deriveMatchVideo(const QString& moviePath, ReferenceDate date,
                            const ParsedRecordingFileName& fileName,
                            const std::optional<SessionDigest>& digest);

// The same from a whole session document.
MatchVideo deriveMatchVideo(const QString& moviePath, ReferenceDate date,
                            const ParsedRecordingFileName& fileName,
                            std::optional<RecordingSessionData> session);

// The map of a recording: by the file name's mode word ("ARAM" and "KIWI" 12, "CHERRY" 30), else by
// the post-game queue (Summoner's Rift 11, ARAM 12, Nexus Blitz 21, Arena 30); else none.
std::optional<std::int64_t> mapIDFor(const std::optional<std::string>& gameMode,
                                     const std::optional<RecordingMatchData>& matchData);

// (kills + assists) / teamKills as a whole percent, halves rounded away from zero, at most 100. A team
// total below 1 gives 0.
std::int64_t killParticipationPercent(std::int64_t kills, std::int64_t assists, double teamKills);

// The ids of the items in slots 0 to 5 of the local player in the last snapshot, in slot order; absent
// without a scoreboard, with an empty one, or when the local player is not in its last snapshot.
std::optional<std::vector<std::int64_t>> finalItemIDs(const std::optional<ScoreboardDigest>& scoreboard,
                                                      const std::optional<LocalPlayerSearch>& search);

// The local player's finished items in the order in which they first appear over the snapshots taken
// in game-time order, each once, as raw ids; absent when there are none. `isArena` picks the Arena list.
std::optional<std::vector<std::int64_t>> legendaryItemIDsInPurchaseOrder(
    const std::optional<ScoreboardDigest>& scoreboard, bool isArena);

// Entries newest first; entries of the same date keep their order.
void sortNewestFirst(std::vector<MatchVideo>& matches);

}  // namespace kestrum

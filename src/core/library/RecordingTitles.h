#pragma once

#include "core/library/ParsedRecordingFileName.h"
#include "core/telemetry/RecordingSessionData.h"

#include <optional>
#include <string>
#include <string_view>

namespace kestrum {

// The titles the library makes for a recording, and the decision to repair the one a sidecar stores.
// Pure functions; texts are UTF-8 and pieces are joined by " · ".

// The media kind of a clip. A document of this kind is never retitled and counts in no collection.
inline constexpr std::string_view kHighlightMediaKind = "highlight";

// The title of a recording without a session: the present items of the mode's name, the champion's
// name and the lane's display word; nothing when the name has no champion.
std::optional<std::string> fileNameTitle(const ParsedRecordingFileName& fileName);

// Whether the recording is a custom game: by the post-game record's queue 0 when there is one, else
// only when an enrichment ended on "HTTP 404" and either failed or was tried at least 5 times.
bool isCustomGame(const RecordingSessionData& session);

// The title of a recording from its session and file name: a head from the mode word, else from the
// post-game queue, else "League Match", followed by the champion's name and the lane's display word.
std::string sessionTitle(const RecordingSessionData& session, const ParsedRecordingFileName& fileName);

// Whether a stored title looks like one this system generated: its piece before the first " · ",
// upper-cased, is a mode or queue word ("CLASSIC", "LEAGUE MATCH", "ARAM", "ARENA", ...). Any other
// title was set by the user or a later version and is left alone.
bool looksGeneratedTitle(std::string_view title);

// The title to write into the sidecar, or nothing when it must stay as it is: never for a highlight;
// the worked-out title when the document has none, or when its title differs and looks generated.
std::optional<std::string> repairedTitle(const RecordingSessionData& session,
                                         const ParsedRecordingFileName& fileName);

}  // namespace kestrum

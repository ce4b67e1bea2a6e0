#pragma once

#include "core/library/LocalPlayerSearch.h"
#include "core/library/ScoreboardDigest.h"
#include "core/telemetry/RecordingSessionData.h"

#include <optional>

namespace kestrum {

// A session document as the library reads it: the document without its snapshots, and the digest of
// its scoreboard.
struct SessionDigest {
    // Its `scoreboard` is never consulted: `scoreboard` below stands for it.
    RecordingSessionData session;
    // Absent when the document has no scoreboard.
    std::optional<ScoreboardDigest> scoreboard;

    // The digest of a whole document, its snapshots taken in stored order.
    static SessionDigest of(RecordingSessionData session, const std::optional<LocalPlayerSearch>& search) {
        SessionDigest digest;
        if (session.scoreboard)
            digest.scoreboard = ScoreboardDigest::of(std::move(*session.scoreboard), search);
        session.scoreboard.reset();
        digest.session = std::move(session);
        return digest;
    }
};

}  // namespace kestrum

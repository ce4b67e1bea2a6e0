#pragma once

#include "base/common/Result.h"

#include <QString>

#include <cstdint>

namespace kestrum {

// What the rebuild of an unfinished movie gave.
struct RecoveredMovie {
    // Seconds of picture the movie now holds (its duration).
    double heldSeconds = 0;
    // True when the movie was already finished and nothing was changed.
    bool wasFinished = false;
    // Packets of the journal written back into the index, and those left out at the end for lack of
    // room for the index (a full disk).
    std::int64_t packetsKept = 0;
    std::int64_t packetsLeftOut = 0;
};

// Makes a movie that a writer never finished playable again, in place, from its journal
// (movieJournalPath): the media data stays where it is, the index is written after the last packet the
// journal vouches for, and what lies beyond is cut away. No copy is made, so it needs no room beyond
// the file's own; where even the index does not fit, the last packets give up their place to it.
//
// Threads: any thread but the one that must stay responsive (it reads the whole journal and writes the
// index); one call per movie at a time, and never while a writer still writes the movie.
class MovieRecovery {
  public:
    virtual ~MovieRecovery() = default;

    // The outcome, or an Error that says why the movie cannot be made playable (no journal, a journal
    // that does not match the file, nothing journaled, the file cannot be written). On an Error the
    // movie file is as it was.
    virtual Result<RecoveredMovie> recover(const QString& moviePath) const = 0;
};

}  // namespace kestrum

#pragma once

#include "base/common/Result.h"
#include "base/files/DurableAppendFile.h"
#include "media/MovieJournal.h"

#include <QString>

#include <vector>

namespace kestrum {

// Writes the journal of a movie under writing (MovieJournal.h) beside it. Packets are noted as the muxer
// writes them and committed, with a sync, only once the movie's bytes they name are known to be in the
// file: after a crash the journal never vouches for bytes the movie does not hold.
//
// Thread: the muxer thread alone (created on the writer's owning thread before that starts).
class MovieJournalWriter {
  public:
    // Creates the journal of `moviePath` and writes its start. An Error leaves the writer closed, and
    // every later call a no-op.
    Status create(const QString& moviePath);
    bool isOpen() const { return file_.isOpen(); }

    // Appends a track's description; tracks come before any packet, in track order.
    Status addTrack(const MovieJournalTrack& track);
    // Notes a packet just written to the movie.
    void note(const MovieJournalPacket& packet);
    // Appends the noted packets whose bytes end at or before `fileBytesWritten`, then syncs the journal.
    // Call it after the movie's own sync, so that what the journal vouches for is durable first.
    Status commit(std::int64_t fileBytesWritten);
    // Packets committed so far.
    std::int64_t committedPackets() const { return committed_; }
    void close() { file_.close(); }

  private:
    DurableAppendFile file_;
    std::vector<MovieJournalPacket> noted_;
    std::int64_t committed_ = 0;
};

}  // namespace kestrum

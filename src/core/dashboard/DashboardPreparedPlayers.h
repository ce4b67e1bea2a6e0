#pragma once

#include "core/library/MatchVideo.h"
#include "platform/ports/VideoPlayer.h"

#include <QString>

#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace kestrum {

// The players kept for reuse, so that going back to a recording (or to a neighbour in the list) starts
// at once. A player is keyed by the movie's file as it is now: its path, modification time and size, so
// a recording changed on disk gets a new player rather than one holding the old file.
//
// Players are shared: the review window holds the one on show, and a player pruned or cleared here is
// paused and emptied but lives on until its last holder lets go.
//
// Threads: the main thread, like the players. The factory must outlive this.
class DashboardPreparedPlayers {
  public:
    explicit DashboardPreparedPlayers(VideoPlayerFactory& factory) : factory_(factory) {}
    ~DashboardPreparedPlayers();
    DashboardPreparedPlayers(const DashboardPreparedPlayers&) = delete;
    DashboardPreparedPlayers& operator=(const DashboardPreparedPlayers&) = delete;

    struct Prepared {
        std::shared_ptr<VideoPlayer> player;
        bool isNew = false;  // made for this call
    };

    // The player kept under the movie's key, or a new one made and kept.
    Prepared playerFor(const QString& moviePath);

    // Keeps the players of `selected` and of its neighbours in `displayed` (one before, one after);
    // every other is paused, emptied and dropped. A selection not in the list keeps everything.
    void prune(const std::vector<MatchVideo>& displayed, const std::optional<MatchVideo>& selected);

    // Pauses, empties and drops every player.
    void clear();

    std::size_t count() const { return players_.size(); }
    // Every player kept, in no particular order.
    std::vector<std::shared_ptr<VideoPlayer>> players() const;
    bool contains(const QString& key) const { return players_.count(key) > 0; }

  private:
    VideoPlayerFactory& factory_;
    std::map<QString, std::shared_ptr<VideoPlayer>> players_;  // main thread
};

// "<standardised path>|<modification time, seconds since 1970>|<size in bytes>"; the path alone when the
// file's attributes cannot be read (it is gone, or out of reach).
QString preparedPlayerKey(const QString& moviePath);

}  // namespace kestrum

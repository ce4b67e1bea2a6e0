#pragma once

#include "base/common/Result.h"

#include <QCoroTask>

#include <cstdint>

namespace kestrum {

// Carries one application's sound, and only it, to a place other programs can pick it from while League
// Share runs. On Linux: a null sink named "Kestrum Share" whose monitor ("Monitor of Kestrum Share") a
// voice chat or OBS selects, fed with the sink inputs of that process; nothing reaches the speakers twice.
//
// Contract: every call on the main thread; the tasks complete on the main thread. At most one route runs.
class LeagueShareAudioRoute {
  public:
    virtual ~LeagueShareAudioRoute() = default;

    // Starts routing the sound of process `processId`, replacing a route that already runs. An Error when
    // the sound server cannot be reached or the sink cannot be made; nothing is left behind then.
    virtual QCoro::Task<Status> start(std::int32_t processId) = 0;

    // Ends the route and removes the sink; does nothing when none runs. Destroying a running route stops
    // it synchronously.
    virtual QCoro::Task<> stop() = 0;

  protected:
    LeagueShareAudioRoute() = default;
    LeagueShareAudioRoute(const LeagueShareAudioRoute&) = default;
    LeagueShareAudioRoute& operator=(const LeagueShareAudioRoute&) = default;
};

}  // namespace kestrum

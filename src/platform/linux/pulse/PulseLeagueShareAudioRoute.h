#pragma once

#include "platform/linux/pulse/PulseProcessSoundRoute.h"
#include "platform/ports/LeagueShareAudioRoute.h"

#include <QThreadPool>

#include <chrono>
#include <memory>

namespace kestrum {

// League Share's sound on Linux: the game's sound in a null sink "kestrum_share" shown as "Kestrum
// Share", through a PulseProcessSoundRoute. Making and removing the route wait on the sound server, so
// they run on a worker thread of this adapter, one after the other in the order asked; the main thread
// only awaits them.
//
// Threads: the port's calls, and `state_`'s fields, on the main thread; the route is opened and closed
// on the worker.
class PulseLeagueShareAudioRoute final : public LeagueShareAudioRoute {
  public:
    static constexpr char kSinkName[] = "kestrum_share";
    static constexpr char kSinkDescription[] = "Kestrum Share";

    explicit PulseLeagueShareAudioRoute(
        std::chrono::milliseconds connectTimeout = PulseMainLoop::kConnectTimeout);
    ~PulseLeagueShareAudioRoute() override;
    PulseLeagueShareAudioRoute(const PulseLeagueShareAudioRoute&) = delete;
    PulseLeagueShareAudioRoute& operator=(const PulseLeagueShareAudioRoute&) = delete;

    QCoro::Task<Status> start(std::int32_t processId) override;
    QCoro::Task<> stop() override;

    // The running route, for its counts; null when none runs.
    std::shared_ptr<const PulseProcessSoundRoute> route() const { return state_->route; }

  private:
    // Outlives the adapter while a task is suspended, so that a task resumed after the adapter went
    // finds out instead of touching it.
    struct State {
        QThreadPool worker;
        std::shared_ptr<PulseProcessSoundRoute> route;
        // Counts the starts and stops asked; a start whose number is no longer the latest was overtaken.
        std::uint64_t request = 0;
        bool adapterGone = false;
    };

    static QCoro::Task<> close(std::shared_ptr<State> state);

    const std::chrono::milliseconds connectTimeout_;
    std::shared_ptr<State> state_;
};

}  // namespace kestrum

#pragma once

#include "base/common/Result.h"
#include "platform/linux/pulse/PulseMainLoop.h"
#include "platform/linux/pulse/PulseNullSink.h"
#include "platform/linux/pulse/PulsePlaybackStream.h"
#include "platform/linux/pulse/PulseSinkInputMix.h"

#include <chrono>
#include <cstdint>
#include <memory>

namespace kestrum {

// The sound of one process, and only it, played into a null sink of its own while the route is open.
// The process's playback streams (told by their "application.process.id") are each recorded from the
// monitor of their sink, as the recording side records applications (PulseSinkInputMix), mixed, and
// played into the null sink by a short playback stream; the streams themselves stay where they play, so
// the user hears them as before. Streams that appear or vanish while open are followed.
//
// The added delay is the monitor's fragment, one block of the mix and the playback stream's target:
// about kPlaybackLatencyUs plus twice PulseSinkInputMix::kBlockMilliseconds, and at most
// kPlaybackSlackUs more for a moment after a stall. A new stream is first heard once its recording
// settled (PulseRecordStream::kSettleNs), and the mix waits for it meanwhile; what of that backlog goes
// past the slack is dropped rather than played late.
//
// Threads: `open` and `close` block on the sound server (bounded by its timeouts) and run on any thread
// but the loop's; the mix runs on the loop thread. `close` runs before destruction, or the destructor
// does it.
class PulseProcessSoundRoute {
  public:
    // The playback stream's queue: its target, and how far past it a burst may go before blocks drop.
    static constexpr pa_usec_t kPlaybackLatencyUs = 40'000;
    static constexpr pa_usec_t kPlaybackSlackUs = 60'000;

    struct Names {
        QByteArray sinkName;      // e.g. "kestrum_share"
        QString sinkDescription;  // e.g. "Kestrum Share"
    };

    // Connects, replaces a null sink of the same name left by an earlier run, makes the sink and starts
    // the route. An Error when the server cannot be reached or refuses, or when `processId` is this
    // process; nothing is left behind then.
    static Result<std::shared_ptr<PulseProcessSoundRoute>> open(
        std::int32_t processId, const Names& names,
        std::chrono::milliseconds connectTimeout = PulseMainLoop::kConnectTimeout);

    ~PulseProcessSoundRoute();
    PulseProcessSoundRoute(const PulseProcessSoundRoute&) = delete;
    PulseProcessSoundRoute& operator=(const PulseProcessSoundRoute&) = delete;

    // Ends the streams and removes the sink; an Error when the server could not be told (the sink then
    // goes with the next open of the same name, or with the server).
    Status close();

    // Lock not held. The bytes played into the sink and those dropped to keep the delay down.
    std::int64_t playedBytes() const;
    std::int64_t droppedBytes() const;

  private:
    PulseProcessSoundRoute(std::shared_ptr<PulseMainLoop> loop, std::int32_t processId, const Names& names);
    Status start();

    std::shared_ptr<PulseMainLoop> loop_;
    // Lock held for every use.
    PulseNullSink sink_;
    PulsePlaybackStream playback_;
    PulseSinkInputMix mix_;
    bool open_ = false;
};

}  // namespace kestrum

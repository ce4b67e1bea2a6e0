#include "platform/linux/pulse/PulseProcessSoundRoute.h"

#include "platform/linux/pulse/PulseMainLoopLock.h"

#include <unistd.h>

namespace kestrum {

namespace {

// The mix's own format; the server converts for the sink.
constexpr pa_sample_spec kSampleSpec{PA_SAMPLE_FLOAT32LE, 48000, 2};

}  // namespace

Result<std::shared_ptr<PulseProcessSoundRoute>> PulseProcessSoundRoute::open(
    std::int32_t processId, const Names& names, std::chrono::milliseconds connectTimeout) {
    // Our own playback stream into the sink belongs to this process: routing it would feed the sink
    // back into itself.
    if (processId == getpid()) {
        return PulseMainLoop::makeError(QStringLiteral("The sound of Kestrum itself cannot be routed."));
    }
    Result<std::shared_ptr<PulseMainLoop>> loop =
        PulseMainLoop::connect(names.sinkDescription, connectTimeout);
    if (!loop.ok()) return loop.error();
    std::shared_ptr<PulseProcessSoundRoute> route(
        new PulseProcessSoundRoute(std::move(loop).value(), processId, names));
    const Status started = route->start();
    if (!started.ok()) return started.error();
    return route;
}

PulseProcessSoundRoute::PulseProcessSoundRoute(std::shared_ptr<PulseMainLoop> loop, std::int32_t processId,
                                               const Names& names)
    : loop_(std::move(loop)),
      sink_(*loop_, names.sinkName, names.sinkDescription),
      playback_(*loop_, kSampleSpec, kPlaybackLatencyUs, kPlaybackSlackUs),
      mix_(*loop_, kSampleSpec, PulseSinkInputFilter::inputsOf({processId}),
           [this](HostTimeNs, std::int64_t, std::vector<std::uint8_t> bytes) { playback_.write(bytes); }) {}

PulseProcessSoundRoute::~PulseProcessSoundRoute() {
    (void)close();
}

Status PulseProcessSoundRoute::start() {
    const PulseMainLoopLock lock(*loop_);
    open_ = true;
    Status status = sink_.create();
    if (status.ok()) status = playback_.open(sink_.description().toUtf8(), sink_.sinkName());
    if (status.ok()) status = mix_.start();
    if (status.ok()) return status;
    mix_.stop();
    playback_.close();
    (void)sink_.remove();
    open_ = false;
    return status;
}

Status PulseProcessSoundRoute::close() {
    const PulseMainLoopLock lock(*loop_);
    if (!open_) return Status::success();
    open_ = false;
    mix_.stop();
    playback_.close();
    if (!loop_->isContextReady()) {
        return PulseMainLoop::makeError(
            QStringLiteral("The sound server went away; its sink “%1” goes with it.")
                .arg(QString::fromUtf8(sink_.sinkName())));
    }
    return sink_.remove();
}

std::int64_t PulseProcessSoundRoute::playedBytes() const {
    const PulseMainLoopLock lock(*loop_);
    return playback_.writtenBytes();
}

std::int64_t PulseProcessSoundRoute::droppedBytes() const {
    const PulseMainLoopLock lock(*loop_);
    return playback_.droppedBytes();
}

}  // namespace kestrum

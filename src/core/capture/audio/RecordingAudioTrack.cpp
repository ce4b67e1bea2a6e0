#include "core/capture/audio/RecordingAudioTrack.h"

#include <chrono>

namespace kestrum {

namespace {

// The host time of the clock's present instant: the product's clock is the monotonic one, whose epoch is
// the host clock's.
HostTimeNs hostTimeOf(const Clock& clock) {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(clock.now().time_since_epoch()).count();
}

}  // namespace

void RecordingAudioTrack::prepare(std::shared_ptr<MovieWriterInput> input, double volume) {
    input_ = std::move(input);
    volume_ = volume;
    tally_.reset();
}

void RecordingAudioTrack::handleBuffer(AudioSampleBuffer& buffer, bool isSessionStarted) {
    if (!isSessionStarted) return tally_.count(RecordingSampleFate::beforeSession);
    if (!input_ || !input_->isReadyForMoreMediaData()) return tally_.count(RecordingSampleFate::notReady);
    (void)processor_.processSampleBuffer(buffer, kGateEnabled, volume_, kGateSensitivity);
    if (timing_ == RecordingAudioTiming::atArrival && buffer.frameCount() > 0) {
        buffer = AudioSampleBuffer(buffer.format(), hostTimeOf(clock_), buffer.frameCount(),
                                   std::move(buffer.buffers()));
    }
    const bool appended = input_->append(std::move(buffer));
    tally_.count(appended ? RecordingSampleFate::written : RecordingSampleFate::refused);
}

}  // namespace kestrum

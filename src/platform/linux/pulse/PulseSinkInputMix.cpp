#include "platform/linux/pulse/PulseSinkInputMix.h"

#include <pulse/rtclock.h>

#include <cstring>

namespace kestrum {

namespace {

PulseAudioMixer::Settings mixerSettings(const pa_sample_spec& sampleSpec) {
    PulseAudioMixer::Settings settings;
    settings.sampleRateHz = static_cast<int>(sampleSpec.rate);
    settings.channelCount = sampleSpec.channels;
    settings.blockFrames = sampleSpec.rate * PulseSinkInputMix::kBlockMilliseconds / 1000;
    return settings;
}

}  // namespace

PulseSinkInputMix::PulseSinkInputMix(PulseMainLoop& loop, const pa_sample_spec& sampleSpec,
                                     PulseSinkInputFilter filter, BlockHandler handler)
    : loop_(loop),
      sampleSpec_(sampleSpec),
      filter_(std::move(filter)),
      handler_(std::move(handler)),
      watcher_(loop, {[this](const PulseSinkInputDescription& description) { consider(description); },
                      [this](std::uint32_t index) { close(index); },
                      [this](std::uint32_t sink, std::uint32_t monitor) { pinLatency(sink, monitor); },
                      [this](std::uint32_t sink) { latencyPins_.erase(sink); }}),
      mixer_(mixerSettings(sampleSpec)) {}

Status PulseSinkInputMix::start() {
    if (started_) return Status::success();
    mixer_.start(hostTimeNow());
    closedOverflows_ = 0;
    closedHoleFrames_ = 0;
    everRecorded_.clear();
    const Status watching = watcher_.start();
    if (!watching.ok()) return watching;
    tick_ =
        pa_context_rttime_new(loop_.context(), pa_rtclock_now() + kTickUs, &PulseSinkInputMix::onTick, this);
    if (tick_ == nullptr) {
        watcher_.stop();
        return PulseMainLoop::makeError(QStringLiteral("The sound server's loop refused a timer."));
    }
    started_ = true;
    return Status::success();
}

void PulseSinkInputMix::stop() {
    if (!started_) return;
    started_ = false;
    watcher_.stop();
    while (!inputs_.empty()) close(inputs_.begin()->first);
    latencyPins_.clear();
    loop_.api()->time_free(tick_);
    tick_ = nullptr;
}

AudioStreamCounters PulseSinkInputMix::counters() const {
    AudioStreamCounters counters;
    counters.overruns = closedOverflows_;
    std::int64_t holeFrames = closedHoleFrames_;
    for (const auto& [index, input] : inputs_) {
        counters.overruns += input.stream->overflowCount();
        holeFrames += input.stream->holeFrames();
    }
    counters.lostMs = millisecondsOf(holeFrames);
    counters.lateMs = millisecondsOf(mixer_.droppedFrames());
    counters.playbackStreamsRecorded = static_cast<std::int64_t>(everRecorded_.size());
    return counters;
}

std::set<std::uint32_t> PulseSinkInputMix::recordedSinkInputs() const {
    std::set<std::uint32_t> recorded;
    for (const auto& [index, input] : inputs_) recorded.insert(index);
    return recorded;
}

void PulseSinkInputMix::consider(const PulseSinkInputDescription& description) {
    if (!filter_.accepts(description)) return close(description.index);
    const auto known = inputs_.find(description.index);
    // A stream that moved to another sink lost its recording with the move: it is recorded afresh from
    // the new sink's monitor. So is one whose recording the server ended.
    if (known != inputs_.end() && known->second.sinkIndex == description.sinkIndex &&
        PA_STREAM_IS_GOOD(known->second.stream->state())) {
        return;
    }
    close(description.index);
    open(description);
}

void PulseSinkInputMix::open(const PulseSinkInputDescription& description) {
    const int mixerInputID = nextMixerInputID_++;
    auto stream = std::make_unique<PulseRecordStream>(
        loop_, sampleSpec_, PulseRecordStream::CaptureLatency::readableOnly,
        [this, mixerInputID](PulseRecordStream::Fragment fragment) { mixFragment(mixerInputID, fragment); });
    // One that cannot be opened is left out; its next change tries again.
    const Status opened = stream->open(QByteArrayLiteral("Kestrum system audio"),
                                       QByteArray::number(description.monitorSourceIndex), description.index);
    if (!opened.ok()) return;
    mixer_.expect(mixerInputID, hostTimeNow());
    everRecorded_.insert(description.index);
    inputs_[description.index] = Input{description.sinkIndex, mixerInputID, std::move(stream)};
}

void PulseSinkInputMix::close(std::uint32_t sinkInputIndex) {
    const auto found = inputs_.find(sinkInputIndex);
    if (found == inputs_.end()) return;
    closedOverflows_ += found->second.stream->overflowCount();
    closedHoleFrames_ += found->second.stream->holeFrames();
    found->second.stream->close();
    // What it delivered stays in the mix; it only stops holding blocks back.
    mixer_.remove(found->second.mixerInputID);
    inputs_.erase(found);
}

void PulseSinkInputMix::pinLatency(std::uint32_t sinkIndex, std::uint32_t monitorSourceIndex) {
    if (latencyPins_.count(sinkIndex) > 0) return;
    auto pin = std::make_unique<PulseRecordStream>(loop_, sampleSpec_,
                                                   PulseRecordStream::CaptureLatency::readableOnly,
                                                   [](const PulseRecordStream::Fragment&) {});
    // Without it a sink that only plays a stream with no latency wish mixes seconds ahead, and the start of
    // a stream could be mixed before its own recording is connected. A refusal only costs that.
    if (pin->openCorked(QByteArrayLiteral("Kestrum system audio latency"),
                        QByteArray::number(monitorSourceIndex))
            .ok()) {
        latencyPins_[sinkIndex] = std::move(pin);
    }
}

void PulseSinkInputMix::mixFragment(int mixerInputID, const PulseRecordStream::Fragment& fragment) {
    // The bytes carry no alignment promise for floats: copied out rather than cast.
    scratch_.resize(fragment.bytes.size() / sizeof(float));
    std::memcpy(scratch_.data(), fragment.bytes.data(), scratch_.size() * sizeof(float));
    mixer_.add(mixerInputID, fragment.hostTimeNs, scratch_.data(), fragment.frameCount);
    handOutReadyBlocks();
}

void PulseSinkInputMix::handOutReadyBlocks() {
    for (PulseAudioMixer::Block& block : mixer_.takeReadyBlocks(hostTimeNow())) {
        std::vector<std::uint8_t> bytes(block.samples.size() * sizeof(float));
        std::memcpy(bytes.data(), block.samples.data(), bytes.size());
        handler_(block.hostTimeNs, static_cast<std::int64_t>(block.samples.size()) / sampleSpec_.channels,
                 std::move(bytes));
    }
}

std::int64_t PulseSinkInputMix::millisecondsOf(std::int64_t frames) const {
    return frames * 1000 / sampleSpec_.rate;
}

void PulseSinkInputMix::onTick(pa_mainloop_api*, pa_time_event* event, const struct timeval*,
                               void* userdata) {
    auto* self = static_cast<PulseSinkInputMix*>(userdata);
    // A lost connection ends the blocks: the stream died by itself.
    if (!self->loop_.isContextReady()) return;
    self->handOutReadyBlocks();
    pa_context_rttime_restart(self->loop_.context(), event, pa_rtclock_now() + kTickUs);
}

}  // namespace kestrum

#include "platform/linux/pulse/PulseAudioStream.h"

#include "base/log/CaptureLog.h"
#include "platform/linux/pulse/PulseAudioStreamClock.h"
#include "platform/linux/pulse/PulseMainLoopLock.h"

#include <pulse/channelmap.h>
#include <pulse/error.h>

#include <algorithm>
#include <cstring>

namespace kestrum {

// A fragment read and measured, with a copy of its samples.
struct PulseAudioStream::Fragment {
    PulseAudioStreamClock::Measurement measurement;
    std::vector<std::uint8_t> bytes;
};

// One record stream of the server and what reading it needs. Created with the PulseAudioStream and
// never moved, so that libpulse's callbacks may hold its address. `owner` and `type` are fixed; every
// other field is guarded by the loop's lock.
struct PulseAudioStream::Source {
    Source(PulseAudioStream& owner, CaptureOutputType type, int sampleRateHz)
        : owner(owner), type(type), clock(sampleRateHz) {}

    PulseAudioStream& owner;
    const CaptureOutputType type;
    PulseAudioStreamClock clock;
    pa_stream* stream = nullptr;  // open from start to stop
    CaptureStreamOutput* output = nullptr;
    SerialQueue* queue = nullptr;
    int overflowCount = 0;        // since the start
    std::int64_t holeFrames = 0;  // since the start
    // While not settled, fragments are held back, from the first after a (re)start of the clock until
    // one arrives kSettleNs after it, so that the anchor takes a backlog handed over in a burst into
    // account.
    bool isSettled = false;
    HostTimeNs settleUntilNs = 0;
    std::vector<Fragment> settling;
};

namespace {

const char* deviceNameOf(CaptureOutputType type) {
    return type == CaptureOutputType::microphone ? "@DEFAULT_SOURCE@" : "@DEFAULT_MONITOR@";
}

const char* streamNameOf(CaptureOutputType type) {
    return type == CaptureOutputType::microphone ? "Kestrum microphone" : "Kestrum system audio";
}

QString sourceWordsOf(CaptureOutputType type) {
    return type == CaptureOutputType::microphone ? QStringLiteral("microphone")
                                                 : QStringLiteral("system audio");
}

// The server's latency of a record stream: how long ago the frame at the read position was captured
// (for a monitor: how long ago it was played, which may be negative). Absent before the first timing
// update.
std::optional<HostTimeNs> serverLatencyNs(pa_stream* stream) {
    pa_usec_t latencyUs = 0;
    int negative = 0;
    if (pa_stream_get_latency(stream, &latencyUs, &negative) != 0) return std::nullopt;
    const auto latencyNs = static_cast<HostTimeNs>(latencyUs) * 1000;
    return negative != 0 ? -latencyNs : latencyNs;
}

}  // namespace

PulseAudioStream::PulseAudioStream(std::shared_ptr<PulseMainLoop> loop,
                                   const AudioStreamConfiguration& configuration)
    : loop_(std::move(loop)) {
    sampleSpec_.format = PA_SAMPLE_FLOAT32LE;
    sampleSpec_.rate = static_cast<std::uint32_t>(configuration.sampleRate);
    sampleSpec_.channels = static_cast<std::uint8_t>(configuration.channelCount);
    format_.formatID = AudioFormatDescription::kFormatLinearPCM;
    format_.formatFlags = AudioFormatDescription::kFlagIsFloat;
    format_.bitsPerChannel = 32;
    format_.channelsPerFrame = static_cast<std::uint32_t>(configuration.channelCount);
    format_.sampleRate = configuration.sampleRate;
    if (configuration.capturesAudio) {
        sources_.push_back(
            std::make_unique<Source>(*this, CaptureOutputType::audio, configuration.sampleRate));
    }
    if (configuration.captureMicrophone) {
        sources_.push_back(
            std::make_unique<Source>(*this, CaptureOutputType::microphone, configuration.sampleRate));
    }
}

PulseAudioStream::~PulseAudioStream() {
    if (started_) (void)stop();
}

Status PulseAudioStream::addStreamOutput(CaptureStreamOutput& output, CaptureOutputType type,
                                         SerialQueue& queue) {
    Source* source = sourceOf(type);
    if (source == nullptr) {
        const QString what =
            type == CaptureOutputType::screen ? QStringLiteral("screen samples") : sourceWordsOf(type);
        return PulseMainLoop::makeError(QStringLiteral("This audio stream does not capture ") + what + '.');
    }
    const PulseMainLoopLock lock(*loop_);
    source->output = &output;
    source->queue = &queue;
    return Status::success();
}

QCoro::Task<Status> PulseAudioStream::startCapture() {
    co_return start();
}

QCoro::Task<Status> PulseAudioStream::stopCapture() {
    co_return stop();
}

Status PulseAudioStream::start() {
    if (started_) return Status::success();
    const PulseMainLoopLock lock(*loop_);
    if (!loop_->isContextReady()) {
        return PulseMainLoop::makeError(QStringLiteral("The sound server could not be reached: ") +
                                        loop_->lastErrorText());
    }
    for (const auto& source : sources_) {
        const Status opened = openSource(*source);
        if (!opened.ok()) {
            for (const auto& other : sources_) closeSource(*other);
            return opened;
        }
    }
    const bool answered =
        loop_->waitUntil([this] { return allSourcesAnswered(); }, PulseMainLoop::kRequestTimeout);
    for (const auto& source : sources_) {
        if (answered && pa_stream_get_state(source->stream) == PA_STREAM_READY) continue;
        const QString reason = answered ? loop_->lastErrorText() : QStringLiteral("no answer in time");
        const Error error =
            PulseMainLoop::makeError(QStringLiteral("The sound server could not open the ") +
                                     sourceWordsOf(source->type) + QStringLiteral(": ") + reason);
        for (const auto& other : sources_) closeSource(*other);
        return error;
    }
    started_ = true;
    return Status::success();
}

Status PulseAudioStream::stop() {
    if (!started_) return Status::success();
    started_ = false;
    const PulseMainLoopLock lock(*loop_);
    bool endedByItself = !loop_->isContextReady();
    for (const auto& source : sources_) {
        endedByItself = endedByItself || pa_stream_get_state(source->stream) != PA_STREAM_READY;
        if (source->overflowCount > 0 || source->holeFrames > 0) {
            logCaptureInfo(QStringLiteral("The sound server lost %1 audio: %2 overruns, %3 ms in holes.")
                               .arg(sourceWordsOf(source->type))
                               .arg(source->overflowCount)
                               .arg(source->holeFrames * 1000 / sampleSpec_.rate));
        }
        closeSource(*source);
    }
    // From here no callback runs for these streams, so nothing more is queued to the outputs.
    if (endedByItself) {
        return PulseMainLoop::makeError(
            QStringLiteral("The sound server ended the audio capture by itself."));
    }
    return Status::success();
}

PulseAudioStream::Source* PulseAudioStream::sourceOf(CaptureOutputType type) const {
    for (const auto& source : sources_) {
        if (source->type == type) return source.get();
    }
    return nullptr;
}

Status PulseAudioStream::openSource(Source& source) {
    pa_channel_map channelMap;
    pa_channel_map_init_auto(&channelMap, sampleSpec_.channels, PA_CHANNEL_MAP_DEFAULT);
    pa_stream* stream = pa_stream_new(loop_->context(), streamNameOf(source.type), &sampleSpec_, &channelMap);
    if (stream == nullptr) {
        return PulseMainLoop::makeError(QStringLiteral("The sound server refused a stream: ") +
                                        loop_->lastErrorText());
    }
    pa_stream_set_state_callback(stream, &PulseAudioStream::onStateChange, &source);
    pa_stream_set_read_callback(stream, &PulseAudioStream::onRead, &source);
    pa_stream_set_overflow_callback(stream, &PulseAudioStream::onOverflow, &source);
    // Only the fragment size matters for a record stream; the rest is left to the server (-1).
    pa_buffer_attr attributes;
    std::memset(&attributes, 0xff, sizeof attributes);
    attributes.fragsize = static_cast<std::uint32_t>(pa_usec_to_bytes(kFragmentUs, &sampleSpec_));
    // Timing updates keep pa_stream_get_latency current without a request per fragment.
    const auto flags = static_cast<pa_stream_flags_t>(
        PA_STREAM_ADJUST_LATENCY | PA_STREAM_INTERPOLATE_TIMING | PA_STREAM_AUTO_TIMING_UPDATE);
    source.stream = stream;
    source.clock.reset();
    source.isSettled = false;
    source.settling.clear();
    source.overflowCount = 0;
    source.holeFrames = 0;
    if (pa_stream_connect_record(stream, deviceNameOf(source.type), &attributes, flags) < 0) {
        const QString reason = loop_->lastErrorText();
        closeSource(source);
        return PulseMainLoop::makeError(QStringLiteral("The sound server could not open the ") +
                                        sourceWordsOf(source.type) + QStringLiteral(": ") + reason);
    }
    return Status::success();
}

void PulseAudioStream::closeSource(Source& source) {
    if (source.stream == nullptr) return;
    pa_stream_set_state_callback(source.stream, nullptr, nullptr);
    pa_stream_set_read_callback(source.stream, nullptr, nullptr);
    pa_stream_set_overflow_callback(source.stream, nullptr, nullptr);
    if (PA_STREAM_IS_GOOD(pa_stream_get_state(source.stream))) pa_stream_disconnect(source.stream);
    pa_stream_unref(source.stream);
    source.stream = nullptr;
}

bool PulseAudioStream::allSourcesAnswered() const {
    for (const auto& source : sources_) {
        if (pa_stream_get_state(source->stream) == PA_STREAM_CREATING) return false;
    }
    return true;
}

void PulseAudioStream::readFragments(Source& source) {
    const std::size_t frameBytes = pa_frame_size(&sampleSpec_);
    for (;;) {
        const void* data = nullptr;
        std::size_t byteCount = 0;
        if (pa_stream_peek(source.stream, &data, &byteCount) < 0 || byteCount == 0) return;
        // Fragments of a record stream are whole frames; a stray partial frame would be dropped here.
        const auto frameCount = static_cast<std::int64_t>(byteCount / frameBytes);
        if (data == nullptr) {
            if (!source.settling.empty()) settle(source);
            source.clock.skip(frameCount);
            source.holeFrames += frameCount;
        } else if (frameCount > 0) {
            deliverFragment(source, data, frameCount);
        }
        pa_stream_drop(source.stream);
    }
}

void PulseAudioStream::deliverFragment(Source& source, const void* data, std::int64_t frameCount) {
    const HostTimeNs arrivalNs = hostTimeNow();
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    Fragment fragment{{arrivalNs - captureLatencyNs(source), frameCount},
                      {bytes, bytes + frameCount * static_cast<std::int64_t>(pa_frame_size(&sampleSpec_))}};
    if (source.isSettled) {
        const HostTimeNs stampNs = source.clock.stamp(fragment.measurement.measuredHostTimeNs, frameCount);
        return send(source, std::move(fragment), stampNs);
    }
    if (source.settling.empty()) source.settleUntilNs = arrivalNs + kSettleNs;
    source.settling.push_back(std::move(fragment));
    if (arrivalNs >= source.settleUntilNs) settle(source);
}

void PulseAudioStream::settle(Source& source) {
    std::vector<PulseAudioStreamClock::Measurement> measurements;
    for (const Fragment& fragment : source.settling) measurements.push_back(fragment.measurement);
    const std::vector<HostTimeNs> stampsNs = source.clock.anchorAndStamp(measurements);
    for (std::size_t i = 0; i < stampsNs.size(); ++i) {
        send(source, std::move(source.settling[i]), stampsNs[i]);
    }
    source.settling.clear();
    source.isSettled = true;
}

void PulseAudioStream::send(Source& source, Fragment fragment, HostTimeNs stampNs) {
    if (source.output == nullptr) return;
    CaptureSample sample;
    sample.presentationTimeNs = stampNs;
    sample.audio = AudioSampleBuffer(format_, stampNs, static_cast<int>(fragment.measurement.frameCount),
                                     {std::move(fragment.bytes)});
    CaptureStreamOutput* output = source.output;
    const CaptureOutputType type = source.type;
    source.queue->async(
        [output, type, sample = std::move(sample)]() mutable { output->didOutputSample(sample, type); });
}

HostTimeNs PulseAudioStream::captureLatencyNs(const Source& source) const {
    // Everything readable now, from the read position on, was captured before now: its duration is a
    // floor that holds even when this thread ran late, since what queued meanwhile is readable too (and
    // what has not arrived yet was captured later still).
    const auto readableFrames =
        static_cast<HostTimeNs>(pa_stream_readable_size(source.stream) / pa_frame_size(&sampleSpec_));
    const HostTimeNs floorNs = readableFrames * 1'000'000'000 / sampleSpec_.rate;
    // The monitor's latency by the server runs to when the sink *plays* a frame: it takes off the sink's
    // playback buffer, which is the listener's delay (seconds while the sink idles, changing whenever a
    // stream joins it), not the recording's. The sound entered the mix when the monitor got it, so the
    // floor is the monitor's whole latency.
    if (source.type != CaptureOutputType::microphone) return floorNs;
    // For an input the server's figure adds the device's own capture buffer. It is unsettled for the
    // first moments of a stream, so it is kept between the floor and a ceiling above it.
    const std::optional<HostTimeNs> serverNs = serverLatencyNs(source.stream);
    if (!serverNs) return floorNs;
    return std::clamp(*serverNs, floorNs, floorNs + kMaxDeviceLatencyNs);
}

void PulseAudioStream::onRead(pa_stream*, size_t, void* userdata) {
    auto* source = static_cast<Source*>(userdata);
    source->owner.readFragments(*source);
}

void PulseAudioStream::onStateChange(pa_stream*, void* userdata) {
    static_cast<Source*>(userdata)->owner.loop_->signal();
}

void PulseAudioStream::onOverflow(pa_stream*, void* userdata) {
    auto* source = static_cast<Source*>(userdata);
    // The server threw captured audio away without saying how much: what was read so far goes out, and
    // the clock settles afresh on what follows.
    ++source->overflowCount;
    if (!source->settling.empty()) source->owner.settle(*source);
    source->clock.reset();
    source->isSettled = false;
}

}  // namespace kestrum

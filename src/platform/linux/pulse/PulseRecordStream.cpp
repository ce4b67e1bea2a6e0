#include "platform/linux/pulse/PulseRecordStream.h"

#include <algorithm>
#include <cstring>

namespace kestrum {

namespace {

// The server's latency of a record stream: how long ago the frame at the read position was captured.
// Absent before the first timing update.
std::optional<HostTimeNs> serverLatencyNs(pa_stream* stream) {
    pa_usec_t latencyUs = 0;
    int negative = 0;
    if (pa_stream_get_latency(stream, &latencyUs, &negative) != 0) return std::nullopt;
    const auto latencyNs = static_cast<HostTimeNs>(latencyUs) * 1000;
    return negative != 0 ? -latencyNs : latencyNs;
}

}  // namespace

PulseRecordStream::PulseRecordStream(PulseMainLoop& loop, const pa_sample_spec& sampleSpec,
                                     CaptureLatency latency, FragmentHandler handler)
    : loop_(loop),
      sampleSpec_(sampleSpec),
      latency_(latency),
      handler_(std::move(handler)),
      clock_(static_cast<int>(sampleSpec.rate)) {}

Status PulseRecordStream::open(const QByteArray& streamName, const QByteArray& device,
                               std::optional<std::uint32_t> monitoredSinkInput) {
    const auto flags = monitoredSinkInput ? PA_STREAM_DONT_MOVE : PA_STREAM_NOFLAGS;
    return connect(streamName, device, monitoredSinkInput, flags);
}

Status PulseRecordStream::openCorked(const QByteArray& streamName, const QByteArray& device) {
    return connect(streamName, device, std::nullopt, PA_STREAM_START_CORKED);
}

Status PulseRecordStream::connect(const QByteArray& streamName, const QByteArray& device,
                                  std::optional<std::uint32_t> monitoredSinkInput,
                                  pa_stream_flags_t extraFlags) {
    close();
    Result<pa_stream*> made = loop_.newStream(streamName, sampleSpec_);
    if (!made.ok()) return made.error();
    stream_ = made.value();
    pa_stream_set_state_callback(stream_, &PulseRecordStream::onStateChange, this);
    pa_stream_set_read_callback(stream_, &PulseRecordStream::onRead, this);
    pa_stream_set_overflow_callback(stream_, &PulseRecordStream::onOverflow, this);
    if (monitoredSinkInput) pa_stream_set_monitor_stream(stream_, *monitoredSinkInput);
    // Only the fragment size matters for a record stream; the rest is left to the server (-1).
    pa_buffer_attr attributes;
    std::memset(&attributes, 0xff, sizeof attributes);
    attributes.fragsize = static_cast<std::uint32_t>(pa_usec_to_bytes(kFragmentUs, &sampleSpec_));
    // Timing updates keep pa_stream_get_latency current without a request per fragment. A monitor of one
    // playback stream must not follow the server elsewhere: it belongs to that stream's sink.
    const auto flags = static_cast<pa_stream_flags_t>(
        PA_STREAM_ADJUST_LATENCY | PA_STREAM_INTERPOLATE_TIMING | PA_STREAM_AUTO_TIMING_UPDATE | extraFlags);
    clock_.reset();
    isSettled_ = false;
    settling_.clear();
    overflowCount_ = 0;
    holeFrames_ = 0;
    if (pa_stream_connect_record(stream_, device.constData(), &attributes, flags) < 0) {
        const QString reason = loop_.lastErrorText();
        close();
        return PulseMainLoop::makeError(QStringLiteral("The sound server could not open ") +
                                        QString::fromUtf8(device) + QStringLiteral(": ") + reason);
    }
    return Status::success();
}

void PulseRecordStream::close() {
    if (stream_ == nullptr) return;
    pa_stream_set_state_callback(stream_, nullptr, nullptr);
    pa_stream_set_read_callback(stream_, nullptr, nullptr);
    pa_stream_set_overflow_callback(stream_, nullptr, nullptr);
    if (PA_STREAM_IS_GOOD(pa_stream_get_state(stream_))) pa_stream_disconnect(stream_);
    pa_stream_unref(stream_);
    stream_ = nullptr;
    settling_.clear();
}

pa_stream_state_t PulseRecordStream::state() const {
    return stream_ == nullptr ? PA_STREAM_UNCONNECTED : pa_stream_get_state(stream_);
}

void PulseRecordStream::readFragments() {
    const std::size_t frameBytes = pa_frame_size(&sampleSpec_);
    for (;;) {
        const void* data = nullptr;
        std::size_t byteCount = 0;
        if (pa_stream_peek(stream_, &data, &byteCount) < 0 || byteCount == 0) return;
        // Fragments of a record stream are whole frames.
        const auto frameCount = static_cast<std::int64_t>(byteCount / frameBytes);
        if (data == nullptr) {
            if (!settling_.empty()) settle();
            clock_.skip(frameCount);
            holeFrames_ += frameCount;
        } else if (frameCount > 0) {
            takeFragment(data, frameCount);
        }
        pa_stream_drop(stream_);
    }
}

void PulseRecordStream::takeFragment(const void* data, std::int64_t frameCount) {
    const HostTimeNs arrivalNs = hostTimeNow();
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    const PulseAudioStreamClock::Measurement measurement{arrivalNs - captureLatencyNs(), frameCount};
    std::vector<std::uint8_t> copy(
        bytes, bytes + frameCount * static_cast<std::int64_t>(pa_frame_size(&sampleSpec_)));
    if (isSettled_) {
        const HostTimeNs stampNs = clock_.stamp(measurement.measuredHostTimeNs, frameCount);
        return handler_(Fragment{stampNs, frameCount, std::move(copy)});
    }
    if (settling_.empty()) settleUntilNs_ = arrivalNs + kSettleNs;
    settling_.emplace_back(measurement, std::move(copy));
    if (arrivalNs >= settleUntilNs_) settle();
}

void PulseRecordStream::settle() {
    std::vector<PulseAudioStreamClock::Measurement> measurements;
    for (const auto& [measurement, bytes] : settling_) measurements.push_back(measurement);
    const std::vector<HostTimeNs> stampsNs = clock_.anchorAndStamp(measurements);
    for (std::size_t i = 0; i < stampsNs.size(); ++i) {
        handler_(Fragment{stampsNs[i], settling_[i].first.frameCount, std::move(settling_[i].second)});
    }
    settling_.clear();
    isSettled_ = true;
}

HostTimeNs PulseRecordStream::captureLatencyNs() const {
    // Everything readable now, from the read position on, was captured before now: its duration is a
    // floor that holds even when this thread ran late, since what queued meanwhile is readable too (and
    // what has not arrived yet was captured later still).
    const auto readableFrames =
        static_cast<HostTimeNs>(pa_stream_readable_size(stream_) / pa_frame_size(&sampleSpec_));
    const HostTimeNs floorNs = readableFrames * 1'000'000'000 / sampleSpec_.rate;
    if (latency_ == CaptureLatency::readableOnly) return floorNs;
    // The server's figure for an input is unsettled for the first moments of a stream, so it is kept
    // between the floor and a ceiling above it.
    const std::optional<HostTimeNs> serverNs = serverLatencyNs(stream_);
    if (!serverNs) return floorNs;
    return std::clamp(*serverNs, floorNs, floorNs + kMaxDeviceLatencyNs);
}

void PulseRecordStream::onRead(pa_stream*, size_t, void* userdata) {
    static_cast<PulseRecordStream*>(userdata)->readFragments();
}

void PulseRecordStream::onStateChange(pa_stream*, void* userdata) {
    static_cast<PulseRecordStream*>(userdata)->loop_.signal();
}

void PulseRecordStream::onOverflow(pa_stream*, void* userdata) {
    auto* self = static_cast<PulseRecordStream*>(userdata);
    // The server threw captured audio away without saying how much: what was read so far goes out, and
    // the clock settles afresh on what follows.
    ++self->overflowCount_;
    if (!self->settling_.empty()) self->settle();
    self->clock_.reset();
    self->isSettled_ = false;
}

}  // namespace kestrum

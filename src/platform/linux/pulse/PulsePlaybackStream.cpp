#include "platform/linux/pulse/PulsePlaybackStream.h"

#include <algorithm>
#include <cstring>

namespace kestrum {

PulsePlaybackStream::PulsePlaybackStream(PulseMainLoop& loop, const pa_sample_spec& sampleSpec,
                                         pa_usec_t targetLatencyUs, pa_usec_t slackUs)
    : loop_(loop),
      sampleSpec_(sampleSpec),
      targetLatencyUs_(targetLatencyUs),
      slackBytes_(static_cast<std::int64_t>(pa_usec_to_bytes(slackUs, &sampleSpec))) {}

Status PulsePlaybackStream::open(const QByteArray& streamName, const QByteArray& sinkName) {
    close();
    Result<pa_stream*> made = loop_.newStream(streamName, sampleSpec_);
    if (!made.ok()) return made.error();
    stream_ = made.value();
    pa_stream_set_state_callback(stream_, &PulsePlaybackStream::onStateChange, this);
    pa_buffer_attr attributes;
    std::memset(&attributes, 0xff, sizeof attributes);
    attributes.tlength = static_cast<std::uint32_t>(pa_usec_to_bytes(targetLatencyUs_, &sampleSpec_));
    // Playing starts with the first frame: the writes come in whole blocks on their own clock, so waiting
    // for more only adds delay.
    attributes.prebuf = static_cast<std::uint32_t>(pa_frame_size(&sampleSpec_));
    writtenBytes_ = 0;
    droppedBytes_ = 0;
    beyondTargetBytes_ = 0;
    const auto flags = static_cast<pa_stream_flags_t>(PA_STREAM_ADJUST_LATENCY | PA_STREAM_DONT_MOVE);
    if (pa_stream_connect_playback(stream_, sinkName.constData(), &attributes, flags, nullptr, nullptr) < 0) {
        const QString reason = loop_.lastErrorText();
        close();
        return PulseMainLoop::makeError(QStringLiteral("The sound server could not play into ") +
                                        QString::fromUtf8(sinkName) + QStringLiteral(": ") + reason);
    }
    const bool answered =
        loop_.waitUntil([this] { return pa_stream_get_state(stream_) != PA_STREAM_CREATING; },
                        PulseMainLoop::kRequestTimeout);
    if (pa_stream_get_state(stream_) == PA_STREAM_READY) return Status::success();
    const QString reason = answered ? loop_.lastErrorText() : QStringLiteral("no answer in time");
    close();
    return PulseMainLoop::makeError(QStringLiteral("The sound server could not play into ") +
                                    QString::fromUtf8(sinkName) + QStringLiteral(": ") + reason);
}

void PulsePlaybackStream::close() {
    if (stream_ == nullptr) return;
    pa_stream_set_state_callback(stream_, nullptr, nullptr);
    if (PA_STREAM_IS_GOOD(pa_stream_get_state(stream_))) pa_stream_disconnect(stream_);
    pa_stream_unref(stream_);
    stream_ = nullptr;
}

void PulsePlaybackStream::write(const std::vector<std::uint8_t>& bytes) {
    const auto size = static_cast<std::int64_t>(bytes.size());
    if (stream_ == nullptr || pa_stream_get_state(stream_) != PA_STREAM_READY) {
        droppedBytes_ += size;
        return;
    }
    // The server asks for what brings the queue back to its target; once it asks again, whatever went
    // beyond the target before has been played.
    const auto requested = static_cast<std::int64_t>(pa_stream_writable_size(stream_));
    if (requested > 0) beyondTargetBytes_ = 0;
    const std::int64_t beyond = beyondTargetBytes_ + std::max<std::int64_t>(0, size - requested);
    if (beyond > slackBytes_ ||
        pa_stream_write(stream_, bytes.data(), bytes.size(), nullptr, 0, PA_SEEK_RELATIVE) < 0) {
        droppedBytes_ += size;
        return;
    }
    beyondTargetBytes_ = beyond;
    writtenBytes_ += size;
}

void PulsePlaybackStream::onStateChange(pa_stream*, void* userdata) {
    static_cast<PulsePlaybackStream*>(userdata)->loop_.signal();
}

}  // namespace kestrum

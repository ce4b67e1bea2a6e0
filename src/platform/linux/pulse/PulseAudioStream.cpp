#include "platform/linux/pulse/PulseAudioStream.h"

#include "platform/linux/pulse/PulseMainLoopLock.h"

#include <unistd.h>

namespace kestrum {

namespace {

QString sourceWordsOf(CaptureOutputType type) {
    switch (type) {
        case CaptureOutputType::microphone:
            return QStringLiteral("the microphone");
        case CaptureOutputType::audio:
            return QStringLiteral("system audio");
        case CaptureOutputType::screen:
            break;
    }
    return QStringLiteral("screen samples");
}

PulseSinkInputFilter systemAudioFilter(const AudioStreamConfiguration& configuration) {
    if (!configuration.excludesCurrentProcessAudio) return PulseSinkInputFilter::everyInput();
    return PulseSinkInputFilter::everyInputExcept({static_cast<std::int64_t>(getpid())});
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
        systemAudio_ = std::make_unique<PulseSinkInputMix>(
            *loop_, sampleSpec_, systemAudioFilter(configuration),
            [this](HostTimeNs hostTimeNs, std::int64_t frameCount, std::vector<std::uint8_t> bytes) {
                send(CaptureOutputType::audio, hostTimeNs, frameCount, std::move(bytes));
            });
    }
    if (configuration.captureMicrophone) {
        microphone_ = std::make_unique<PulseRecordStream>(
            *loop_, sampleSpec_, PulseRecordStream::CaptureLatency::withDevice,
            [this](PulseRecordStream::Fragment fragment) {
                send(CaptureOutputType::microphone, fragment.hostTimeNs, fragment.frameCount,
                     std::move(fragment.bytes));
            });
    }
}

PulseAudioStream::~PulseAudioStream() {
    if (started_) (void)stop();
    // The sources' callbacks hold the lock; they are gone once the sources are.
    const PulseMainLoopLock lock(*loop_);
    systemAudio_.reset();
    microphone_.reset();
}

bool PulseAudioStream::captures(CaptureOutputType type) const {
    return (type == CaptureOutputType::audio && systemAudio_) ||
           (type == CaptureOutputType::microphone && microphone_);
}

Status PulseAudioStream::addStreamOutput(CaptureStreamOutput& output, CaptureOutputType type,
                                         SerialQueue& queue) {
    if (!captures(type)) {
        return PulseMainLoop::makeError(QStringLiteral("This audio stream does not capture ") +
                                        sourceWordsOf(type) + '.');
    }
    const PulseMainLoopLock lock(*loop_);
    outputs_[type] = Output{&output, &queue};
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
    const auto fail = [this](const Error& error) -> Status {
        if (microphone_) microphone_->close();
        if (systemAudio_) systemAudio_->stop();
        return error;
    };
    deliveredBuffers_.clear();
    if (microphone_) {
        const Status opened =
            microphone_->open(QByteArrayLiteral("Kestrum microphone"), QByteArrayLiteral("@DEFAULT_SOURCE@"));
        if (!opened.ok()) return fail(opened.error());
        const bool answered = loop_->waitUntil([this] { return microphone_->state() != PA_STREAM_CREATING; },
                                               PulseMainLoop::kRequestTimeout);
        if (microphone_->state() != PA_STREAM_READY) {
            const QString reason = answered ? loop_->lastErrorText() : QStringLiteral("no answer in time");
            return fail(PulseMainLoop::makeError(
                QStringLiteral("The sound server could not open the microphone: ") + reason));
        }
    }
    if (systemAudio_) {
        const Status mixing = systemAudio_->start();
        if (!mixing.ok()) return fail(mixing.error());
    }
    started_ = true;
    return Status::success();
}

Status PulseAudioStream::stop() {
    if (!started_) return Status::success();
    started_ = false;
    const PulseMainLoopLock lock(*loop_);
    const bool endedByItself =
        !loop_->isContextReady() || (microphone_ && microphone_->state() != PA_STREAM_READY);
    if (microphone_) microphone_->close();
    if (systemAudio_) systemAudio_->stop();
    // From here no callback runs for these sources, so nothing more is queued to the outputs.
    if (endedByItself) {
        return PulseMainLoop::makeError(
            QStringLiteral("The sound server ended the audio capture by itself."));
    }
    return Status::success();
}

AudioStreamCounters PulseAudioStream::counters(CaptureOutputType type) const {
    const PulseMainLoopLock lock(*loop_);
    AudioStreamCounters counters;
    if (type == CaptureOutputType::audio && systemAudio_) {
        counters = systemAudio_->counters();
    } else if (type == CaptureOutputType::microphone && microphone_) {
        counters.overruns = microphone_->overflowCount();
        counters.lostMs = microphone_->holeFrames() * 1000 / sampleSpec_.rate;
    }
    const auto delivered = deliveredBuffers_.find(type);
    if (delivered != deliveredBuffers_.end()) counters.buffersDelivered = delivered->second;
    return counters;
}

void PulseAudioStream::send(CaptureOutputType type, HostTimeNs hostTimeNs, std::int64_t frameCount,
                            std::vector<std::uint8_t> bytes) {
    const auto found = outputs_.find(type);
    if (found == outputs_.end()) return;
    ++deliveredBuffers_[type];
    CaptureSample sample;
    sample.presentationTimeNs = hostTimeNs;
    sample.audio = AudioSampleBuffer(format_, hostTimeNs, static_cast<int>(frameCount), {std::move(bytes)});
    CaptureStreamOutput* output = found->second.output;
    found->second.queue->async(
        [output, type, sample = std::move(sample)]() mutable { output->didOutputSample(sample, type); });
}

}  // namespace kestrum

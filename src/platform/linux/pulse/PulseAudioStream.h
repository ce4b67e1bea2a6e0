#pragma once

#include "platform/linux/pulse/PulseMainLoop.h"
#include "platform/linux/pulse/PulseRecordStream.h"
#include "platform/linux/pulse/PulseSinkInputMix.h"
#include "platform/ports/AudioStream.h"

#include <pulse/sample.h>

#include <map>
#include <memory>

namespace kestrum {

// The system's sound and the microphone, recorded from the sound server (PulseAudio, or PipeWire's pulse
// server), as interleaved float32 PCM at the configured rate and channel count (48 kHz stereo by
// default).
//
// System sound (`capturesAudio`) is the mix of the playback streams of every application, each recorded
// on its own from the monitor of its sink (PulseSinkInputMix). With `excludesCurrentProcessAudio` the
// streams of this process, told by their "application.process.id", are left out, so that a movie the
// review window plays during a recording never reaches it. The blocks of the mix are stamped on its
// host-time grid. The display does not matter: every application's sound is taken, whatever the screen.
//
// The microphone (`captureMicrophone`) is the default source, "@DEFAULT_SOURCE@", one record stream whose
// fragments are stamped from their capture time (PulseRecordStream, with the device's latency).
//
// Threads: the port's calls on the main thread. libpulse runs every callback on the loop thread with the
// loop's lock held; the sources, the outputs and the counts are guarded by that lock. Samples are queued
// from the loop thread to each output's queue. `started_` is the main thread's alone.
class PulseAudioStream final : public AudioStream {
  public:
    // `loop` is connected; the stream keeps it, and with it the loop thread, for its whole life.
    PulseAudioStream(std::shared_ptr<PulseMainLoop> loop, const AudioStreamConfiguration& configuration);
    ~PulseAudioStream() override;
    PulseAudioStream(const PulseAudioStream&) = delete;
    PulseAudioStream& operator=(const PulseAudioStream&) = delete;

    Status addStreamOutput(CaptureStreamOutput& output, CaptureOutputType type, SerialQueue& queue) override;
    QCoro::Task<Status> startCapture() override;
    QCoro::Task<Status> stopCapture() override;
    AudioStreamCounters counters(CaptureOutputType type) const override;

  private:
    struct Output {
        CaptureStreamOutput* output = nullptr;
        SerialQueue* queue = nullptr;
    };

    Status start();
    Status stop();
    bool captures(CaptureOutputType type) const;
    // Loop thread, lock held: queues a stamped buffer to the output of `type`, if there is one.
    void send(CaptureOutputType type, HostTimeNs hostTimeNs, std::int64_t frameCount,
              std::vector<std::uint8_t> bytes);

    std::shared_ptr<PulseMainLoop> loop_;
    pa_sample_spec sampleSpec_{};
    AudioFormatDescription format_;
    // Fixed at construction; their insides, the outputs and the counts: lock held.
    std::unique_ptr<PulseSinkInputMix> systemAudio_;
    std::unique_ptr<PulseRecordStream> microphone_;
    std::map<CaptureOutputType, Output> outputs_;
    std::map<CaptureOutputType, std::int64_t> deliveredBuffers_;  // since the latest start
    bool started_ = false;
};

}  // namespace kestrum

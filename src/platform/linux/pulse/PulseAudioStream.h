#pragma once

#include "platform/linux/pulse/PulseMainLoop.h"
#include "platform/ports/AudioStream.h"

#include <pulse/sample.h>
#include <pulse/stream.h>

#include <memory>
#include <optional>
#include <vector>

namespace kestrum {

// The system's sound and the microphone, recorded from the sound server.
//
// System sound (`capturesAudio`) is the monitor of the default sink, "@DEFAULT_MONITOR@"; the
// microphone (`captureMicrophone`) is the default source, "@DEFAULT_SOURCE@". Each is a record stream
// of interleaved float32 PCM at the configured rate and channel count (48 kHz stereo by default), asked
// for in fragments of about 20 ms. Each fragment the server hands over becomes one AudioSampleBuffer,
// stamped by a PulseAudioStreamClock from its measured capture time: the arrival on the host clock less
// the capture latency (captureLatencyNs: what is readable, and for an input the server's latency). The
// fragments of the first kSettleNs after a start, or after the server dropped data, are held back and
// anchored together, so that a backlog handed over in a burst is stamped where it was captured. A hole
// the server reports moves the next stamp on by its length.
//
// `excludesCurrentProcessAudio` is honoured trivially: Kestrum plays no sound while it records, so the
// monitor carries nothing of its own. The display does not matter either: the server mixes every
// application into the default sink, whatever the screen.
//
// Threads: the port's calls on the main thread. libpulse calls the read, state and overflow callbacks
// on the loop thread with the loop's lock held; the sources' streams, clocks, outputs and counters are
// guarded by that lock. Samples are queued from the loop thread to each output's queue. `started_` is
// the main thread's alone.
class PulseAudioStream final : public AudioStream {
  public:
    // The length of the fragments the server is asked for.
    static constexpr pa_usec_t kFragmentUs = 20'000;
    // How long the first fragments of a source are held back to anchor its clock (see Source).
    static constexpr HostTimeNs kSettleNs = 100'000'000;
    // The most an input device is taken to hold captured audio before the server sees it.
    static constexpr HostTimeNs kMaxDeviceLatencyNs = 250'000'000;

    // `loop` is connected; the stream keeps it, and with it the loop thread, for its whole life.
    PulseAudioStream(std::shared_ptr<PulseMainLoop> loop, const AudioStreamConfiguration& configuration);
    ~PulseAudioStream() override;
    PulseAudioStream(const PulseAudioStream&) = delete;
    PulseAudioStream& operator=(const PulseAudioStream&) = delete;

    Status addStreamOutput(CaptureStreamOutput& output, CaptureOutputType type, SerialQueue& queue) override;
    QCoro::Task<Status> startCapture() override;
    QCoro::Task<Status> stopCapture() override;

  private:
    struct Fragment;
    struct Source;

    Status start();
    Status stop();
    Source* sourceOf(CaptureOutputType type) const;
    // Lock held, for the three below.
    Status openSource(Source& source);
    void closeSource(Source& source);
    bool allSourcesAnswered() const;
    // Loop thread, lock held.
    void readFragments(Source& source);
    void deliverFragment(Source& source, const void* data, std::int64_t frameCount);
    // Anchors the clock on the fragments held back and sends them.
    void settle(Source& source);
    // Queues a stamped fragment to the output, if there is one.
    void send(Source& source, Fragment fragment, HostTimeNs stampNs);
    // How long ago the first frame of the fragment at the read position was captured.
    HostTimeNs captureLatencyNs(const Source& source) const;

    static void onRead(pa_stream* stream, size_t byteCount, void* userdata);
    static void onStateChange(pa_stream* stream, void* userdata);
    static void onOverflow(pa_stream* stream, void* userdata);

    std::shared_ptr<PulseMainLoop> loop_;
    pa_sample_spec sampleSpec_{};
    AudioFormatDescription format_;
    std::vector<std::unique_ptr<Source>> sources_;  // fixed at construction; their insides: lock held
    bool started_ = false;
};

}  // namespace kestrum

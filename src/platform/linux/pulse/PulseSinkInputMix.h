#pragma once

#include "platform/linux/pulse/PulseAudioMixer.h"
#include "platform/linux/pulse/PulseRecordStream.h"
#include "platform/linux/pulse/PulseSinkInputWatcher.h"
#include "platform/ports/AudioStream.h"

#include <pulse/mainloop-api.h>

#include <functional>
#include <map>
#include <memory>
#include <set>

namespace kestrum {

// The system's sound as the mix of the playback streams a filter accepts. Each accepted stream is
// recorded on its own, from the monitor of its sink restricted to that stream, so that a stream left out
// (this application's own sound) is not in the recording at all, whichever sink it plays to. The
// fragments are mixed by a PulseAudioMixer on one host-time grid that starts at `start`, and handed out
// in blocks of kBlockMilliseconds that follow each other without gaps, silence where nothing
// played. Streams that appear, move to another sink or vanish while recording are followed; a stream is
// expected from the moment its recording opens, so that its first fragments, held back while its clock
// settles, still make it into the mix.
//
// Every sink's monitor also carries a corked record stream of ours, which holds the sink's latency down
// (see PulseRecordStream::openCorked).
//
// A timer of the loop every kTickUs hands out what the mixer has ready, so that silence keeps flowing
// while no stream plays; blocks also go out as soon as the fragments that complete them arrive. Nothing
// here waits for a stream. Once the connection to the server is lost the blocks stop.
//
// Threads: every member is called with the loop's lock held; the handler runs on the loop thread.
class PulseSinkInputMix {
  public:
    static constexpr std::int64_t kBlockMilliseconds = 20;
    static constexpr pa_usec_t kTickUs = 10'000;

    using BlockHandler =
        std::function<void(HostTimeNs hostTimeNs, std::int64_t frameCount, std::vector<std::uint8_t> bytes)>;

    // `sampleSpec` is float32 interleaved.
    PulseSinkInputMix(PulseMainLoop& loop, const pa_sample_spec& sampleSpec, PulseSinkInputFilter filter,
                      BlockHandler handler);
    ~PulseSinkInputMix() { stop(); }
    PulseSinkInputMix(const PulseSinkInputMix&) = delete;
    PulseSinkInputMix& operator=(const PulseSinkInputMix&) = delete;

    // Starts the grid at the present host time, follows the playback streams and arms the timer. An
    // Error when the server refuses.
    Status start();
    void stop();

    // What the latest run lost and took in (the blocks are counted by whoever delivers them); the counts
    // stand after `stop` until the next start.
    AudioStreamCounters counters() const;
    // The playback streams being recorded now, by index.
    std::set<std::uint32_t> recordedSinkInputs() const;

  private:
    struct Input {
        std::uint32_t sinkIndex = 0;
        int mixerInputID = 0;
        std::unique_ptr<PulseRecordStream> stream;
    };

    void consider(const PulseSinkInputDescription& description);
    void open(const PulseSinkInputDescription& description);
    void close(std::uint32_t sinkInputIndex);
    void pinLatency(std::uint32_t sinkIndex, std::uint32_t monitorSourceIndex);
    void mixFragment(int mixerInputID, const PulseRecordStream::Fragment& fragment);
    void handOutReadyBlocks();
    std::int64_t millisecondsOf(std::int64_t frames) const;

    static void onTick(pa_mainloop_api* api, pa_time_event* event, const struct timeval* time,
                       void* userdata);

    PulseMainLoop& loop_;
    const pa_sample_spec sampleSpec_;
    const PulseSinkInputFilter filter_;
    const BlockHandler handler_;
    PulseSinkInputWatcher watcher_;
    PulseAudioMixer mixer_;
    std::vector<float> scratch_;  // a fragment's samples, copied out of its bytes
    std::map<std::uint32_t, Input> inputs_;
    std::map<std::uint32_t, std::unique_ptr<PulseRecordStream>> latencyPins_;  // by sink
    int nextMixerInputID_ = 0;
    pa_time_event* tick_ = nullptr;  // armed while started
    bool started_ = false;

    // The latest run's counts; those of closed streams are added in when they close.
    std::int64_t closedOverflows_ = 0;
    std::int64_t closedHoleFrames_ = 0;
    std::set<std::uint32_t> everRecorded_;
};

}  // namespace kestrum

#pragma once

#include "base/common/HostTime.h"
#include "base/common/Result.h"
#include "platform/linux/pulse/PulseAudioStreamClock.h"
#include "platform/linux/pulse/PulseMainLoop.h"

#include <pulse/sample.h>
#include <pulse/stream.h>

#include <QByteArray>

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace kestrum {

// One record stream of the sound server, read fragment by fragment and stamped on the host clock.
//
// The stream is interleaved PCM of the given sample format, asked for in fragments of about kFragmentUs.
// Each fragment the server hands over is stamped by a PulseAudioStreamClock from its measured capture
// time: the arrival on the host clock less the capture latency (see `CaptureLatency`). The
// fragments of the first kSettleNs after an open, or after the server dropped data, are held back and
// anchored together, so that a backlog handed over in a burst is stamped where it was captured. A hole
// the server reports moves the next stamp on by its length and is counted.
//
// Threads: libpulse calls the read, state and overflow callbacks on the loop thread with the loop's lock
// held; every member is called with that lock held too, and the fragment handler runs inside the read
// and overflow callbacks, where it must not close the stream. The object must not move while open: the
// callbacks hold its address.
class PulseRecordStream {
  public:
    // The length of the fragments the server is asked for.
    static constexpr pa_usec_t kFragmentUs = 20'000;
    // How long the first fragments are held back to anchor the clock.
    static constexpr HostTimeNs kSettleNs = 100'000'000;
    // The most an input device is taken to hold captured audio before the server sees it.
    static constexpr HostTimeNs kMaxDeviceLatencyNs = 250'000'000;

    // What is known of how long ago a readable frame was captured.
    enum class CaptureLatency {
        // What is readable is the whole latency: a monitor gets the sound as it enters the sink's mix.
        // (The server's figure for a monitor runs to when the sink plays the frame, the listener's delay,
        // not the recording's.)
        readableOnly,
        // An input device also holds captured sound before the server sees it: the server's latency
        // figure, kept between what is readable and that plus kMaxDeviceLatencyNs.
        withDevice,
    };

    struct Fragment {
        HostTimeNs hostTimeNs = 0;  // of the first frame
        std::int64_t frameCount = 0;
        std::vector<std::uint8_t> bytes;
    };
    using FragmentHandler = std::function<void(Fragment fragment)>;

    PulseRecordStream(PulseMainLoop& loop, const pa_sample_spec& sampleSpec, CaptureLatency latency,
                      FragmentHandler handler);
    ~PulseRecordStream() { close(); }
    PulseRecordStream(const PulseRecordStream&) = delete;
    PulseRecordStream& operator=(const PulseRecordStream&) = delete;

    // Connects a record stream named `streamName` to the source `device` (a name or an index in text).
    // With `monitoredSinkInput`, the stream carries that one playback stream's sound only, and `device`
    // must be the monitor of the sink it plays to. Counting starts afresh. The server answers later:
    // `state()` leaves PA_STREAM_CREATING once it has.
    Status open(const QByteArray& streamName, const QByteArray& device,
                std::optional<std::uint32_t> monitoredSinkInput = std::nullopt);
    // Connects corked: the stream carries no sound, yet its request for fragments of kFragmentUs holds
    // the source's latency down, and a monitor's sink then mixes in steps that short instead of seconds
    // ahead. Whatever later records that sink's sound then gets it from its first moments on.
    Status openCorked(const QByteArray& streamName, const QByteArray& device);
    // Disconnects; no callback runs for the stream afterwards. Fragments held back are dropped.
    void close();

    // PA_STREAM_UNCONNECTED while closed.
    pa_stream_state_t state() const;
    // Since the latest open: times the server threw captured sound away, and frames it reported lost.
    std::int64_t overflowCount() const { return overflowCount_; }
    std::int64_t holeFrames() const { return holeFrames_; }

  private:
    Status connect(const QByteArray& streamName, const QByteArray& device,
                   std::optional<std::uint32_t> monitoredSinkInput, pa_stream_flags_t extraFlags);
    void readFragments();
    void takeFragment(const void* data, std::int64_t frameCount);
    // Anchors the clock on the fragments held back and hands them over.
    void settle();
    HostTimeNs captureLatencyNs() const;

    static void onRead(pa_stream* stream, size_t byteCount, void* userdata);
    static void onStateChange(pa_stream* stream, void* userdata);
    static void onOverflow(pa_stream* stream, void* userdata);

    PulseMainLoop& loop_;
    const pa_sample_spec sampleSpec_;
    const CaptureLatency latency_;
    const FragmentHandler handler_;
    PulseAudioStreamClock clock_;
    pa_stream* stream_ = nullptr;  // open from `open` to `close`
    std::int64_t overflowCount_ = 0;
    std::int64_t holeFrames_ = 0;
    // While not settled, fragments are held back, from the first after a (re)start of the clock until
    // one arrives kSettleNs after it.
    bool isSettled_ = false;
    HostTimeNs settleUntilNs_ = 0;
    std::vector<std::pair<PulseAudioStreamClock::Measurement, std::vector<std::uint8_t>>> settling_;
};

}  // namespace kestrum

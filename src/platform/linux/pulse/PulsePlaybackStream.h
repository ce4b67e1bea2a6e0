#pragma once

#include "base/common/Result.h"
#include "platform/linux/pulse/PulseMainLoop.h"

#include <pulse/sample.h>
#include <pulse/stream.h>

#include <QByteArray>

#include <cstdint>
#include <vector>

namespace kestrum {

// One playback stream of the sound server into a given sink, kept short: the server is asked to hold
// about `targetLatencyUs` queued. Writes that come in a burst (after a stall of the writer or of the
// server) may queue up to `slackUs` beyond that; one that would queue more is dropped whole and counted,
// so that a stall never turns into a lasting delay. Sound plays as soon as one write arrived; after an
// underrun it resumes with the next.
//
// Threads: every member is called with the loop's lock held; the state callback runs on the loop
// thread. The object must not move while open: the callback holds its address.
class PulsePlaybackStream {
  public:
    PulsePlaybackStream(PulseMainLoop& loop, const pa_sample_spec& sampleSpec, pa_usec_t targetLatencyUs,
                        pa_usec_t slackUs);
    ~PulsePlaybackStream() { close(); }
    PulsePlaybackStream(const PulsePlaybackStream&) = delete;
    PulsePlaybackStream& operator=(const PulsePlaybackStream&) = delete;

    // Connects a stream named `streamName` to the sink `sinkName`, pinned there (the server's stream
    // restore never moves it), and waits for the server's answer, on a thread other than the loop's. An
    // Error when refused or not answered in time.
    Status open(const QByteArray& streamName, const QByteArray& sinkName);
    void close();

    // Queues interleaved frames of the stream's sample format; dropped when the stream is not ready or
    // the queue would grow past the target and the slack.
    void write(const std::vector<std::uint8_t>& bytes);

    // Since the latest open, the bytes written and those dropped.
    std::int64_t writtenBytes() const { return writtenBytes_; }
    std::int64_t droppedBytes() const { return droppedBytes_; }

  private:
    static void onStateChange(pa_stream* stream, void* userdata);

    PulseMainLoop& loop_;
    const pa_sample_spec sampleSpec_;
    const pa_usec_t targetLatencyUs_;
    const std::int64_t slackBytes_;
    pa_stream* stream_ = nullptr;  // open from `open` to `close`
    std::int64_t writtenBytes_ = 0;
    std::int64_t droppedBytes_ = 0;
    // What was written beyond what the server asked for since it last asked: queued past the target.
    std::int64_t beyondTargetBytes_ = 0;
};

}  // namespace kestrum

#pragma once

#include "base/async/Clock.h"
#include "base/media/AudioSampleBuffer.h"
#include "core/capture/audio/RecordingAudioDynamicsProcessor.h"
#include "core/capture/audio/RecordingSampleTally.h"
#include "media/MovieWriterInput.h"

#include <memory>

namespace kestrum {

// Where a track's buffers are placed in time.
enum class RecordingAudioTiming {
    // At the stream's own stamps, which are on the host clock (the system sound).
    asStamped,
    // At their arrival on the host clock: the stamps come from a device clock that drifts from the host
    // clock (the microphone).
    atArrival,
};

// One audio track of a recording, the system sound or the microphone: its writer input, its dynamics
// processor with the user's volume, and the tally of what became of every buffer the stream delivered.
// The capturer holds one for each source, for its whole life, so the processor's gate state carries over
// from one recording to the next.
//
// A buffer reaches the input only once the movie's session has started (sound before the first picture
// never reaches the file) and while the input is there and ready; the volume and the limit are applied
// in place just before the append, with the gate closed off. Nothing is ever waited for.
//
// Threads: every call runs on the capture queue (writeQueue); `prepare` and `release` too, inside the
// synchronous blocks that hand a recording over. Time comes from the injected clock, whose `now()` is the
// host clock in the product.
class RecordingAudioTrack {
  public:
    RecordingAudioTrack(RecordingAudioTiming timing, const Clock& clock) : timing_(timing), clock_(clock) {}

    // Takes a recording's input (null when the source is off or the writer refused the track) and the
    // user's volume (a linear factor, 0 to 2), and starts a new tally.
    void prepare(std::shared_ptr<MovieWriterInput> input, double volume);
    // Lets the input go at the end of a recording; the tally stays readable.
    void release() { input_.reset(); }

    // One buffer of the stream, owned by the track from here: processed in place and moved on when it
    // goes to the input.
    void handleBuffer(AudioSampleBuffer& buffer, bool isSessionStarted);
    // A buffer that never reached `handleBuffer` (the stop had begun, or its data was not ready).
    void countDropped(RecordingSampleFate fate) { tally_.count(fate); }

    const RecordingSampleTally& tally() const { return tally_; }
    const MovieWriterInput* input() const { return input_.get(); }
    double volume() const { return volume_; }
    const RecordingAudioDynamicsProcessor& processor() const { return processor_; }

  private:
    // The capture path keeps the processor's gate inert: open, at the lowest sensitivity.
    static constexpr bool kGateEnabled = false;
    static constexpr double kGateSensitivity = 0.0;

    const RecordingAudioTiming timing_;
    const Clock& clock_;
    std::shared_ptr<MovieWriterInput> input_;
    double volume_ = 1.0;
    RecordingAudioDynamicsProcessor processor_;
    RecordingSampleTally tally_;
};

}  // namespace kestrum

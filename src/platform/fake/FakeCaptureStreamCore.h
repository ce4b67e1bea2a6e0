#pragma once

#include "platform/ports/CaptureStream.h"

#include <map>
#include <mutex>
#include <optional>

namespace kestrum {

// The part every fake stream shares: the registered outputs, the started state, scripted failures of
// start and stop, and the delivery of test samples on the outputs' queues.
//
// Threads: the port calls and the scripting are on the main thread; `deliver` may be called from any
// thread (a test's producer thread), and is guarded so that it races neither `stopCapture` nor the
// stream's destruction.
class FakeCaptureStreamCore {
  public:
    Status addStreamOutput(CaptureStreamOutput& output, CaptureOutputType type, SerialQueue& queue);
    Status start();
    Status stop();

    // Queues `sample` to the output of `type` on its queue; false, and nothing queued, when the stream
    // is not started or has no output of that type.
    bool deliver(CaptureSample sample, CaptureOutputType type);

    bool isStarted() const;
    bool hasOutput(CaptureOutputType type) const;

    std::optional<Error> startError;  // the next starts fail with it while set
    std::optional<Error> stopError;   // the stops report it (the stream stops all the same)
    std::optional<Error> addOutputError;

  private:
    struct Registration {
        CaptureStreamOutput* output;
        SerialQueue* queue;
    };
    mutable std::mutex mutex_;
    std::map<CaptureOutputType, Registration> outputs_;
    bool started_ = false;
};

}  // namespace kestrum

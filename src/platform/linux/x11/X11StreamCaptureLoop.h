#pragma once

#include "base/common/HostTime.h"
#include "platform/linux/x11/X11StreamOutput.h"
#include "platform/linux/x11/X11StreamScaler.h"
#include "platform/linux/x11/X11StreamWindowReader.h"
#include "platform/ports/WindowStream.h"

#include <QPromise>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <vector>

namespace kestrum {

// One run of a window stream: the body of its capture thread, from opening the window to the stop or the
// window's end, and the state the main thread shares with it.
//
// Threads: `run` is the capture thread and alone uses the reader and the scaler. `requestStop`,
// `updateConfiguration`, `setOutputs`, `counters` and `endError` may be called from any thread.
class X11StreamCaptureLoop {
  public:
    X11StreamCaptureLoop(std::uint32_t windowID, WindowStreamConfiguration configuration,
                         std::vector<X11StreamOutput> outputs);

    // Opens the window and reports the outcome through `opened`, then reads at the configured rate and
    // delivers every sample on the outputs' queues, until a stop is requested or the window ends.
    void run(QPromise<Status>& opened);

    void requestStop();
    // Taken at the next deadline; a changed rate starts a new grid there.
    void updateConfiguration(const WindowStreamConfiguration& configuration);
    // Replaces the receivers from the next sample on.
    void setOutputs(std::vector<X11StreamOutput> outputs);

    WindowStreamCounters counters() const;
    // Why the window's samples ended by themselves; absent after a stop that came first.
    std::optional<Error> endError() const;

  private:
    bool waitUntil(std::chrono::steady_clock::time_point deadline);
    std::optional<WindowStreamConfiguration> takeConfigurationChange();
    // Reads, scales and delivers one picture stamped `deadlineNs` (the host time of the deadline it was
    // read for); false once the window has ended.
    bool captureFrame(const WindowStreamConfiguration& configuration, HostTimeNs deadlineNs);
    void deliverPicture(const X11StreamRead& read, const WindowStreamConfiguration& configuration,
                        HostTimeNs deadlineNs);
    void deliver(const CaptureSample& sample);

    const std::uint32_t windowID_;
    const WindowStreamConfiguration initialConfiguration_;

    mutable std::mutex mutex_;
    std::condition_variable wake_;                                   // signalled by a stop request
    bool stopRequested_ = false;                                     // guarded by mutex_
    std::optional<WindowStreamConfiguration> pendingConfiguration_;  // guarded by mutex_
    std::vector<X11StreamOutput> outputs_;                           // guarded by mutex_
    std::optional<Error> endError_;                                  // guarded by mutex_

    std::atomic<std::int64_t> framesRead_ = 0;
    std::atomic<std::int64_t> blankFrames_ = 0;
    std::atomic<std::int64_t> deadlinesSkipped_ = 0;
    std::atomic<std::int64_t> readsFailed_ = 0;

    // Capture thread only.
    X11StreamWindowReader reader_;
    X11StreamScaler scaler_;
    std::pair<int, int> lastOutputSize_{0, 0};  // of the previous picture, in pixels
};

}  // namespace kestrum

#pragma once

#include "platform/linux/x11/X11StreamOutput.h"
#include "platform/ports/WindowStream.h"

#include <QFuture>

#include <memory>
#include <thread>
#include <vector>

namespace kestrum {

class X11StreamCaptureLoop;

// The window stream of an X11 desktop (XWayland too): the window is read through its Composite pixmap by
// MIT-SHM on a capture thread of the stream's own, with its own display connection, at the configured
// rate on a grid that does not drift; every picture is scaled to the configured size and stamped with the
// host clock right after the read. A picture is `complete` when Damage reported drawing since the read
// before, `idle` when not (it is still delivered, so the movie keeps a steady rate). While the window is
// unmapped the stream delivers `blank` samples at the rate, without a picture; once it is destroyed the
// stream stops delivering and the capture thread ends by itself.
//
// Threads: the port calls on the main thread, as the contract says; the start and the stop wait for the
// capture thread by awaiting, never blocking the main thread's event loop. Only the destructor joins it
// synchronously.
class X11WindowStream final : public WindowStream {
  public:
    X11WindowStream(ShareableWindow window, WindowStreamConfiguration configuration);
    ~X11WindowStream() override;
    X11WindowStream(const X11WindowStream&) = delete;
    X11WindowStream& operator=(const X11WindowStream&) = delete;

    // Only `screen` outputs; registering an output again moves it to the new queue.
    Status addStreamOutput(CaptureStreamOutput& output, CaptureOutputType type, SerialQueue& queue) override;
    QCoro::Task<Status> startCapture() override;
    // Gives "The window is gone" when the window was destroyed before the stop.
    QCoro::Task<Status> stopCapture() override;
    QCoro::Task<Status> updateConfiguration(WindowStreamConfiguration configuration) override;

    // Counted by the capture thread in atomics; each start begins from zero.
    WindowStreamCounters counters() const override;

  private:
    QCoro::Task<void> joinCaptureThread();

    const ShareableWindow window_;
    WindowStreamConfiguration configuration_;     // main thread
    std::vector<X11StreamOutput> outputs_;        // main thread
    std::shared_ptr<X11StreamCaptureLoop> loop_;  // main thread; shared with the capture thread it runs on
    std::thread captureThread_;                   // main thread
    QFuture<void> captureThreadEnded_;            // main thread; finished as the capture thread returns
};

}  // namespace kestrum

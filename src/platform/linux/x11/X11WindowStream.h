#pragma once

#include "platform/linux/x11/X11StreamOutput.h"
#include "platform/ports/WindowStream.h"

#include <QFuture>
#include <QFutureWatcher>

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
// The end by itself is the capture thread's return without a stop: the window's DestroyNotify, or a read
// that finds the window gone (BadWindow, BadDrawable), or a lost display connection. The loop drains its
// events at every frame deadline, unmapped or not, so the end handler hears of it within one frame
// interval of the destruction reaching the server (at most a second, at 1 FPS), plus the main thread's
// event delivery. Reads that fail while the window exists (a resize racing the copy) do not end the
// stream: the next read names the pixmap again.
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
    void setEndHandler(EndHandler handler) override { endHandler_ = std::move(handler); }

    // Counted by the capture thread in atomics; each start begins from zero.
    WindowStreamCounters counters() const override;

  private:
    QCoro::Task<void> joinCaptureThread();
    void watchForEnd();
    void tellEnd(const std::shared_ptr<X11StreamCaptureLoop>& loop);

    const ShareableWindow window_;
    WindowStreamConfiguration configuration_;     // main thread
    std::vector<X11StreamOutput> outputs_;        // main thread
    std::shared_ptr<X11StreamCaptureLoop> loop_;  // main thread; shared with the capture thread it runs on
    std::thread captureThread_;                   // main thread
    QFuture<void> captureThreadEnded_;            // main thread; finished as the capture thread returns
    EndHandler endHandler_;                       // main thread
    // Main thread; watches the running capture thread's return, gone once a stop was asked for.
    std::unique_ptr<QFutureWatcher<void>> endWatcher_;
};

}  // namespace kestrum

#pragma once

#include "platform/fake/FakeCaptureStreamCore.h"
#include "platform/ports/WindowStream.h"

#include <memory>
#include <optional>
#include <vector>

namespace kestrum {

// A window stream whose frames a test sends with `deliver`. Port calls on the main thread.
class FakeWindowStream : public WindowStream {
  public:
    FakeWindowStream(ShareableWindow window, WindowStreamConfiguration configuration)
        : window_(std::move(window)), configuration_(configuration) {}

    Status addStreamOutput(CaptureStreamOutput& output, CaptureOutputType type, SerialQueue& queue) override {
        return core.addStreamOutput(output, type, queue);
    }
    QCoro::Task<Status> startCapture() override { co_return core.start(); }
    QCoro::Task<Status> stopCapture() override { co_return core.stop(); }
    QCoro::Task<Status> updateConfiguration(WindowStreamConfiguration configuration) override {
        configuration_ = configuration;
        co_return Status::success();
    }

    WindowStreamCounters counters() const override { return scriptedCounters; }
    void setEndHandler(EndHandler handler) override { endHandler_ = std::move(handler); }

    // The stream ends by itself, as when its window is destroyed: it stops delivering and, when started,
    // tells the end handler at once with `reason` (main thread, as the port says). False when it was not
    // started, and then nothing is told.
    bool endByItself(const Error& reason);

    const ShareableWindow& window() const { return window_; }
    const WindowStreamConfiguration& configuration() const { return configuration_; }

    // A frame filled with one BGRA colour, stamped `presentationTimeNs`, of the size a real stream
    // delivers for the window's frame under the configuration.
    bool deliverFrame(HostTimeNs presentationTimeNs, std::uint32_t bgra = 0xFF204060u);

    FakeCaptureStreamCore core;
    // What `counters` answers; main thread.
    WindowStreamCounters scriptedCounters;

  private:
    ShareableWindow window_;
    WindowStreamConfiguration configuration_;
    EndHandler endHandler_;
};

// Makes FakeWindowStreams and keeps track of the ones alive, so that a test can reach the stream that
// the code under test made. Main thread only.
class FakeWindowStreamFactory final : public WindowStreamFactory {
  public:
    QSizeF sourcePixelSize(const ShareableWindow& window) const override { return window.frame.size(); }
    std::unique_ptr<WindowStream> makeWindowStream(const ShareableWindow& window,
                                                   const WindowStreamConfiguration& configuration) override;

    // The newest stream still alive, or null.
    FakeWindowStream* lastStream() const;
    int madeCount() const { return madeCount_; }
    // Errors that streams made from now on give at start.
    std::optional<Error> startError;

  private:
    std::shared_ptr<std::vector<FakeWindowStream*>> alive_ =
        std::make_shared<std::vector<FakeWindowStream*>>();
    int madeCount_ = 0;
};

}  // namespace kestrum

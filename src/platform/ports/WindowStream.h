#pragma once

#include "platform/ports/CaptureStream.h"
#include "platform/ports/ShareableContent.h"

#include <memory>

namespace kestrum {

// How a window stream reads its window. The stream scales every picture to `width` by `height` pixels
// (BGRA), whatever the window's own size, and reads at most `frameRate` pictures a second.
struct WindowStreamConfiguration {
    int width = 0;
    int height = 0;
    int frameRate = 30;  // frames per second; the minimum frame interval is its inverse
    bool showsCursor = true;

    friend bool operator==(const WindowStreamConfiguration&, const WindowStreamConfiguration&) = default;
};

// A stream of one window's picture, however the window moves between displays. It delivers samples of
// type `screen` only. Besides the contract of CaptureStream: the stream follows a resized window
// (still scaled to the configured size), sends `blank` samples while the window is unmapped, and stops
// delivering when the window is destroyed.
class WindowStream : public CaptureStream {
  public:
    // Applies a new configuration to a running stream from its next picture on (main thread). An Error
    // when the configuration is invalid; the old one then stays.
    virtual QCoro::Task<Status> updateConfiguration(WindowStreamConfiguration configuration) = 0;
};

// Makes window streams. Main thread; a stream is made stopped, with no outputs.
class WindowStreamFactory {
  public:
    virtual ~WindowStreamFactory() = default;
    // The window's source size in pixels: what a stream of it would read before scaling (on Linux the
    // window's frame, one point being one pixel).
    virtual QSizeF sourcePixelSize(const ShareableWindow& window) const = 0;
    virtual std::unique_ptr<WindowStream> makeWindowStream(
        const ShareableWindow& window, const WindowStreamConfiguration& configuration) = 0;
};

}  // namespace kestrum

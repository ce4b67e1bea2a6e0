#pragma once

#include "platform/ports/CaptureStream.h"
#include "platform/ports/ShareableContent.h"

#include <QSize>

#include <cstdint>
#include <functional>
#include <memory>

namespace kestrum {

// How a window stream reads its window. The stream scales every picture to `width` by `height` pixels
// (BGRA), whatever the window's own size, and reads at most `frameRate` pictures a second.
//
// With `enlargesSmallerSource` false, a window whose picture fits within `width` by `height` on both
// sides is delivered at its own size, unscaled: enlarging adds no information, only work for the stream
// and for a receiver that shrinks the picture again to show it. Such a receiver must take each picture's
// size from the picture (`windowStreamPictureSize`). A movie writer needs every picture at the size its
// file was made for, so the default enlarges.
struct WindowStreamConfiguration {
    int width = 0;
    int height = 0;
    int frameRate = 30;  // frames per second; the minimum frame interval is its inverse
    bool showsCursor = true;
    bool enlargesSmallerSource = true;

    friend bool operator==(const WindowStreamConfiguration&, const WindowStreamConfiguration&) = default;
};

// The size, in pixels, of the pictures a stream under `configuration` delivers for a window whose picture
// is `sourcePixels` in pixels.
inline QSize windowStreamPictureSize(QSize sourcePixels, const WindowStreamConfiguration& configuration) {
    const bool fits =
        sourcePixels.width() <= configuration.width && sourcePixels.height() <= configuration.height;
    if (!configuration.enlargesSmallerSource && fits && !sourcePixels.isEmpty()) return sourcePixels;
    return {configuration.width, configuration.height};
}

// What a window stream did since its latest start, for the capture log at the stop.
struct WindowStreamCounters {
    std::int64_t framesRead = 0;        // pictures read from the window and delivered
    std::int64_t blankFrames = 0;       // blank samples delivered while the window showed nothing
    std::int64_t deadlinesSkipped = 0;  // frame deadlines passed over because a read ran late
    std::int64_t readsFailed = 0;       // reads the window's server refused, or that could not be scaled

    // "frames read 1800, blank 0, late deadlines skipped 2, reads failed 0"
    QString description() const {
        return QStringLiteral("frames read %1, blank %2, late deadlines skipped %3, reads failed %4")
            .arg(framesRead)
            .arg(blankFrames)
            .arg(deadlinesSkipped)
            .arg(readsFailed);
    }

    friend bool operator==(const WindowStreamCounters&, const WindowStreamCounters&) = default;
};

// A stream of one window's picture, however the window moves between displays. It delivers samples of
// type `screen` only. Besides the contract of CaptureStream: the stream follows a resized window
// (still scaled to the configured size, or at its own size as the configuration allows), sends `blank`
// samples while the window is unmapped, and stops delivering when the window is destroyed or can no
// longer be read, which it then tells through the end handler.
class WindowStream : public CaptureStream {
  public:
    // Why a started stream ended by itself (the window destroyed, the display connection lost).
    using EndHandler = std::function<void(const Error& reason)>;

    // Sets who hears of the stream's end by itself; replaces the one set before, and an empty function
    // sets none (main thread). The handler is called on the main thread, at most once per start, after
    // the last sample of that run was queued, and never once `stopCapture` was called: a stop always
    // comes first. Each adapter states its bound between the end and the call. The handler must not
    // stop or destroy the stream inside the call (it queues that). Receivers that only keep what comes (the
    // recording, which learns of a vanished window from its own window listing) need not set one.
    virtual void setEndHandler(EndHandler handler) = 0;

    // Applies a new configuration to a running stream from its next picture on (main thread). An Error
    // when the configuration is invalid; the old one then stays.
    virtual QCoro::Task<Status> updateConfiguration(WindowStreamConfiguration configuration) = 0;

    // What the running stream, or its latest run once stopped, did; zeros before the first start. Main
    // thread; the counts of a running stream are a snapshot that may lag its newest sample.
    virtual WindowStreamCounters counters() const = 0;
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

#pragma once

#include "base/media/PixelBuffer.h"

#include <memory>

namespace kestrum {

// Something that shows League Share's picture (the share window). A surface registers itself with the
// coordinator when it is shown and removes itself before it goes; the coordinator never owns one.
class LeagueShareDisplaySurface {
  public:
    virtual ~LeagueShareDisplaySurface() = default;

    // A complete frame, BGRA, of whatever size the stream delivered: the configured size, or the
    // window's own when the window is smaller (take the size from the frame). Called on the coordinator's
    // output queue, never on the main thread, and must not block: keep the newest frame and schedule a
    // repaint.
    virtual void enqueueFrame(std::shared_ptr<const PixelBuffer> frame) = 0;

    // Main thread. `removeDisplayedImage` is true after a real stop (the surface goes black) and false for
    // a restart (the picture stays until the new stream's first frame).
    virtual void flush(bool removeDisplayedImage) = 0;

  protected:
    LeagueShareDisplaySurface() = default;
    LeagueShareDisplaySurface(const LeagueShareDisplaySurface&) = default;
    LeagueShareDisplaySurface& operator=(const LeagueShareDisplaySurface&) = default;
};

}  // namespace kestrum

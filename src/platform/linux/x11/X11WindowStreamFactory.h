#pragma once

#include "platform/ports/WindowStream.h"

namespace kestrum {

// Makes X11WindowStreams. Main thread, as the port says.
class X11WindowStreamFactory final : public WindowStreamFactory {
  public:
    // The window's present size, asked of the X server (one short connection, one round trip); the
    // listed frame's size when the server cannot tell, for example because the window is already gone.
    QSizeF sourcePixelSize(const ShareableWindow& window) const override;
    std::unique_ptr<WindowStream> makeWindowStream(const ShareableWindow& window,
                                                   const WindowStreamConfiguration& configuration) override;
};

}  // namespace kestrum

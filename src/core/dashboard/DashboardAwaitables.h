#pragma once

#include "base/async/CancellationToken.h"
#include "platform/ports/VideoPlayer.h"

#include <QCoroTask>

namespace kestrum {

// Lets the event loop run once before going on, so that what was just published is drawn first. Yields
// false when `token` is cancelled before that. Main thread (any thread that runs a Qt event loop).
QCoro::Task<bool> yieldToEventLoop(CancellationToken token);

// Seeks `player` and waits for the seek's completion: true when it reached the position, false when it
// was abandoned (a later seek, no item) or when `token` was cancelled first. A player destroyed
// meanwhile drops its completion: the cancellation of `token` is then what ends the wait. The player
// must be alive when this is called; main thread.
QCoro::Task<bool> seekAndWait(VideoPlayer& player, double timeSeconds, VideoSeekTolerance tolerance,
                              CancellationToken token);

}  // namespace kestrum

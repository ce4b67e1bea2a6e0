#pragma once

#include "base/async/SerialQueue.h"
#include "base/media/PixelBuffer.h"
#include "core/share/LeagueShareDisplaySurface.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

namespace kestrum {

// One frame of the share stream to every display surface, and the newest frame to a surface that joins.
//
// Threads: the surface set, the newest frame and the current stream's number are guarded by `mutex_`,
// taken by the main thread (the registrations, the flushes, the stream's turns) and by the output queue
// (the frames). A frame is handed to the surfaces while the mutex is held, so once `removeSurface` has
// returned that surface is never called again. Surfaces are never owned.
class LeagueShareFrameFanout {
  public:
    explicit LeagueShareFrameFanout(SerialQueue& outputQueue) : outputQueue_(outputQueue) {}
    LeagueShareFrameFanout(const LeagueShareFrameFanout&) = delete;
    LeagueShareFrameFanout& operator=(const LeagueShareFrameFanout&) = delete;

    // Main thread. A surface already added is not added twice; the newest frame, if any, reaches it at
    // once through the output queue, as every frame does.
    void addSurface(LeagueShareDisplaySurface& surface);
    void removeSurface(LeagueShareDisplaySurface& surface);
    std::size_t surfaceCount() const;

    // Main thread. Makes a new stream the one whose frames are shown; gives its number.
    std::uint64_t beginStream();
    // Main thread. From now on no stream's frames are shown, including frames of the old stream that
    // are already queued.
    void endStream();
    // Main thread. Flushes every surface; `removeDisplayedImage` also forgets the newest frame, so that a
    // surface that joins later stays black.
    void flush(bool removeDisplayedImage);

    // Output queue. Keeps `frame` as the newest and hands it to every surface, when `streamNumber` is the
    // current stream; gives whether it did.
    bool show(std::uint64_t streamNumber, const std::shared_ptr<const PixelBuffer>& frame);
    // Any thread.
    bool isCurrent(std::uint64_t streamNumber) const;
    bool hasLatestFrame() const;

  private:
    SerialQueue& outputQueue_;
    mutable std::mutex mutex_;
    std::vector<LeagueShareDisplaySurface*> surfaces_;  // guarded by mutex_
    std::shared_ptr<const PixelBuffer> latestFrame_;    // guarded by mutex_
    std::uint64_t currentStream_ = 0;                   // guarded by mutex_; 0 while none is shown
    std::uint64_t lastStreamNumber_ = 0;                // main thread
};

}  // namespace kestrum

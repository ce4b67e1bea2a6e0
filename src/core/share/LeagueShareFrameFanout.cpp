#include "core/share/LeagueShareFrameFanout.h"

#include <algorithm>

namespace kestrum {

void LeagueShareFrameFanout::addSurface(LeagueShareDisplaySurface& surface) {
    {
        std::lock_guard lock(mutex_);
        if (std::find(surfaces_.begin(), surfaces_.end(), &surface) != surfaces_.end()) return;
        surfaces_.push_back(&surface);
    }
    // The surface takes frames on the output queue only; the check runs there, under the mutex, so a
    // surface removed meanwhile is not reached.
    outputQueue_.async([this, target = &surface] {
        std::lock_guard lock(mutex_);
        if (!latestFrame_) return;
        if (std::find(surfaces_.begin(), surfaces_.end(), target) == surfaces_.end()) return;
        target->enqueueFrame(latestFrame_);
    });
}

void LeagueShareFrameFanout::removeSurface(LeagueShareDisplaySurface& surface) {
    std::lock_guard lock(mutex_);
    std::erase(surfaces_, &surface);
}

std::size_t LeagueShareFrameFanout::surfaceCount() const {
    std::lock_guard lock(mutex_);
    return surfaces_.size();
}

std::uint64_t LeagueShareFrameFanout::beginStream() {
    std::lock_guard lock(mutex_);
    currentStream_ = ++lastStreamNumber_;
    return currentStream_;
}

void LeagueShareFrameFanout::endStream() {
    std::lock_guard lock(mutex_);
    currentStream_ = 0;
}

void LeagueShareFrameFanout::flush(bool removeDisplayedImage) {
    std::lock_guard lock(mutex_);
    if (removeDisplayedImage) latestFrame_.reset();
    for (LeagueShareDisplaySurface* surface : surfaces_) surface->flush(removeDisplayedImage);
}

bool LeagueShareFrameFanout::show(std::uint64_t streamNumber,
                                  const std::shared_ptr<const PixelBuffer>& frame) {
    std::lock_guard lock(mutex_);
    if (streamNumber == 0 || streamNumber != currentStream_) return false;
    latestFrame_ = frame;
    for (LeagueShareDisplaySurface* surface : surfaces_) surface->enqueueFrame(frame);
    return true;
}

bool LeagueShareFrameFanout::isCurrent(std::uint64_t streamNumber) const {
    std::lock_guard lock(mutex_);
    return streamNumber != 0 && streamNumber == currentStream_;
}

bool LeagueShareFrameFanout::hasLatestFrame() const {
    std::lock_guard lock(mutex_);
    return latestFrame_ != nullptr;
}

}  // namespace kestrum

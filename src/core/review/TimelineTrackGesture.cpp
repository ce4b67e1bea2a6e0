#include "core/review/TimelineTrackGesture.h"

#include <cmath>

namespace kestrum {

void TimelineTrackGesture::press(double x, double /*y*/) {
    pressX_ = x;
    isDragging_ = false;
    lastX_ = x;
}

TimelineTrackGesture::Action TimelineTrackGesture::move(double x, double y) {
    if (!pressX_) return {};
    if (!isDragging_ && std::abs(x - *pressX_) <= kDragDistance) return {};
    isDragging_ = true;
    lastX_ = x;
    return {Action::Kind::scrub, x, y};
}

TimelineTrackGesture::Action TimelineTrackGesture::release(double x, double y) {
    if (!pressX_) return {};
    const bool wasDragging = isDragging_ || std::abs(x - *pressX_) > kDragDistance;
    pressX_.reset();
    isDragging_ = false;
    if (wasDragging) return {Action::Kind::finishScrub, x, y};
    return {Action::Kind::click, x, y};
}

TimelineTrackGesture::Action TimelineTrackGesture::cancel() {
    const bool wasDragging = pressX_ && isDragging_;
    pressX_.reset();
    isDragging_ = false;
    if (wasDragging) return {Action::Kind::finishScrub, lastX_, 0};
    return {};
}

}  // namespace kestrum

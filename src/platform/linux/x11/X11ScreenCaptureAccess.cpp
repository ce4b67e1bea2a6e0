#include "platform/linux/x11/X11ScreenCaptureAccess.h"

#include "platform/linux/x11/XcbConnection.h"

#include <utility>

namespace kestrum {

X11ScreenCaptureAccess::X11ScreenCaptureAccess(QString displayName, const Clock& clock)
    : displayName_(std::move(displayName)), clock_(clock) {}

bool X11ScreenCaptureAccess::preflight() const {
    if (checkedAt_ && clock_.now() - *checkedAt_ < kCacheLifetime) return granted_;
    return check();
}

bool X11ScreenCaptureAccess::request() {
    return check();
}

bool X11ScreenCaptureAccess::check() const {
    granted_ = XcbConnection::open(displayName_).ok();
    checkedAt_ = clock_.now();
    return granted_;
}

}  // namespace kestrum

#pragma once

namespace kestrum {

// The operating system's permission to capture the screen (on Linux: whether an X display is
// reachable). Main thread only; both calls are cheap enough for every refresh of the coordinator.
class ScreenCaptureAccess {
  public:
    virtual ~ScreenCaptureAccess() = default;

    // Whether capture is allowed now, without showing anything to the user.
    virtual bool preflight() const = 0;

    // Asks the system for access, which may show its own prompt once per run; gives the state right
    // after. On systems without a prompt it is the same as `preflight`.
    virtual bool request() = 0;

  protected:
    ScreenCaptureAccess() = default;
    ScreenCaptureAccess(const ScreenCaptureAccess&) = default;
    ScreenCaptureAccess& operator=(const ScreenCaptureAccess&) = default;
};

}  // namespace kestrum

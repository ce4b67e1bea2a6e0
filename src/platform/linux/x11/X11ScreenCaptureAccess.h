#pragma once

#include "base/async/Clock.h"
#include "platform/ports/ScreenCaptureAccess.h"

#include <QString>

#include <optional>

namespace kestrum {

// Screen capture on X11 needs no permission: any client of the display may read any window. Access is
// therefore granted exactly when an X display answers. The answer is cached for one second, because the
// coordinator asks at every refresh and every application switch, and opening a connection costs a
// handshake with the server. `request` asks afresh (there is no prompt to show) and renews the cache.
// Main thread only, as the port says.
class X11ScreenCaptureAccess final : public ScreenCaptureAccess {
  public:
    static constexpr Clock::Duration kCacheLifetime = std::chrono::seconds(1);

    // `displayName` empty: $DISPLAY at the time of each check. `clock` times the cache.
    explicit X11ScreenCaptureAccess(QString displayName = {}, const Clock& clock = Clock::system());

    bool preflight() const override;
    bool request() override;

  private:
    // Opens and closes a connection now; stores the answer and its time.
    bool check() const;

    QString displayName_;
    const Clock& clock_;
    // The last answer and when it was found; mutable because `preflight` is a const query that renews it.
    mutable std::optional<Clock::TimePoint> checkedAt_;
    mutable bool granted_ = false;
};

}  // namespace kestrum

#pragma once

#include "core/shell/AppWindowPresenter.h"
#include "platform/ports/ApplicationWindows.h"

#include <functional>

namespace kestrum {

// Brings the review window to the front: through the presenter, with the application entering the task
// switcher, so that the window keeps the focus though the tray's panel had it. The window itself is the
// review side's: `showReviewWindow` builds it on its first call (16:9 at 0.9 of the screen, centred,
// minimum 1050 by 520) and shows it, later calls show the same window again. Without one (a build
// without the review side) a request is only logged.
//
// Threads: main thread. The windows port and the presenter must outlive it.
class DashboardWindowController {
  public:
    DashboardWindowController(ApplicationWindows& windows, AppWindowPresenter& presenter,
                              std::function<void()> showReviewWindow);

    // `token` proves the user's request when it comes from another launch; empty from our own windows.
    void showDashboard(const ActivationToken& token = {});

  private:
    ApplicationWindows& windows_;
    AppWindowPresenter& presenter_;
    const std::function<void()> showReviewWindow_;
};

}  // namespace kestrum

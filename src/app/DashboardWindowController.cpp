#include "app/DashboardWindowController.h"

#include "base/log/CaptureLog.h"
#include "core/shell/ApplicationWindowKinds.h"

namespace kestrum {

DashboardWindowController::DashboardWindowController(ApplicationWindows& windows,
                                                     AppWindowPresenter& presenter,
                                                     std::function<void()> showReviewWindow)
    : windows_(windows), presenter_(presenter), showReviewWindow_(std::move(showReviewWindow)) {}

void DashboardWindowController::showDashboard(const ActivationToken& token) {
    if (!showReviewWindow_) {
        logCaptureInfo(QStringLiteral("The review window is not part of this build of Kestrum."));
        return;
    }
    const auto reviewWindow = [&windows = windows_]() -> std::optional<ApplicationWindowID> {
        for (const ApplicationWindow& window : windows.windows()) {
            if (isReviewWindow(window)) return window.windowID;
        }
        return std::nullopt;
    };
    presenter_.present(ActivationPolicy::regular, showReviewWindow_, reviewWindow, token);
}

}  // namespace kestrum

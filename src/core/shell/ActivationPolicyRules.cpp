#include "core/shell/ActivationPolicyRules.h"

#include "core/shell/ApplicationWindowKinds.h"

#include <algorithm>

namespace kestrum {

std::optional<ActivationPolicy> policyAfterWindowWillClose(const std::optional<ApplicationWindow>& closing,
                                                           const std::vector<ApplicationWindow>& windows) {
    if (!closing || !isReviewWindow(*closing)) return std::nullopt;
    std::vector<ApplicationWindow> others;
    std::copy_if(windows.begin(), windows.end(), std::back_inserter(others),
                 [&](const ApplicationWindow& window) {
                     return window.isVisible && window.windowID != closing->windowID;
                 });
    const bool otherReviewWindow = std::any_of(others.begin(), others.end(), isReviewWindow);
    const bool keepsEntry = std::any_of(others.begin(), others.end(), [](const ApplicationWindow& window) {
        return isSettingsWindow(window) || isShareWindow(window);
    });
    if (keepsEntry || otherReviewWindow) return std::nullopt;
    return ActivationPolicy::accessory;
}

std::optional<ActivationPolicy> policyAfterResignActive(const std::vector<ApplicationWindow>& windows) {
    const bool reviewWindowVisible = std::any_of(
        windows.begin(), windows.end(),
        [](const ApplicationWindow& window) { return window.isVisible && isReviewWindow(window); });
    if (reviewWindowVisible) return std::nullopt;
    return ActivationPolicy::accessory;
}

bool showsInTaskSwitcher(const ApplicationWindow& window, ActivationPolicy policy) {
    return policy == ActivationPolicy::regular && (isReviewWindow(window) || isSettingsWindow(window));
}

}  // namespace kestrum

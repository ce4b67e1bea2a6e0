#pragma once

#include "platform/ports/ApplicationWindows.h"

#include <optional>
#include <vector>

namespace kestrum {

// The two rules that take the application out of the task switcher; each gives the policy to set, or
// absent to leave the policy as it is. Entering `regular` is not decided here: only showing the review
// window does that.
//
// The two rules differ on purpose: a closing review window keeps the application in the switcher while a
// settings or share window stays open, but losing the focus to another application leaves it as soon as
// no review window is visible, so a settings window left open does not keep the entry once the user has
// gone elsewhere.

// The window-close rule, with `closing` the window about to close (absent: the notice was about no window
// of ours) and `windows` every window now, the closing one still among them. Only a closing review window
// matters; the closing window and hidden ones are skipped; any other visible settings or share window
// leaves the policy as it is; otherwise `accessory` when no other review window is visible.
std::optional<ActivationPolicy> policyAfterWindowWillClose(const std::optional<ApplicationWindow>& closing,
                                                           const std::vector<ApplicationWindow>& windows);

// The resign rule: `accessory` unless a review window is visible.
std::optional<ActivationPolicy> policyAfterResignActive(const std::vector<ApplicationWindow>& windows);

// What a policy means for one window on a desktop without application-wide policies: under `regular` the
// review and settings windows show in the task switcher; under `accessory` no window does, nor do the
// panel, the share window or any other window under either policy.
bool showsInTaskSwitcher(const ApplicationWindow& window, ActivationPolicy policy);

}  // namespace kestrum

#pragma once

#include "platform/ports/ApplicationWindows.h"
#include "platform/ports/HandlerList.h"

#include <map>
#include <utility>
#include <vector>

namespace kestrum {

// The application's windows scripted by a test: windows are added, shown, hidden, focused and closed by
// hand, and every change of the activation policy and every request to bring a window to the front is
// kept. Main thread only. Notices are delivered synchronously by the scripting calls, which stand for the
// desktop's own delivery; nothing happens by itself (making a window key does not move the focus).
class FakeApplicationWindows final : public ApplicationWindows {
  public:
    std::vector<ApplicationWindow> windows() const override { return windows_; }
    std::optional<ApplicationWindow> keyWindow() const override;
    ActivationPolicy activationPolicy() const override { return policy_; }
    void setActivationPolicy(ActivationPolicy policy) override;
    void makeKeyAndOrderFront(ApplicationWindowID window, const ActivationToken& token) override;
    void makeCaptureOnly(ApplicationWindowID window) override { captureOnlyRequests_.push_back(window); }
    [[nodiscard]] Subscription observe(Notice notice, Handler handler) override;

    // Adds a window and gives its id (1, 2, ... in order).
    ApplicationWindowID addWindow(const QString& title, const QString& identifier, bool isVisible,
                                  bool isPanel = false);
    void setVisible(ApplicationWindowID window, bool isVisible);
    // Moves the focus: delivers `windowDidResignKey` for the window that had it, then `windowDidBecomeKey`
    // for the new one. Absent: the focus leaves the application's windows (no resign-active notice).
    void setKeyWindow(std::optional<ApplicationWindowID> window);
    // Delivers `windowWillClose` while the window is still visible, then hides it (as a window hidden on
    // close, never destroyed).
    void close(ApplicationWindowID window);
    // Delivers any notice with the given argument, including objects that are no window of ours (absent).
    void post(Notice notice, const std::optional<ApplicationWindow>& window);
    std::optional<ApplicationWindow> window(ApplicationWindowID window) const;

    // Every policy set, in order, including repeats of the policy in force.
    const std::vector<ActivationPolicy>& policyRequests() const { return policyRequests_; }
    // Every request to bring a window to the front, in order.
    const std::vector<std::pair<ApplicationWindowID, ActivationToken>>& frontRequests() const {
        return frontRequests_;
    }
    // Every window made capture-only, in order.
    const std::vector<ApplicationWindowID>& captureOnlyRequests() const { return captureOnlyRequests_; }
    std::size_t observerCount(Notice notice) const;

  private:
    ApplicationWindow* find(ApplicationWindowID window);

    std::vector<ApplicationWindow> windows_;
    std::optional<ApplicationWindowID> keyWindow_;
    ActivationPolicy policy_ = ActivationPolicy::regular;
    std::vector<ActivationPolicy> policyRequests_;
    std::vector<std::pair<ApplicationWindowID, ActivationToken>> frontRequests_;
    std::vector<ApplicationWindowID> captureOnlyRequests_;
    std::map<Notice, HandlerList<std::optional<ApplicationWindow>>> observers_;
};

}  // namespace kestrum

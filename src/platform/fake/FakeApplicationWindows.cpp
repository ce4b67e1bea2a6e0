#include "platform/fake/FakeApplicationWindows.h"

#include <algorithm>

namespace kestrum {

std::optional<ApplicationWindow> FakeApplicationWindows::keyWindow() const {
    if (!keyWindow_) return std::nullopt;
    return window(*keyWindow_);
}

void FakeApplicationWindows::setActivationPolicy(ActivationPolicy policy) {
    policyRequests_.push_back(policy);
    policy_ = policy;
}

void FakeApplicationWindows::makeKeyAndOrderFront(ApplicationWindowID window, const ActivationToken& token) {
    frontRequests_.emplace_back(window, token);
    if (ApplicationWindow* found = find(window)) found->isVisible = true;
}

Subscription FakeApplicationWindows::observe(Notice notice, Handler handler) {
    return observers_[notice].add(std::move(handler));
}

ApplicationWindowID FakeApplicationWindows::addWindow(const QString& title, const QString& identifier,
                                                      bool isVisible, bool isPanel) {
    const ApplicationWindowID id = windows_.size() + 1;
    windows_.push_back({id, title, identifier, isVisible, isPanel});
    return id;
}

void FakeApplicationWindows::setVisible(ApplicationWindowID window, bool isVisible) {
    if (ApplicationWindow* found = find(window)) found->isVisible = isVisible;
}

void FakeApplicationWindows::setKeyWindow(std::optional<ApplicationWindowID> window) {
    const std::optional<ApplicationWindowID> previous = std::exchange(keyWindow_, window);
    if (previous == window) return;
    if (previous) post(Notice::windowDidResignKey, this->window(*previous));
    if (window) post(Notice::windowDidBecomeKey, this->window(*window));
}

void FakeApplicationWindows::close(ApplicationWindowID window) {
    post(Notice::windowWillClose, this->window(window));
    setVisible(window, false);
    if (keyWindow_ == window) keyWindow_.reset();
}

void FakeApplicationWindows::post(Notice notice, const std::optional<ApplicationWindow>& window) {
    const auto found = observers_.find(notice);
    if (found != observers_.end()) found->second.deliver(window);
}

std::optional<ApplicationWindow> FakeApplicationWindows::window(ApplicationWindowID window) const {
    const auto found =
        std::find_if(windows_.begin(), windows_.end(),
                     [window](const ApplicationWindow& each) { return each.windowID == window; });
    if (found == windows_.end()) return std::nullopt;
    return *found;
}

std::size_t FakeApplicationWindows::observerCount(Notice notice) const {
    const auto found = observers_.find(notice);
    return found == observers_.end() ? 0 : found->second.count();
}

ApplicationWindow* FakeApplicationWindows::find(ApplicationWindowID window) {
    const auto found =
        std::find_if(windows_.begin(), windows_.end(),
                     [window](const ApplicationWindow& each) { return each.windowID == window; });
    return found == windows_.end() ? nullptr : &*found;
}

}  // namespace kestrum

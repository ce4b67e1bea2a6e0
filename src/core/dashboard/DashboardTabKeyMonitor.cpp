#include "core/dashboard/DashboardTabKeyMonitor.h"

#include <utility>

namespace kestrum {

namespace {

constexpr Qt::KeyboardModifiers kBlockingModifiers = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;

}  // namespace

DashboardTabKeyMonitor::DashboardTabKeyMonitor(std::function<void(bool)> onPressedChanged)
    : onPressedChanged_(std::move(onPressedChanged)) {}

void DashboardTabKeyMonitor::install(WindowID hostingWindow) {
    hostingWindow_ = hostingWindow;
}

void DashboardTabKeyMonitor::remove() {
    hostingWindow_.reset();
    if (!isTabPressed_) return;
    isTabPressed_ = false;
    onPressedChanged_(false);
}

bool DashboardTabKeyMonitor::handle(const Event& event) {
    if (!hostingWindow_) return false;
    if (event.key != Qt::Key_Tab && event.key != Qt::Key_Backtab) return false;
    if (event.window != *hostingWindow_) return false;
    if (event.modifiers & kBlockingModifiers) return false;
    if (event.isAutoRepeat) return true;
    if (event.isPress != isTabPressed_) {
        isTabPressed_ = event.isPress;
        onPressedChanged_(isTabPressed_);
    }
    return true;
}

}  // namespace kestrum

#pragma once

#include <Qt>
#include <QtGlobal>

#include <functional>
#include <optional>

namespace kestrum {

// Holding Tab shows the scoreboard. A focus system would take Tab for itself, so the key goes through an
// application-wide key filter before any focus handling: the filter hands every key event here and
// swallows the event when `handle` says so. The monitor is installed when the review window's content
// is shown (with the window that shows it) and removed when it goes.
//
// For each event, while installed: a key other than Tab (Qt's Key_Tab, or Key_Backtab, which is what Tab
// becomes with Shift) passes on; an event of another window passes on (no window on both sides counts as
// the same); Tab held with Ctrl, Alt or Super passes on, while Shift does not matter. Otherwise the event
// is swallowed, and a change of the pressed state is reported. Auto-repeats are swallowed without a
// report: X11 repeats a held key as release-press pairs, which must not flicker the scoreboard.
//
// Removing the monitor while Tab is down reports the release, so the scoreboard never sticks.
//
// Threads: the main thread, where the key filter runs. Windows are compared by identity only.
class DashboardTabKeyMonitor {
  public:
    using WindowID = quintptr;  // 0: no window

    struct Event {
        int key = 0;
        Qt::KeyboardModifiers modifiers = Qt::NoModifier;
        bool isPress = true;
        bool isAutoRepeat = false;
        WindowID window = 0;
    };

    explicit DashboardTabKeyMonitor(std::function<void(bool isPressed)> onPressedChanged);

    void install(WindowID hostingWindow);
    void remove();
    bool isInstalled() const { return hostingWindow_.has_value(); }
    bool isTabPressed() const { return isTabPressed_; }

    // True: swallow the event.
    bool handle(const Event& event);

  private:
    std::function<void(bool)> onPressedChanged_;
    std::optional<WindowID> hostingWindow_;  // main thread; absent while not installed
    bool isTabPressed_ = false;              // main thread
};

}  // namespace kestrum

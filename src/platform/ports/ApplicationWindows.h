#pragma once

#include "platform/ports/Subscription.h"

#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace kestrum {

// Identifies one window of this application for as long as it exists; never reused while the process
// runs on the adapters here (a window's address or native id is not handed out again to a live window).
using ApplicationWindowID = quint64;

// One window of this application as the shell sees it: a plain snapshot, independent of the window,
// which may be gone by the time a copy is read.
struct ApplicationWindow {
    ApplicationWindowID windowID = 0;
    QString title;
    // The window's identifier ("dashboard", "settings", "league-share"); empty when it has none.
    QString identifier;
    bool isVisible = false;
    // A panel: the tray's drop-down panel, a window that gives the focus back when it closes.
    bool isPanel = false;

    friend bool operator==(const ApplicationWindow&, const ApplicationWindow&) = default;
};

// Whether the application shows in the desktop's task switcher. `accessory`: none of its windows does
// (a tray application); `regular`: the review and settings windows do.
enum class ActivationPolicy { regular, accessory };

// What lets the window manager give the focus to a window the user asked for from another process or
// a launcher: the launch's startup notification id, or the time of the user's input event. Both empty
// when the request comes from our own windows (the desktop then judges by our last input event).
struct ActivationToken {
    QString startupID;                   // DESKTOP_STARTUP_ID of the launch that asked; empty when none
    std::optional<quint32> eventTimeMs;  // the display server's time of the user's event, milliseconds

    friend bool operator==(const ActivationToken&, const ActivationToken&) = default;
};

// The application's own windows: which exist, which has the focus, whether the application shows in the
// task switcher, bringing one to the front, and notices of closing, focus and the application's loss of
// the focus.
//
// Contract, for every adapter:
// - Every call is made on the main thread; every handler runs on the main thread, never inside the call
//   that registered it.
// - `windows` lists every top-level window of the application that exists now, visible or not, in the
//   order they were made; windows of other applications never appear.
// - `setActivationPolicy` applies at once to every window that exists and to every window shown later;
//   setting the policy in force again changes nothing.
// - `windowWillClose` is delivered while the closing window still exists and still counts as visible in
//   `windows`; its argument is that window, or absent when the closing object is no window of ours (the
//   handler then ignores it). `windowDidBecomeKey` and `windowDidResignKey` carry the window that gained
//   or lost the focus; `applicationDidResignActive` carries nothing (absent): the focus went to another
//   application.
class ApplicationWindows {
  public:
    enum class Notice { windowWillClose, windowDidBecomeKey, windowDidResignKey, applicationDidResignActive };
    using Handler = std::function<void(const std::optional<ApplicationWindow>& window)>;

    virtual ~ApplicationWindows() = default;

    virtual std::vector<ApplicationWindow> windows() const = 0;
    // The window that has the keyboard focus; absent when another application has it.
    virtual std::optional<ApplicationWindow> keyWindow() const = 0;

    virtual ActivationPolicy activationPolicy() const = 0;
    virtual void setActivationPolicy(ActivationPolicy policy) = 0;

    // Shows the window, raises it and asks the desktop to give it the focus, proving the user's request
    // with `token`. The desktop may still refuse the focus; a window that no longer exists is ignored.
    virtual void makeKeyAndOrderFront(ApplicationWindowID window, const ActivationToken& token) = 0;

    // Makes the window a picture for other programs to capture rather than one to use: the desktop knows
    // it by its identifier (on X11 both parts of WM_CLASS and WM_WINDOW_ROLE), and the pointer's input
    // passes through it to whatever lies below (an empty input region). Applied to the native window at
    // once, creating it when needed, so call it before the window is first shown; the window keeps it
    // while it exists. A window that no longer exists is ignored.
    virtual void makeCaptureOnly(ApplicationWindowID window) = 0;

    // Calls `handler` for every later notice of kind `notice` until the subscription is dropped.
    [[nodiscard]] virtual Subscription observe(Notice notice, Handler handler) = 0;

  protected:
    ApplicationWindows() = default;
    ApplicationWindows(const ApplicationWindows&) = default;
    ApplicationWindows& operator=(const ApplicationWindows&) = default;
};

}  // namespace kestrum

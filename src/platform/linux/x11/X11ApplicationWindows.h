#pragma once

#include "platform/linux/x11/X11CaptureOnlyWindow.h"
#include "platform/linux/x11/X11TaskSwitcherState.h"
#include "platform/linux/x11/X11WindowActivation.h"
#include "platform/linux/x11/XcbConnection.h"
#include "platform/ports/ApplicationWindows.h"
#include "platform/ports/HandlerList.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QWindow>

#include <map>
#include <memory>

namespace kestrum {

// The application's windows on X11: the QGuiApplication's top-level windows, with what the shell needs
// of them. A window's identifier is its objectName ("dashboard", "settings", "league-share"); a panel is a
// window of type Qt::Tool or Qt::Popup (the tray's drop-down panel is made so). Ids are the windows'
// addresses.
//
// The task switcher: X11 has no application-wide policy, so `accessory` means every window of ours carries
// _NET_WM_STATE_SKIP_TASKBAR, and `regular` that the review and settings windows do not (every other
// window still does). The state is asked of the window manager for each window once it is mapped (its
// first exposure after being shown), and again whenever the policy changes.
//
// Notices come from the application: a window's close event (before the window handles it, so the window
// is still visible), the focus window's changes, and the application turning inactive.
//
// A capture-only window (the share window) is named by its identifier in WM_CLASS and WM_WINDOW_ROLE and
// gets an empty input region through XFixes.
//
// Without an X display (another platform plugin, or no server) the windows, the notices and the focus
// still work through Qt; only the task-switcher state, the activation proof and the capture-only traits are
// left out.
//
// Threads: main thread, with the QGuiApplication alive for the object's whole life.
class X11ApplicationWindows final : public QObject, public ApplicationWindows {
    Q_OBJECT

  public:
    // `displayName` empty: $DISPLAY.
    explicit X11ApplicationWindows(const QString& displayName = {}, QObject* parent = nullptr);
    ~X11ApplicationWindows() override;

    std::vector<ApplicationWindow> windows() const override;
    std::optional<ApplicationWindow> keyWindow() const override;
    ActivationPolicy activationPolicy() const override { return policy_; }
    void setActivationPolicy(ActivationPolicy policy) override;
    void makeKeyAndOrderFront(ApplicationWindowID window, const ActivationToken& token) override;
    void makeCaptureOnly(ApplicationWindowID window) override;
    [[nodiscard]] Subscription observe(Notice notice, Handler handler) override;

    // The X server's time now, for a launch's activation token; absent without an X display.
    std::optional<quint32> serverTimeMs();

    static ApplicationWindow describe(const QWindow& window);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QWindow* find(ApplicationWindowID window) const;
    // Asks for the window's task-switcher state if it is mapped and the state sent differs.
    void applyPolicy(QWindow& window);
    void deliver(Notice notice, const std::optional<ApplicationWindow>& window);
    void focusWindowChanged(QWindow* focusWindow);

    std::unique_ptr<XcbConnection> connection_;  // absent without an X display
    std::unique_ptr<X11TaskSwitcherState> taskSwitcher_;
    std::unique_ptr<X11WindowActivation> activation_;
    std::unique_ptr<X11CaptureOnlyWindow> captureOnly_;
    // Main thread.
    ActivationPolicy policy_ = ActivationPolicy::regular;
    // Per mapped window: whether it was last asked to skip the switcher; forgotten when it is hidden (the
    // window manager drops the state of a withdrawn window).
    QHash<QWindow*, bool> sentSkipStates_;
    // Activations asked for windows not mapped yet, sent at their first exposure.
    QHash<QWindow*, ActivationToken> pendingActivations_;
    // Windows made capture-only; their window manager's frame is made to pass the pointer through after
    // every exposure and resize.
    QSet<QWindow*> captureOnlyWindows_;
    QPointer<QWindow> focusWindow_;
    std::map<Notice, HandlerList<std::optional<ApplicationWindow>>> observers_;
};

}  // namespace kestrum

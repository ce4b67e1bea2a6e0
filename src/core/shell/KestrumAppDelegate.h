#pragma once

#include "base/async/Job.h"
#include "platform/ports/ApplicationWindows.h"

#include <QCoroTask>
#include <QObject>

#include <functional>
#include <optional>

namespace kestrum {

// The application's delegate: what the application does at launch, when asked to quit, at its very end
// and when launched again while it runs. It applies the appearance, keeps the two observers that take the
// application out of the task switcher (ActivationPolicyRules.h), and runs the quit: League Share stops,
// an active recording is finalised and saved, and only then the reply to quit goes out. There is no
// time-out of our own: a quit waits for as long as the finalisation takes.
//
// Threads: main thread only; the windows port and the hooks must outlive the delegate.
class KestrumAppDelegate : public QObject {
    Q_OBJECT

  public:
    // What the delegate calls on the shared objects around it. Every hook is called on the main thread.
    struct Hooks {
        // Reads "kestrumAppearance" and applies it to every window.
        std::function<void()> applyAppearance;
        // DashboardWindowController's showDashboard(): builds the review window once, then shows it.
        std::function<void()> showDashboard;
        // Stops League Share, synchronously and idempotently; empty until League Share exists.
        std::function<void()> stopLeagueShare;
        // The coordinator's prepareForTermination(): completes when no recording is active any more,
        // an active one having been finalised and saved.
        std::function<QCoro::Task<void>()> prepareForTermination;
    };

    KestrumAppDelegate(ApplicationWindows& windows, Hooks hooks, QObject* parent = nullptr);

    // At launch, in order: applies the appearance, registers the window-close and resign observers, and
    // takes the application out of the task switcher.
    void applicationDidFinishLaunching();

    // A request to quit (the quit command, SIGTERM, SIGINT, the end of the session). The first request
    // stops League Share and, on the next turn of the event loop, awaits prepareForTermination and then
    // emits `terminationReplied(true)`. Any later request changes nothing: there is one finalisation and
    // one reply.
    void applicationShouldTerminate();

    // At the very end: stops League Share again and removes both observers.
    void applicationWillTerminate();

    // A launch while running (the desktop's reopen): shows the review window whatever
    // `hasVisibleWindows` says, and returns false so that nothing else is done.
    bool applicationShouldHandleReopen(bool hasVisibleWindows);

    bool isTerminationPending() const { return isTerminationPending_; }
    bool isObservingWindows() const {
        return windowCloseObserver_.isActive() || applicationResignObserver_.isActive();
    }

  signals:
    // The reply to the quit request: the application may now quit. Emitted once.
    void terminationReplied(bool shouldTerminate);

  private:
    void applyPolicy(std::optional<ActivationPolicy> policy);
    void stopLeagueShare();

    ApplicationWindows& windows_;
    const Hooks hooks_;
    // All below belong to the main thread.
    Subscription windowCloseObserver_;
    Subscription applicationResignObserver_;
    // True from the first quit request on; never false again.
    bool isTerminationPending_ = false;
    std::optional<Job<void>> terminationTask_;
};

}  // namespace kestrum

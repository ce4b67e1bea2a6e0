#include "core/shell/KestrumAppDelegate.h"

#include "core/shell/ActivationPolicyRules.h"

#include <QMetaObject>
#include <QPointer>

namespace kestrum {

KestrumAppDelegate::KestrumAppDelegate(ApplicationWindows& windows, Hooks hooks, QObject* parent)
    : QObject(parent), windows_(windows), hooks_(std::move(hooks)) {}

void KestrumAppDelegate::applicationDidFinishLaunching() {
    if (hooks_.applyAppearance) hooks_.applyAppearance();
    const QPointer<KestrumAppDelegate> self(this);
    windowCloseObserver_ = windows_.observe(
        ApplicationWindows::Notice::windowWillClose, [self](const std::optional<ApplicationWindow>& closing) {
            if (!self) return;
            self->applyPolicy(policyAfterWindowWillClose(closing, self->windows_.windows()));
        });
    applicationResignObserver_ =
        windows_.observe(ApplicationWindows::Notice::applicationDidResignActive,
                         [self](const std::optional<ApplicationWindow>&) {
                             if (self) self->applyPolicy(policyAfterResignActive(self->windows_.windows()));
                         });
    windows_.setActivationPolicy(ActivationPolicy::accessory);
}

void KestrumAppDelegate::applicationShouldTerminate() {
    if (isTerminationPending_) return;  // a second request while the first runs changes nothing
    isTerminationPending_ = true;
    stopLeagueShare();
    // The wait starts as a task of its own on the next turn, so the reply never comes from inside the
    // request itself.
    QMetaObject::invokeMethod(
        this,
        [this] {
            terminationTask_ = Job<void>::start(
                [self = QPointer<KestrumAppDelegate>(this),
                 prepare = hooks_.prepareForTermination](CancellationToken) -> QCoro::Task<void> {
                    if (prepare) {
                        QCoro::Task<void> prepared = prepare();
                        co_await std::move(prepared);
                    }
                    if (self) emit self->terminationReplied(true);
                });
        },
        Qt::QueuedConnection);
}

void KestrumAppDelegate::applicationWillTerminate() {
    stopLeagueShare();
    windowCloseObserver_.reset();
    applicationResignObserver_.reset();
}

bool KestrumAppDelegate::applicationShouldHandleReopen(bool) {
    if (hooks_.showDashboard) hooks_.showDashboard();
    return false;
}

void KestrumAppDelegate::applyPolicy(std::optional<ActivationPolicy> policy) {
    if (policy) windows_.setActivationPolicy(*policy);
}

void KestrumAppDelegate::stopLeagueShare() {
    if (hooks_.stopLeagueShare) hooks_.stopLeagueShare();
}

}  // namespace kestrum

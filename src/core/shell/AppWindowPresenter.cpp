#include "core/shell/AppWindowPresenter.h"

#include <QMetaObject>
#include <QPointer>

namespace kestrum {

AppWindowPresenter::AppWindowPresenter(ApplicationWindows& windows, QObject* parent)
    : QObject(parent), windows_(windows) {}

void AppWindowPresenter::present(std::optional<ActivationPolicy> activationPolicy, Action action,
                                 TargetWindow targetWindow, const ActivationToken& token) {
    // Cancel the presentation in progress, then make this one's token.
    presentationID_ = QUuid::createUuid();
    sourceWindowObserver_.reset();
    const Presentation presentation{QUuid::createUuid(), activationPolicy, std::move(targetWindow), token};
    presentationID_ = presentation.token;

    std::optional<ApplicationWindowID> sourcePanel;
    const std::optional<ApplicationWindow> keyWindow = windows_.keyWindow();
    if (keyWindow && keyWindow->isPanel) {
        const std::optional<ApplicationWindowID> target =
            presentation.targetWindow ? presentation.targetWindow() : std::nullopt;
        if (target != keyWindow->windowID) sourcePanel = keyWindow->windowID;
    }
    if (sourcePanel) {
        sourceWindowObserver_ =
            windows_.observe(ApplicationWindows::Notice::windowDidResignKey,
                             [self = QPointer<AppWindowPresenter>(this), panel = *sourcePanel,
                              presentation](const std::optional<ApplicationWindow>& window) {
                                 if (self && window && window->windowID == panel)
                                     self->queueFinish(presentation);
                             });
    }

    if (action) action();
    bringToFront(presentation);

    if (sourcePanel) {
        queueFinish(presentation);
    } else {
        endPresentation(presentation.token);
    }
}

void AppWindowPresenter::bringToFront(const Presentation& presentation) {
    // The desktops here have no application-wide activation: making the window key activates it.
    if (presentation.activationPolicy) windows_.setActivationPolicy(*presentation.activationPolicy);
    const std::optional<ApplicationWindowID> target =
        presentation.targetWindow ? presentation.targetWindow() : std::nullopt;
    if (target) windows_.makeKeyAndOrderFront(*target, presentation.activationToken);
}

void AppWindowPresenter::queueFinish(const Presentation& presentation) {
    QMetaObject::invokeMethod(
        this, [this, presentation] { finish(presentation); }, Qt::QueuedConnection);
}

void AppWindowPresenter::finish(const Presentation& presentation) {
    if (presentationID_ != presentation.token) return;  // a later presentation took over, or this one ended
    bringToFront(presentation);
    endPresentation(presentation.token);
}

void AppWindowPresenter::endPresentation(const QUuid& token) {
    if (presentationID_ != token) return;
    sourceWindowObserver_.reset();
    presentationID_ = QUuid::createUuid();
}

}  // namespace kestrum

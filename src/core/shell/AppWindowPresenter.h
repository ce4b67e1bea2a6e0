#pragma once

#include "platform/ports/ApplicationWindows.h"

#include <QObject>
#include <QUuid>

#include <functional>
#include <optional>

namespace kestrum {

// Brings a window to the front from the tray's panel. While the panel has the focus, a window raised
// from it loses the focus again when the panel closes; so when a panel has the focus, the presentation
// is done once at once and once more after the panel has let the focus go (its resign notice, and a
// queued turn as a fallback), guarded by a presentation token: a step queued by an earlier presentation
// finds another token and does nothing.
//
// Threads: main thread only; the windows port must outlive the presenter. Queued steps hold the
// presenter weakly (they are dropped with it).
class AppWindowPresenter : public QObject {
    Q_OBJECT

  public:
    using Action = std::function<void()>;
    // The window to bring to the front, looked up when needed; absent when there is none (yet).
    using TargetWindow = std::function<std::optional<ApplicationWindowID>()>;

    explicit AppWindowPresenter(ApplicationWindows& windows, QObject* parent = nullptr);

    // Cancels any presentation in progress, runs `action` (which opens the window), sets
    // `activationPolicy` when given, and makes the target window key with `token`; again after the
    // source panel has resigned, when a panel other than the target had the focus.
    void present(std::optional<ActivationPolicy> activationPolicy, Action action, TargetWindow targetWindow,
                 const ActivationToken& token = {});

    // The token of the presentation in progress; a new value as soon as none is in progress.
    QUuid presentationID() const { return presentationID_; }
    bool isObservingSourcePanel() const { return sourceWindowObserver_.isActive(); }

  private:
    struct Presentation {
        QUuid token;
        std::optional<ActivationPolicy> activationPolicy;
        TargetWindow targetWindow;
        ActivationToken activationToken;
    };

    void bringToFront(const Presentation& presentation);
    void queueFinish(const Presentation& presentation);
    void finish(const Presentation& presentation);
    void endPresentation(const QUuid& token);

    ApplicationWindows& windows_;
    // Main thread.
    Subscription sourceWindowObserver_;
    QUuid presentationID_ = QUuid::createUuid();
};

}  // namespace kestrum

#include "platform/linux/x11/X11ApplicationWindows.h"

#include "core/shell/ActivationPolicyRules.h"

#include <QEvent>
#include <QGuiApplication>

namespace kestrum {

X11ApplicationWindows::X11ApplicationWindows(const QString& displayName, QObject* parent) : QObject(parent) {
    if (QGuiApplication::platformName() == QLatin1String("xcb")) {
        if (auto opened = XcbConnection::open(displayName); opened.ok()) {
            connection_ = std::move(opened).value();
            taskSwitcher_ = std::make_unique<X11TaskSwitcherState>(*connection_);
            activation_ = std::make_unique<X11WindowActivation>(*connection_);
            captureOnly_ = std::make_unique<X11CaptureOnlyWindow>(*connection_);
        }
    }
    qApp->installEventFilter(this);
    focusWindow_ = QGuiApplication::focusWindow();
    connect(qApp, &QGuiApplication::focusWindowChanged, this, &X11ApplicationWindows::focusWindowChanged);
    connect(qApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state != Qt::ApplicationActive) deliver(Notice::applicationDidResignActive, std::nullopt);
    });
}

X11ApplicationWindows::~X11ApplicationWindows() {
    if (qApp) qApp->removeEventFilter(this);
}

ApplicationWindow X11ApplicationWindows::describe(const QWindow& window) {
    const Qt::WindowType type = window.type();
    return {reinterpret_cast<quintptr>(&window), window.title(), window.objectName(), window.isVisible(),
            type == Qt::Tool || type == Qt::Popup};
}

std::vector<ApplicationWindow> X11ApplicationWindows::windows() const {
    std::vector<ApplicationWindow> described;
    for (const QWindow* window : QGuiApplication::topLevelWindows()) described.push_back(describe(*window));
    return described;
}

std::optional<ApplicationWindow> X11ApplicationWindows::keyWindow() const {
    const QWindow* focus = QGuiApplication::focusWindow();
    if (!focus) return std::nullopt;
    return describe(*focus);
}

void X11ApplicationWindows::setActivationPolicy(ActivationPolicy policy) {
    policy_ = policy;
    for (QWindow* window : QGuiApplication::topLevelWindows()) applyPolicy(*window);
}

void X11ApplicationWindows::makeKeyAndOrderFront(ApplicationWindowID id, const ActivationToken& token) {
    QWindow* window = find(id);
    if (!window) return;
    if (window->isExposed() && activation_) {
        activation_->activate(static_cast<xcb_window_t>(window->winId()), token);
    } else {
        pendingActivations_.insert(window, token);  // the window manager ignores windows it has not mapped
    }
    window->show();
    window->raise();
    window->requestActivate();
}

void X11ApplicationWindows::makeCaptureOnly(ApplicationWindowID id) {
    QWindow* window = find(id);
    if (!window || !captureOnly_) return;
    // winId() makes the native window when it does not exist yet; it is kept until the QWindow goes.
    captureOnly_->apply(static_cast<xcb_window_t>(window->winId()), window->objectName().toUtf8());
    captureOnlyWindows_.insert(window);
    if (window->isExposed()) captureOnly_->passInputThroughFrame(static_cast<xcb_window_t>(window->winId()));
}

Subscription X11ApplicationWindows::observe(Notice notice, Handler handler) {
    return observers_[notice].add(std::move(handler));
}

std::optional<quint32> X11ApplicationWindows::serverTimeMs() {
    if (!activation_) return std::nullopt;
    return activation_->serverTimeMs();
}

bool X11ApplicationWindows::eventFilter(QObject* watched, QEvent* event) {
    auto* window = qobject_cast<QWindow*>(watched);
    if (!window || !window->isTopLevel()) return false;
    switch (event->type()) {
        case QEvent::Close:
            // Seen before the window handles it: the window still exists and is still visible.
            deliver(Notice::windowWillClose, describe(*window));
            break;
        case QEvent::Resize:
            if (captureOnlyWindows_.contains(window) && window->isExposed()) {
                captureOnly_->passInputThroughFrame(static_cast<xcb_window_t>(window->winId()));
            }
            break;
        case QEvent::Expose:
            if (window->isExposed()) {
                applyPolicy(*window);
                if (captureOnlyWindows_.contains(window)) {
                    captureOnly_->passInputThroughFrame(static_cast<xcb_window_t>(window->winId()));
                }
                if (const auto pending = pendingActivations_.constFind(window);
                    pending != pendingActivations_.cend()) {
                    const ActivationToken token = *pending;
                    pendingActivations_.erase(pending);
                    if (activation_) activation_->activate(static_cast<xcb_window_t>(window->winId()), token);
                }
            }
            break;
        case QEvent::Hide:
            sentSkipStates_.remove(window);
            break;
        case QEvent::Destroy:
            sentSkipStates_.remove(window);
            captureOnlyWindows_.remove(window);
            pendingActivations_.remove(window);
            break;
        default:
            break;
    }
    return false;
}

QWindow* X11ApplicationWindows::find(ApplicationWindowID id) const {
    for (QWindow* window : QGuiApplication::topLevelWindows()) {
        if (reinterpret_cast<quintptr>(window) == id) return window;
    }
    return nullptr;
}

void X11ApplicationWindows::applyPolicy(QWindow& window) {
    if (!taskSwitcher_ || !window.isExposed()) return;
    const bool skips = !showsInTaskSwitcher(describe(window), policy_);
    const auto sent = sentSkipStates_.constFind(&window);
    if (sent != sentSkipStates_.cend() && *sent == skips) return;
    sentSkipStates_.insert(&window, skips);
    taskSwitcher_->setSkipsTaskSwitcher(static_cast<xcb_window_t>(window.winId()), skips);
}

void X11ApplicationWindows::deliver(Notice notice, const std::optional<ApplicationWindow>& window) {
    const auto found = observers_.find(notice);
    if (found != observers_.end()) found->second.deliver(window);
}

void X11ApplicationWindows::focusWindowChanged(QWindow* focusWindow) {
    const QPointer<QWindow> previous = std::exchange(focusWindow_, focusWindow);
    if (previous && previous != focusWindow) deliver(Notice::windowDidResignKey, describe(*previous));
    if (focusWindow && previous != focusWindow) deliver(Notice::windowDidBecomeKey, describe(*focusWindow));
}

}  // namespace kestrum

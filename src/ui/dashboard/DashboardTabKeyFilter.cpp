#include "ui/dashboard/DashboardTabKeyFilter.h"

#include "core/dashboard/DashboardController.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QQuickItem>
#include <QQuickWindow>
#include <QWindow>

namespace kestrum::ui {

namespace {

// The window a key event is on its way to: the window itself, or the window of the item it is handed
// to next. Null for anything else.
QObject* windowOf(QObject* watched) {
    if (auto* window = qobject_cast<QWindow*>(watched)) return window;
    if (auto* item = qobject_cast<QQuickItem*>(watched)) return item->window();
    return nullptr;
}

}  // namespace

DashboardTabKeyFilter::DashboardTabKeyFilter(DashboardController& controller, QObject* parent)
    : QObject(parent), controller_(&controller) {
    QCoreApplication::instance()->installEventFilter(this);
}

DashboardTabKeyFilter::~DashboardTabKeyFilter() {
    if (QCoreApplication* application = QCoreApplication::instance()) application->removeEventFilter(this);
}

bool DashboardTabKeyFilter::eventFilter(QObject* watched, QEvent* event) {
    const bool isPress = event->type() == QEvent::KeyPress;
    if (!controller_ || (!isPress && event->type() != QEvent::KeyRelease)) return false;
    const auto* key = static_cast<QKeyEvent*>(event);
    return controller_->handleTabKey(windowOf(watched), key->key(), static_cast<int>(key->modifiers()),
                                     isPress, key->isAutoRepeat());
}

}  // namespace kestrum::ui

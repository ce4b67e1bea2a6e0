#include "app/MenuBarPanelWindow.h"

#include "app/ShellScreens.h"

#include <QQmlEngine>

namespace kestrum {

namespace {
const QUrl kMenuBarViewUrl(QStringLiteral("qrc:/qt/qml/Kestrum/Shell/MenuBarView.qml"));
}  // namespace

MenuBarPanelWindow::MenuBarPanelWindow(QQmlEngine& engine, MenuBarModel& model, Kind kind, QObject* parent)
    : QObject(parent), view_(std::make_unique<QQuickView>(&engine, nullptr)), kind_(kind) {
    view_->setObjectName(QStringLiteral("menubar"));
    view_->setTitle(model.title());
    view_->setResizeMode(QQuickView::SizeViewToRootObject);
    if (kind_ == Kind::trayPanel) {
        view_->setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
        // A drop-down: gone when the user turns to anything else.
        connect(view_.get(), &QWindow::activeChanged, this, [this] {
            if (!view_->isActive() && view_->isVisible()) view_->hide();
        });
    }
    view_->setInitialProperties({{QStringLiteral("model"), QVariant::fromValue(&model)}});
    view_->setSource(kMenuBarViewUrl);
}

MenuBarPanelWindow::~MenuBarPanelWindow() = default;

QString MenuBarPanelWindow::errors() const {
    QStringList lines;
    for (const QQmlError& error : view_->errors()) lines << error.toString();
    return lines.join(QLatin1Char('\n'));
}

void MenuBarPanelWindow::toggleAt(QPoint pointer) {
    if (view_->isVisible()) {
        view_->hide();
        return;
    }
    if (const std::optional<ScreenFrames> screen = screenFramesAt(pointer)) {
        const QPointF origin = menuBarPanelOrigin(pointer, QSizeF(view_->size()), *screen);
        view_->setPosition(origin.toPoint());
    }
    view_->show();
    view_->raise();
    view_->requestActivate();
}

void MenuBarPanelWindow::showWindow() {
    if (!hasBeenPlaced_) {
        hasBeenPlaced_ = true;
        if (const std::optional<ScreenFrames> screen = screenFramesAt({})) {
            if (const auto origin = centredWindowOrigin(QSizeF(view_->size()), screen)) {
                view_->setPosition(origin->toPoint());
            }
        }
    }
    view_->show();
    view_->raise();
    view_->requestActivate();
}

}  // namespace kestrum

#include "app/SettingsWindow.h"

#include "app/ShellScreens.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QScreen>

namespace kestrum {

namespace {
const QUrl kSettingsViewUrl(QStringLiteral("qrc:/qt/qml/Kestrum/Shell/SettingsView.qml"));
}  // namespace

SettingsWindow::SettingsWindow(QQmlEngine& engine, SettingsModel& model, QObject* parent)
    : QObject(parent), view_(std::make_unique<QQuickView>(&engine, nullptr)) {
    view_->setObjectName(QStringLiteral("settings"));
    view_->setTitle(QStringLiteral("Kestrum Settings"));
    view_->setResizeMode(QQuickView::SizeRootObjectToView);
    view_->setInitialProperties({{QStringLiteral("model"), QVariant::fromValue(&model)}});
    view_->setSource(kSettingsViewUrl);
    connect(view_.get(), &QWindow::visibleChanged, &model, [&model](bool visible) {
        if (visible) {
            model.opened();
        } else {
            model.closed();
        }
    });
}

SettingsWindow::~SettingsWindow() = default;

QString SettingsWindow::errors() const {
    QStringList lines;
    for (const QQmlError& error : view_->errors()) lines << error.toString();
    return lines.join(QLatin1Char('\n'));
}

void SettingsWindow::fitToScreen() {
    const std::optional<ScreenFrames> screen =
        screenFrames(view_->screen() ? view_->screen() : QGuiApplication::primaryScreen());
    const QSize size = settingsWindowSize(screen).toSize();
    view_->setMaximumHeight(size.height());
    view_->resize(size);
    if (!hasBeenPlaced_) {
        hasBeenPlaced_ = true;
        if (const auto origin = centredWindowOrigin(QSizeF(size), screen))
            view_->setPosition(origin->toPoint());
    }
}

void SettingsWindow::show() {
    if (!view_->isVisible()) fitToScreen();
    view_->show();
    view_->raise();
    view_->requestActivate();
}

}  // namespace kestrum

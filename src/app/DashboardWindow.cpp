#include "app/DashboardWindow.h"

#include "core/notifications/NotificationCenter.h"
#include "core/recording/RecordingFolderStore.h"
#include "core/settings/UserDefaults.h"
#include "ui/KestrumUi.h"
#include "ui/dashboard/DashboardTabKeyFilter.h"
#include "ui/dashboard/DashboardThumbnailProvider.h"

#include <QDebug>
#include <QGuiApplication>
#include <QQmlError>
#include <QStyleHints>

namespace kestrum {

namespace {

const QUrl kViewUrl(QStringLiteral("qrc:/qt/qml/Kestrum/Dashboard/DashboardView.qml"));

}  // namespace

DashboardWindow::DashboardWindow(RecordingFolderStore& folders, QObject* parent)
    : QObject(parent), engine_(std::make_unique<QQmlEngine>()) {
    ui::registerQmlModules(*engine_);
    thumbnails_ = new ui::DashboardThumbnailProvider();
    engine_->addImageProvider(QString::fromLatin1(ui::DashboardThumbnailProvider::kProviderID), thumbnails_);

    controller_ = std::make_unique<DashboardController>(
        DashboardController::Services{UserDefaults::standard(), clock_, players_, fileActions_,
                                      NotificationCenter::shared()},
        folders.folderPath());
    controller_->followFolderStore(folders);
    tabKeyFilter_ = std::make_unique<ui::DashboardTabKeyFilter>(*controller_);
    thumbnails_->follow(*controller_);
    controller_->surface()->setDoubleClickIntervalMs(
        QGuiApplication::styleHints()->mouseDoubleClickInterval());
    connect(controller_->surface(), &VideoPlayerSurfaceModel::doubleClicked, this,
            &DashboardWindow::toggleFullScreen);

    view_ = std::make_unique<QQuickView>(engine_.get(), nullptr);
    view_->setTitle(QStringLiteral("Kestrum"));
    view_->setResizeMode(QQuickView::SizeRootObjectToView);
    view_->setMinimumSize(
        QSize(static_cast<int>(controller_->minimumWidth()), static_cast<int>(controller_->minimumHeight())));
    view_->resize(1280, 800);
    view_->setInitialProperties({{QStringLiteral("controller"), QVariant::fromValue(controller_.get())}});
    view_->setSource(kViewUrl);
    connect(view_.get(), &QWindow::visibleChanged, this, &DashboardWindow::visibilityChanged);
}

DashboardWindow::~DashboardWindow() {
    if (isShown_) controller_->disappear();
    view_.reset();
    tabKeyFilter_.reset();
}

bool DashboardWindow::show() {
    if (view_->status() != QQuickView::Ready) {
        for (const QQmlError& error : view_->errors()) qWarning().noquote() << error.toString();
        return false;
    }
    view_->show();
    view_->raise();
    view_->requestActivate();
    return true;
}

void DashboardWindow::visibilityChanged(bool visible) {
    if (visible == isShown_) return;
    isShown_ = visible;
    if (visible) {
        controller_->attachTabKeyWindow(view_.get());
        controller_->appear();
    } else {
        controller_->detachTabKeyWindow();
        controller_->disappear();
    }
}

void DashboardWindow::toggleFullScreen() {
    if (view_->visibility() == QWindow::FullScreen)
        view_->showNormal();
    else
        view_->showFullScreen();
}

}  // namespace kestrum

#include "ui/dashboard/DashboardThumbnailProvider.h"

#include "core/dashboard/DashboardController.h"

#include <QMutexLocker>

namespace kestrum::ui {

namespace {

QImage transparentPixel() {
    QImage pixel(1, 1, QImage::Format_ARGB32_Premultiplied);
    pixel.fill(Qt::transparent);
    return pixel;
}

}  // namespace

DashboardThumbnailProvider::DashboardThumbnailProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

void DashboardThumbnailProvider::follow(const DashboardController& controller) {
    connect(&controller, &DashboardController::thumbnailPublished, this,
            &DashboardThumbnailProvider::setThumbnail, Qt::DirectConnection);
}

void DashboardThumbnailProvider::setThumbnail(const QString& id, const QImage& thumbnail) {
    const QMutexLocker locker(&lock_);
    const bool isThumbnail = !id.isEmpty() && !thumbnail.isNull();
    id_ = isThumbnail ? id : QString();
    thumbnail_ = isThumbnail ? thumbnail : QImage();
}

QImage DashboardThumbnailProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    QImage picture;
    {
        const QMutexLocker locker(&lock_);
        if (!id_.isEmpty() && id == id_) picture = thumbnail_;
    }
    if (picture.isNull())
        picture = transparentPixel();
    else if (requestedSize.isValid())
        picture = picture.scaled(requestedSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    if (size) *size = picture.size();
    return picture;
}

}  // namespace kestrum::ui

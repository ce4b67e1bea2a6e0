#include "ui/dashboard/DashboardThumbnailProvider.h"

#include <QMutexLocker>

namespace kestrum::ui {

DashboardThumbnailProvider::DashboardThumbnailProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

void DashboardThumbnailProvider::setThumbnail(const QImage& thumbnail) {
    const QMutexLocker locker(&lock_);
    thumbnail_ = thumbnail;
}

QImage DashboardThumbnailProvider::requestImage(const QString& /*id*/, QSize* size,
                                                const QSize& requestedSize) {
    QImage picture;
    {
        const QMutexLocker locker(&lock_);
        picture = thumbnail_;
    }
    if (size) *size = picture.size();
    if (!picture.isNull() && requestedSize.isValid())
        return picture.scaled(requestedSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return picture;
}

}  // namespace kestrum::ui

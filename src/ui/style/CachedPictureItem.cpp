#include "ui/style/CachedPictureItem.h"

#include "ui/style/PictureCache.h"

#include <QPainter>
#include <QQuickWindow>

#include <cmath>

namespace kestrum::ui {

CachedPictureItem::CachedPictureItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    // Pictures repaint when their size changes: a stretched old texture would blur in between.
    connect(this, &QQuickItem::widthChanged, this, [this] { update(); });
    connect(this, &QQuickItem::heightChanged, this, [this] { update(); });
}

void CachedPictureItem::paint(QPainter* painter) {
    const double ratio = window() ? window()->effectiveDevicePixelRatio() : 1.0;
    const QSize pixelSize(static_cast<int>(std::ceil(width() * ratio)),
                          static_cast<int>(std::ceil(height() * ratio)));
    if (pixelSize.isEmpty()) return;
    const QString key = pictureKey(pixelSize);
    if (key.isEmpty()) return;
    const QImage picture = PictureCache::shared().picture(key, [&] { return drawPicture(pixelSize); });
    if (picture.isNull()) return;
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawImage(QRectF(0, 0, width(), height()), picture);
}

}  // namespace kestrum::ui

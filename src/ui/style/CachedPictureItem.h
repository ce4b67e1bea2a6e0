#pragma once

#include <QImage>
#include <QQuickPaintedItem>
#include <QSize>
#include <QString>
#include <QtQmlIntegration>

namespace kestrum::ui {

// An item that shows one drawn picture, made at the item's size in device pixels (so it is crisp at any
// scale) and kept in the shared PictureCache. Subclasses say what the picture is.
//
// Threads: properties on the main thread; `paint` runs on the scene graph's render thread while the main
// thread waits, so subclasses give it the values it needs through `pictureKey` and `drawPicture`, which
// read only what the main thread set before the frame.
class CachedPictureItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_ANONYMOUS

  public:
    explicit CachedPictureItem(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

  protected:
    // The cache key of the picture at a pixel size; empty when there is nothing to show.
    virtual QString pictureKey(QSize pixelSize) const = 0;
    virtual QImage drawPicture(QSize pixelSize) const = 0;
};

}  // namespace kestrum::ui

#pragma once

#include "core/assets/DataDragonImageLoader.h"

#include <QQuickPaintedItem>
#include <QtQmlIntegration>

#include <memory>

namespace kestrum::ui {

// `DataDragonPicture`: one piece of game art (a champion portrait, an item or a summoner spell icon)
// from the asset store, stretched to the item's frame. It draws nothing until the image has arrived;
// `DataDragonImage` lays its placeholder under it by `hasImage`.
//
// The load belongs to the item: a new kind, identifier or version starts over (the loader's task
// identity), and the item's end drops whatever is still on its way.
//
// Threads: main thread, but for painting, which reads the image the main thread stored.
class DataDragonPictureItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(DataDragonPicture)
    Q_PROPERTY(Kind kind READ kind WRITE setKind NOTIFY requestChanged)
    Q_PROPERTY(QString identifier READ identifier WRITE setIdentifier NOTIFY requestChanged)
    // Empty: the store's current version.
    Q_PROPERTY(QString version READ version WRITE setVersion NOTIFY requestChanged)
    Q_PROPERTY(bool hasImage READ hasImage NOTIFY hasImageChanged)

  public:
    // In the store's order of kinds.
    enum class Kind { Champion, Item, Spell };
    Q_ENUM(Kind)

    explicit DataDragonPictureItem(QQuickItem* parent = nullptr);
    ~DataDragonPictureItem() override;

    Kind kind() const { return kind_; }
    void setKind(Kind kind);
    QString identifier() const { return identifier_; }
    void setIdentifier(const QString& identifier);
    QString version() const { return version_; }
    void setVersion(const QString& version);
    bool hasImage() const { return image_.has_value(); }

    void paint(QPainter* painter) override;

  signals:
    void requestChanged();
    void hasImageChanged();

  protected:
    void componentComplete() override;

  private:
    void showRequest();
    void takeImage();

    Kind kind_ = Kind::Champion;  // main thread, as the three below
    QString identifier_;
    QString version_;
    std::optional<QImage> image_;  // written on the main thread; read while painting
    std::unique_ptr<DataDragonImageLoader> loader_;
    QString shownIdentity_;
};

}  // namespace kestrum::ui

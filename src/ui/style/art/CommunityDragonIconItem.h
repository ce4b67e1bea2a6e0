#pragma once

#include "ui/style/CachedPictureItem.h"

#include <QtQmlIntegration>

namespace kestrum::ui {

// `CommunityDragonIcon`: one piece of the art the system names ("baron", "dragon_ocean", "role_mid",
// "map_summoners_rift"), drawn at the item's size. A name without art draws nothing and reads `known`
// false, so that a view can show its symbol instead.
// The base is named in full: the QML type registrar matches a base class by its written name.
class CommunityDragonIconItem : public kestrum::ui::CachedPictureItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(CommunityDragonIcon)
    Q_PROPERTY(QString artName READ artName WRITE setArtName NOTIFY artNameChanged)
    Q_PROPERTY(bool known READ isKnown NOTIFY artNameChanged)

  public:
    explicit CommunityDragonIconItem(QQuickItem* parent = nullptr);

    QString artName() const { return artName_; }
    void setArtName(const QString& artName);
    bool isKnown() const;

  signals:
    void artNameChanged();

  protected:
    QString pictureKey(QSize pixelSize) const override;
    QImage drawPicture(QSize pixelSize) const override;

  private:
    QString artName_;  // main thread
};

}  // namespace kestrum::ui

#include "ui/style/art/CommunityDragonIconItem.h"

#include "ui/style/KestrumStyle.h"
#include "ui/style/art/CommunityDragonArt.h"

namespace kestrum::ui {

CommunityDragonIconItem::CommunityDragonIconItem(QQuickItem* parent) : CachedPictureItem(parent) {
    setImplicitSize(KestrumStyle::iconLarge(), KestrumStyle::iconLarge());
}

void CommunityDragonIconItem::setArtName(const QString& artName) {
    if (artName_ == artName) return;
    artName_ = artName;
    emit artNameChanged();
    update();
}

bool CommunityDragonIconItem::isKnown() const {
    return communityDragonArtPath(artName_).has_value();
}

QString CommunityDragonIconItem::pictureKey(QSize pixelSize) const {
    if (artName_.isEmpty()) return {};
    return QStringLiteral("art|%1|%2x%3").arg(artName_).arg(pixelSize.width()).arg(pixelSize.height());
}

QImage CommunityDragonIconItem::drawPicture(QSize pixelSize) const {
    return renderCommunityDragonArt(artName_, pixelSize);
}

}  // namespace kestrum::ui

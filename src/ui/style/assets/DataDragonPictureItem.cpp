#include "ui/style/assets/DataDragonPictureItem.h"

#include "ui/style/assets/DataDragonAssets.h"

#include <QPainter>

namespace kestrum::ui {

DataDragonPictureItem::DataDragonPictureItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
}

DataDragonPictureItem::~DataDragonPictureItem() = default;

void DataDragonPictureItem::setKind(Kind kind) {
    if (kind_ == kind) return;
    kind_ = kind;
    emit requestChanged();
    showRequest();
}

void DataDragonPictureItem::setIdentifier(const QString& identifier) {
    if (identifier_ == identifier) return;
    identifier_ = identifier;
    emit requestChanged();
    showRequest();
}

void DataDragonPictureItem::setVersion(const QString& version) {
    if (version_ == version) return;
    version_ = version;
    emit requestChanged();
    showRequest();
}

void DataDragonPictureItem::componentComplete() {
    QQuickPaintedItem::componentComplete();
    showRequest();
}

void DataDragonPictureItem::showRequest() {
    // Bindings set the properties one by one while the item is made: only the complete request loads.
    if (!isComponentComplete()) return;
    DataDragonAssets& assets = DataDragonAssets::instance();
    if (!loader_) {
        loader_ = std::make_unique<DataDragonImageLoader>(assets.store());
        loader_->setImageChangedHandler([this] { takeImage(); });
    }
    const DataDragonImageLoader::Request request{
        static_cast<DataDragonImageLoader::AssetKind>(kind_), identifier_,
        version_.isEmpty() ? std::nullopt : std::optional<QString>(version_)};
    const QString identity = DataDragonImageLoader::taskIdentity(request);
    loader_->show(request);
    // The same identity again starts nothing new.
    if (identity == shownIdentity_) return;
    shownIdentity_ = identity;
    if (const auto load = loader_->currentLoad()) assets.track(*load);
}

void DataDragonPictureItem::takeImage() {
    const bool had = image_.has_value();
    image_ = loader_->image();
    if (had != image_.has_value()) emit hasImageChanged();
    update();
}

void DataDragonPictureItem::paint(QPainter* painter) {
    if (!image_) return;
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawImage(QRectF(0, 0, width(), height()), *image_);
}

}  // namespace kestrum::ui

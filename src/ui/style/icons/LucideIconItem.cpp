#include "ui/style/icons/LucideIconItem.h"

#include "ui/style/KestrumStyle.h"
#include "ui/style/icons/LucideIconRenderer.h"

namespace kestrum::ui {

LucideIconItem::LucideIconItem(QQuickItem* parent) : CachedPictureItem(parent) {
    setImplicitSize(KestrumStyle::iconMedium(), KestrumStyle::iconMedium());
    connect(&KestrumStyle::instance(), &KestrumStyle::appearanceChanged, this, [this] {
        if (color_.isValid()) return;
        emit colorChanged();
        update();
    });
}

void LucideIconItem::setSymbolName(const QString& symbolName) {
    if (symbolName_ == symbolName) return;
    symbolName_ = symbolName;
    emit symbolNameChanged();
    update();
}

QColor LucideIconItem::color() const {
    return color_.isValid() ? color_ : KestrumStyle::instance().textPrimary();
}

void LucideIconItem::setColor(const QColor& color) {
    if (color_ == color) return;
    color_ = color;
    emit colorChanged();
    update();
}

void LucideIconItem::resetColor() {
    setColor(QColor());
}

bool LucideIconItem::isKnown() const {
    return lucideSymbol(symbolName_).has_value();
}

QString LucideIconItem::pictureKey(QSize pixelSize) const {
    if (symbolName_.isEmpty()) return {};
    return QStringLiteral("lucide|%1|%2|%3x%4")
        .arg(symbolName_, color().name(QColor::HexArgb))
        .arg(pixelSize.width())
        .arg(pixelSize.height());
}

QImage LucideIconItem::drawPicture(QSize pixelSize) const {
    return renderLucideIcon(symbolName_, color(), pixelSize);
}

}  // namespace kestrum::ui

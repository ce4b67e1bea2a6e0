#include "ui/style/KestrumStyle.h"

#include "ui/style/SharedWithQml.h"

#include <QGuiApplication>

namespace kestrum::ui {

KestrumStyle& KestrumStyle::instance() {
    static KestrumStyle* const style = new KestrumStyle();
    return *style;
}

KestrumStyle* KestrumStyle::create(QQmlEngine*, QJSEngine*) {
    return sharedWithQml(instance());
}

void KestrumStyle::setDark(bool dark) {
    if (dark_ == dark) return;
    dark_ = dark;
    emit appearanceChanged();
}

QColor KestrumStyle::namedColor(int namedColor) const {
    if (namedColor < 0 || namedColor > static_cast<int>(NamedColor::secondary))
        return palette().textSecondary;
    return palette().named(static_cast<NamedColor>(namedColor));
}

QFont KestrumStyle::font(int pixelSize, QFont::Weight weight) {
    QFont font = QGuiApplication::font();
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    return font;
}

}  // namespace kestrum::ui

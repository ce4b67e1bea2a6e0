#pragma once

#include "ui/style/icons/LucideSymbolTable.h"

#include <QColor>
#include <QImage>
#include <QSize>
#include <QStringView>

namespace kestrum::ui {

// Draws a symbol name as its Lucide icon in one colour, at an exact pixel size: the stroke weight
// scales with the size as Lucide's does (2 units of 24). A null image for a name without a mapping,
// an icon that is not vendored, or an empty size.
//
// Pure and thread-safe: the scene graph's render thread may call it while painting an item.
QImage renderLucideIcon(QStringView symbolName, const QColor& tint, QSize pixelSize);
QImage renderLucideSymbol(const LucideSymbol& symbol, const QColor& tint, QSize pixelSize);

}  // namespace kestrum::ui

#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace kestrum::ui {

// One Lucide icon taken apart into its drawn shapes, so that a renderer can fill some of them and not
// others. A path is split into its subpaths; circles, rectangles, ellipses and polygons are closed shapes;
// lines and polylines are open. The stroke attributes of the icon's root (width, caps, joins) and its
// view box are kept.
//
// Immutable once parsed; `load` hands out shared glyphs and may be called from any thread.
class LucideGlyph {
  public:
    struct Shape {
        // The element's opening text without its end: "<path d=\"...\"", "<circle cx=\"12\" ...".
        QString element;
        bool closed = false;
        bool straight = true;
    };

    // Absent when the text is not an SVG icon of the expected form (unknown element, malformed path).
    static std::optional<LucideGlyph> parse(const QByteArray& svg);
    // The vendored icon of that Lucide name, parsed once; null when there is none or it does not parse.
    static std::shared_ptr<const LucideGlyph> load(const QString& lucideName);
    // Where the vendored icon of a Lucide name lies among the resources.
    static QString resourcePath(const QString& lucideName);

    const std::vector<Shape>& shapes() const { return shapes_; }
    QString viewBox() const { return viewBox_; }

    // A document of the glyph's shapes that `include` selects, each with the id "s<index>", drawn in
    // black: stroked always, filled where `filled` says so.
    template <class Include, class Filled>
    QByteArray document(Include include, Filled filled) const;

  private:
    QByteArray header() const;

    QString viewBox_ = QStringLiteral("0 0 24 24");
    QString strokeAttributes_;
    std::vector<Shape> shapes_;
};

template <class Include, class Filled>
QByteArray LucideGlyph::document(Include include, Filled filled) const {
    QByteArray text = header();
    for (std::size_t index = 0; index < shapes_.size(); ++index) {
        if (!include(index)) continue;
        text += shapes_[index].element.toUtf8();
        text += " id=\"s" + QByteArray::number(static_cast<qulonglong>(index)) + '"';
        text += filled(index) ? " fill=\"#000000\"/>" : "/>";
    }
    return text + "</svg>";
}

}  // namespace kestrum::ui

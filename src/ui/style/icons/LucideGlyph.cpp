#include "ui/style/icons/LucideGlyph.h"

#include "ui/style/icons/SvgPathData.h"

#include <QFile>
#include <QHash>
#include <QXmlStreamReader>

#include <mutex>

namespace kestrum::ui {

namespace {

// The root's attributes that shape every stroke; colour and fill are the renderer's.
const QStringList kStrokeAttributes{QStringLiteral("stroke-width"), QStringLiteral("stroke-linecap"),
                                    QStringLiteral("stroke-linejoin")};
// Attributes of a shape that the renderer sets itself.
const QStringList kRendererAttributes{QStringLiteral("fill"), QStringLiteral("stroke"),
                                      QStringLiteral("class"), QStringLiteral("id")};

QString escaped(QStringView value) {
    return value.toString().toHtmlEscaped();
}

QString openingText(QStringView tag, const QXmlStreamAttributes& attributes, QStringView skipped = {}) {
    QString text = QLatin1Char('<') + tag.toString();
    for (const QXmlStreamAttribute& attribute : attributes) {
        const QString name = attribute.qualifiedName().toString();
        if (kRendererAttributes.contains(name) || name == skipped) continue;
        text +=
            QLatin1Char(' ') + name + QStringLiteral("=\"") + escaped(attribute.value()) + QLatin1Char('"');
    }
    return text;
}

}  // namespace

std::optional<LucideGlyph> LucideGlyph::parse(const QByteArray& svg) {
    LucideGlyph glyph;
    QXmlStreamReader reader(svg);
    bool sawRoot = false;
    while (!reader.atEnd()) {
        reader.readNext();
        if (!reader.isStartElement()) continue;
        const QStringView tag = reader.name();
        const QXmlStreamAttributes attributes = reader.attributes();
        if (tag == QLatin1String("svg")) {
            sawRoot = true;
            if (attributes.hasAttribute(QStringLiteral("viewBox"))) {
                glyph.viewBox_ = attributes.value(QStringLiteral("viewBox")).toString();
            }
            for (const QString& name : kStrokeAttributes) {
                if (!attributes.hasAttribute(name)) continue;
                glyph.strokeAttributes_ += QLatin1Char(' ') + name + QStringLiteral("=\"") +
                                           escaped(attributes.value(name)) + QLatin1Char('"');
            }
            continue;
        }
        if (tag == QLatin1String("path")) {
            const auto subpaths = splitSvgPathData(attributes.value(QStringLiteral("d")));
            if (!subpaths) return std::nullopt;
            const QString rest = openingText(u"path", attributes, u"d");
            for (const SvgSubpath& subpath : *subpaths) {
                glyph.shapes_.push_back(
                    {QStringLiteral("<path d=\"") + subpath.data + QLatin1Char('"') + rest.mid(5),
                     subpath.closed, subpath.straight});
            }
        } else if (tag == QLatin1String("circle") || tag == QLatin1String("rect") ||
                   tag == QLatin1String("ellipse") || tag == QLatin1String("polygon")) {
            glyph.shapes_.push_back({openingText(tag, attributes), true, tag == QLatin1String("polygon")});
        } else if (tag == QLatin1String("line") || tag == QLatin1String("polyline")) {
            glyph.shapes_.push_back({openingText(tag, attributes), false, true});
        } else {
            return std::nullopt;
        }
        reader.skipCurrentElement();
    }
    if (reader.hasError() || !sawRoot || glyph.shapes_.empty()) return std::nullopt;
    return glyph;
}

QString LucideGlyph::resourcePath(const QString& lucideName) {
    return QStringLiteral(":/icons/lucide/") + lucideName + QStringLiteral(".svg");
}

std::shared_ptr<const LucideGlyph> LucideGlyph::load(const QString& lucideName) {
    static std::mutex mutex;
    static QHash<QString, std::shared_ptr<const LucideGlyph>> glyphs;
    const std::lock_guard lock(mutex);
    if (const auto found = glyphs.constFind(lucideName); found != glyphs.cend()) return *found;
    QFile file(resourcePath(lucideName));
    std::shared_ptr<const LucideGlyph> glyph;
    if (file.open(QIODevice::ReadOnly)) {
        if (auto parsed = parse(file.readAll()))
            glyph = std::make_shared<const LucideGlyph>(std::move(*parsed));
    }
    glyphs.insert(lucideName, glyph);
    return glyph;
}

QByteArray LucideGlyph::header() const {
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"" + viewBox_.toUtf8() +
           "\" fill=\"none\" stroke=\"#000000\"" + strokeAttributes_.toUtf8() + '>';
}

}  // namespace kestrum::ui

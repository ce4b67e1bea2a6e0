#pragma once

#include "GalleryOptions.h"
#include "core/telemetry/RecordingSessionData.h"

#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <QtQmlIntegration>

class QJSEngine;
class QQmlEngine;

#include <optional>

namespace kestrum::gallery {

// What the gallery's pages list: every symbol name with an icon, every art name, the palette of both
// appearances, the type scale, and the game art identifiers (those of the document given, or a built-in
// set), with the lines its header shows. Made once by main, which shows it to QML as the singleton
// `GalleryCatalog` before loading the window; the pages only read it.
class GalleryCatalog : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QStringList symbolNames READ symbolNames CONSTANT)
    Q_PROPERTY(QStringList artNames READ artNames CONSTANT)
    // {name, light, dark} per named colour.
    Q_PROPERTY(QVariantList paletteRows READ paletteRows CONSTANT)
    // {name, font} per text style, largest first.
    Q_PROPERTY(QVariantList typeScale READ typeScale CONSTANT)
    Q_PROPERTY(QStringList champions READ champions CONSTANT)
    Q_PROPERTY(QStringList items READ items CONSTANT)
    Q_PROPERTY(QStringList spells READ spells CONSTANT)
    Q_PROPERTY(QString sourceLine READ sourceLine CONSTANT)
    Q_PROPERTY(QString panelLine READ panelLine CONSTANT)
    Q_PROPERTY(QString artHostLine READ artHostLine CONSTANT)
    Q_PROPERTY(int startPage READ startPage CONSTANT)

  public:
    // Skip steps of the player whose numbered symbols the icons page shows ("gobackward.5").
    static constexpr std::array<int, 2> kSkipSteps{5, 10};

    GalleryCatalog(const GalleryOptions& options, std::optional<RecordingSessionData> document,
                   QObject* parent = nullptr);

    // The catalog that QML sees; main sets it before the first page loads, and it outlives the engine.
    static void setShown(GalleryCatalog& catalog);
    static GalleryCatalog* create(QQmlEngine* qmlEngine, QJSEngine* jsEngine);

    static QStringList allSymbolNames();
    static QStringList allArtNames();

    QStringList symbolNames() const { return allSymbolNames(); }
    QStringList artNames() const { return allArtNames(); }
    QVariantList paletteRows() const;
    QVariantList typeScale() const;
    QStringList champions() const { return champions_; }
    QStringList items() const { return items_; }
    QStringList spells() const { return spells_; }
    QString sourceLine() const { return sourceLine_; }
    QString panelLine() const { return panelLine_; }
    QString artHostLine() const { return artHostLine_; }
    int startPage() const { return startPage_; }

  private:
    void takeIdentifiers(const RecordingSessionData& document);

    QStringList champions_;
    QStringList items_;
    QStringList spells_;
    QString sourceLine_;
    QString panelLine_;
    QString artHostLine_;
    int startPage_ = 0;
};

}  // namespace kestrum::gallery

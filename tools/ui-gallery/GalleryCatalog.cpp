#include "GalleryCatalog.h"

#include "core/telemetry/vocabulary/ChampionNames.h"
#include "ui/style/KestrumStyle.h"
#include "ui/style/SharedWithQml.h"
#include "ui/style/StylePalette.h"
#include "ui/style/art/CommunityDragonArt.h"
#include "ui/style/icons/LucideSymbolTable.h"

#include <QFileInfo>
#include <QVariantMap>

namespace kestrum::gallery {

namespace {

// Without a document: a spread of champions, items and spells whose names test the initials and the
// percent-encoding of the art host ("Kai'Sa", "MonkeyKing").
const QStringList kBuiltInChampions{
    QStringLiteral("Ahri"),   QStringLiteral("Garen"),      QStringLiteral("LeeSin"),
    QStringLiteral("Jinx"),   QStringLiteral("Thresh"),     QStringLiteral("MissFortune"),
    QStringLiteral("Kai'Sa"), QStringLiteral("MonkeyKing"), QStringLiteral("Orianna"),
    QStringLiteral("Leona"),  QStringLiteral("KSante"),     QStringLiteral("Viego")};
const QStringList kBuiltInItems{QStringLiteral("1055"), QStringLiteral("3031"), QStringLiteral("3006"),
                                QStringLiteral("6672"), QStringLiteral("3094"), QStringLiteral("3340")};
const QStringList kSpells{QStringLiteral("SummonerFlash"),    QStringLiteral("SummonerDot"),
                          QStringLiteral("SummonerTeleport"), QStringLiteral("SummonerHeal"),
                          QStringLiteral("SummonerSmite"),    QStringLiteral("SummonerBarrier")};
constexpr int kMostItems = 18;

GalleryCatalog* shownCatalog = nullptr;  // main thread

QString panelWords(GalleryOptions::Panel panel) {
    switch (panel) {
        case GalleryOptions::Panel::timeline:
            return QStringLiteral("the timeline");
        case GalleryOptions::Panel::scoreboard:
            return QStringLiteral("the scoreboard");
        case GalleryOptions::Panel::all:
            return QStringLiteral("the timeline and the scoreboard");
    }
    return {};
}

}  // namespace

GalleryCatalog::GalleryCatalog(const GalleryOptions& options, std::optional<RecordingSessionData> document,
                               QObject* parent)
    : QObject(parent), startPage_(static_cast<int>(options.page)) {
    champions_ = kBuiltInChampions;
    items_ = kBuiltInItems;
    spells_ = kSpells;
    if (document) {  // the document given, or the built-in long game
        const QString source = options.documentPath ? QFileInfo(*options.documentPath).fileName()
                                                    : QStringLiteral("The built-in long game");
        sourceLine_ = QStringLiteral("%1: %2 events, %3 scoreboard snapshots")
                          .arg(source)
                          .arg(document->events.size())
                          .arg(document->scoreboard ? document->scoreboard->size() : 0);
        takeIdentifiers(*document);
    } else {
        sourceLine_ = QStringLiteral("Built-in identifiers");
    }
    const QString at = options.atSeconds ? QStringLiteral("%1 s").arg(*options.atSeconds) : QString();
    panelLine_ =
        QStringLiteral("Panels: %1, from %2")
            .arg(panelWords(options.panel), at.isEmpty() ? QStringLiteral("the game's start") : at.trimmed());
    artHostLine_ = options.artHost ? QStringLiteral("Art host: ") + options.artHost->toString()
                                   : QStringLiteral("Art host: the setting's default");
}

void GalleryCatalog::takeIdentifiers(const RecordingSessionData& document) {
    if (!document.scoreboard || document.scoreboard->empty()) return;
    // The last snapshot holds the final builds.
    QStringList champions;
    QStringList items;
    for (const RecordingScoreboardPlayer& player : document.scoreboard->back().players) {
        const QString champion = QString::fromStdString(cleanedChampionName(player));
        if (!champion.isEmpty() && !champions.contains(champion)) champions.append(champion);
        for (const RecordingScoreboardPlayer::Item& item : player.items) {
            const QString identifier = QString::number(item.itemID);
            if (item.itemID > 0 && !items.contains(identifier) && items.size() < kMostItems)
                items.append(identifier);
        }
    }
    if (!champions.isEmpty()) champions_ = champions;
    if (!items.isEmpty()) items_ = items;
}

void GalleryCatalog::setShown(GalleryCatalog& catalog) {
    shownCatalog = &catalog;
}

GalleryCatalog* GalleryCatalog::create(QQmlEngine*, QJSEngine*) {
    Q_ASSERT(shownCatalog);
    return ui::sharedWithQml(*shownCatalog);
}

QStringList GalleryCatalog::allSymbolNames() {
    QStringList names;
    for (const ui::LucideSymbolEntry& entry : ui::lucideSymbolEntries())
        names.append(entry.symbolName.toString());
    for (const ui::LucideNumberedFamily& family : ui::lucideNumberedFamilies()) {
        for (const int step : kSkipSteps) names.append(family.prefix.toString() + QString::number(step));
    }
    return names;
}

QStringList GalleryCatalog::allArtNames() {
    QStringList names;
    for (const ui::CommunityDragonArtEntry& entry : ui::communityDragonArtEntries()) {
        names.append(entry.artName.toString());
    }
    return names;
}

QVariantList GalleryCatalog::paletteRows() const {
    QVariantList rows;
    for (const ui::StylePaletteRow& row : ui::stylePaletteRows()) {
        rows.append(QVariantMap{{QStringLiteral("name"), QString::fromLatin1(row.name)},
                                {QStringLiteral("light"), ui::StylePalette::light().*row.member},
                                {QStringLiteral("dark"), ui::StylePalette::dark().*row.member}});
    }
    return rows;
}

QVariantList GalleryCatalog::typeScale() const {
    const ui::KestrumStyle& style = ui::KestrumStyle::instance();
    const std::array<std::pair<const char*, QFont>, 11> styles{{
        {"largeTitle", style.largeTitle()},
        {"title", style.title()},
        {"title2", style.title2()},
        {"title3", style.title3()},
        {"headline", style.headline()},
        {"body", style.body()},
        {"callout", style.callout()},
        {"calloutSemibold", style.calloutSemibold()},
        {"footnote", style.footnote()},
        {"caption", style.caption()},
        {"captionSemibold", style.captionSemibold()},
    }};
    QVariantList rows;
    for (const auto& [name, font] : styles) {
        rows.append(
            QVariantMap{{QStringLiteral("name"), QString::fromLatin1(name)}, {QStringLiteral("font"), font}});
    }
    return rows;
}

}  // namespace kestrum::gallery

#include "core/dashboard/DashboardContextMenu.h"

#include "core/dashboard/MatchCardPresentation.h"

#include <QVariantMap>

namespace kestrum {

std::vector<DashboardContextMenuEntry> dashboardContextMenu(bool isFavorite) {
    return {
        {MatchCardPresentation::favoriteTitle(isFavorite),
         isFavorite ? QStringLiteral("star.slash") : QStringLiteral("star"),
         DashboardContextAction::toggleFavorite},
        {QStringLiteral("Open Recording"), QStringLiteral("play.rectangle"),
         DashboardContextAction::openRecording},
        {QStringLiteral("Show in Folder"), QStringLiteral("folder"), DashboardContextAction::showInFolder},
        {QStringLiteral("Copy Path"), QStringLiteral("doc.on.doc"), DashboardContextAction::copyPath},
        {QStringLiteral("Move to Trash"), QStringLiteral("trash"), DashboardContextAction::moveToTrash},
    };
}

QVariantList dashboardContextMenuValues(bool isFavorite) {
    QVariantList values;
    for (const DashboardContextMenuEntry& entry : dashboardContextMenu(isFavorite)) {
        values.append(QVariantMap{{QStringLiteral("label"), entry.label},
                                  {QStringLiteral("symbol"), entry.symbol},
                                  {QStringLiteral("action"), static_cast<int>(entry.action)}});
    }
    return values;
}

}  // namespace kestrum

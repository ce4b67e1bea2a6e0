#pragma once

#include <QString>
#include <QVariantList>

#include <cstdint>
#include <vector>

namespace kestrum {

// The actions of a match card's context menu.
enum class DashboardContextAction : std::uint8_t {
    toggleFavorite,
    openRecording,  // the movie in the desktop's default application
    showInFolder,   // the movie selected in the file manager
    copyPath,       // the movie's path as text
    moveToTrash,    // at once, with no undo window
};

struct DashboardContextMenuEntry {
    QString label;
    QString symbol;
    DashboardContextAction action = DashboardContextAction::toggleFavorite;

    friend bool operator==(const DashboardContextMenuEntry&, const DashboardContextMenuEntry&) = default;
};

// The entries, in order: the favourite toggle ("Add to Favorites" with "star", or "Remove from Favorites"
// with "star.slash"), "Open Recording" ("play.rectangle"), "Show in Folder" ("folder"; the file manager
// of a Linux desktop, where other systems say Finder), "Copy Path" ("doc.on.doc") and "Move to Trash"
// ("trash").
std::vector<DashboardContextMenuEntry> dashboardContextMenu(bool isFavorite);

// The same entries for a view: a list of maps with "label", "symbol" and "action" (the action's number).
QVariantList dashboardContextMenuValues(bool isFavorite);

}  // namespace kestrum

#include "core/dashboard/DashboardGuide.h"

#include <QVariantMap>

#include <algorithm>

namespace kestrum::DashboardGuide {

namespace {

using Action = DashboardKeyAction;
using Scope = DashboardKeyScope;

QString titleOf(Scope scope) {
    switch (scope) {
        case Scope::window:
            return QStringLiteral("Anywhere in the Window");
        case Scope::sidebar:
            return QStringLiteral("In the List of Recordings");
        case Scope::playback:
            return QStringLiteral("Playback");
    }
    return {};
}

// The keys of `scope` from the key map, one row per action, its keys joined in the bindings' order.
std::vector<DashboardGuideRow> keyRows(Scope scope) {
    std::vector<DashboardGuideRow> rows;
    std::vector<Action> actions;
    for (const DashboardKeyBinding& binding : dashboardKeyBindings()) {
        if (binding.scope != scope) continue;
        const QString key = QString::fromUtf8(binding.keyLabel);
        const auto known = std::find(actions.begin(), actions.end(), binding.action);
        if (known != actions.end()) {
            rows[static_cast<std::size_t>(known - actions.begin())].keys += QStringLiteral(" or ") + key;
            continue;
        }
        actions.push_back(binding.action);
        rows.push_back({key, effectOf(binding.action)});
    }
    return rows;
}

std::vector<DashboardGuideRow> pointerRows() {
    return {
        {QStringLiteral("Click a recording"), QStringLiteral("Select it and play it")},
        {QStringLiteral("Click the movie"), QStringLiteral("Play or pause")},
        {QStringLiteral("Double-click the movie"), QStringLiteral("Enter or leave full screen")},
        {QStringLiteral("Swipe a recording right"), QStringLiteral("Add to or remove from Favorites")},
        {QStringLiteral("Swipe a recording left"), QStringLiteral("Move to Trash, with 5 seconds to undo")},
        {QStringLiteral("Right-click a recording"), QStringLiteral("More actions")},
        {QStringLiteral("Click or drag on the timeline"), QStringLiteral("Move the playhead there")},
    };
}

}  // namespace

QString effectOf(DashboardKeyAction action) {
    switch (action) {
        case Action::skipBackward:
            return QStringLiteral("Back 5 seconds");
        case Action::skipForward:
            return QStringLiteral("Forward 5 seconds");
        case Action::volumeUp:
            return QStringLiteral("Volume up");
        case Action::volumeDown:
            return QStringLiteral("Volume down");
        case Action::togglePlayback:
            return QStringLiteral("Play or pause");
        case Action::toggleMute:
            return QStringLiteral("Mute or unmute");
        case Action::resetSpeed:
            return QStringLiteral("Normal speed");
        case Action::speedDown:
            return QStringLiteral("Slower");
        case Action::speedUp:
            return QStringLiteral("Faster");
        case Action::toggleScoreboardPin:
            return QStringLiteral("Pin or unpin the scoreboard");
        case Action::refreshLibrary:
            return QStringLiteral("Refresh the library");
        case Action::exitCommand:
            return QStringLiteral("Close the scoreboard or this guide");
        case Action::deleteCommand:
            return QStringLiteral("Back 10 seconds");
        case Action::moveSelectionUp:
            return QStringLiteral("Select the recording above");
        case Action::moveSelectionDown:
            return QStringLiteral("Select the recording below");
        case Action::none:
            break;
    }
    return {};
}

std::vector<DashboardGuideSection> sections() {
    std::vector<DashboardGuideSection> made;
    made.push_back({titleOf(Scope::playback), keyRows(Scope::playback)});
    // Tab is taken by its own monitor before the key map sees any key.
    made.back().rows.push_back(
        {QStringLiteral("Hold Tab"), QStringLiteral("Show the scoreboard while held")});
    made.push_back({titleOf(Scope::sidebar), keyRows(Scope::sidebar)});
    made.push_back({titleOf(Scope::window), keyRows(Scope::window)});
    made.push_back({QStringLiteral("With the Pointer"), pointerRows()});
    return made;
}

QVariantList sectionsForView() {
    QVariantList list;
    for (const DashboardGuideSection& section : sections()) {
        QVariantList rows;
        for (const DashboardGuideRow& row : section.rows) {
            rows.append(
                QVariantMap{{QStringLiteral("keys"), row.keys}, {QStringLiteral("effect"), row.effect}});
        }
        list.append(QVariantMap{{QStringLiteral("title"), section.title}, {QStringLiteral("rows"), rows}});
    }
    return list;
}

}  // namespace kestrum::DashboardGuide

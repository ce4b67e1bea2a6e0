#pragma once

#include <QSize>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <optional>
#include <variant>

namespace kestrum {

// What `kestrum --dashboard` is asked to show, from its command line:
//   kestrum --dashboard [--screenshot FILE] [--size WxH] [--appearance light|dark] [--art-host URL]
//                       [--select ROW] [--at SECONDS] [--pin-scoreboard] [--pending ROW] [--hover ROW]
//                       [--open-filters] [--context-menu ROW] [--speed-menu] [--guide]
// Without --dashboard the program runs as the recorder alone. The options after it set the window up
// the way a person would (a click on a card, O, a swipe, the pointer over a card, the filters' button, a
// right click on a card, the speed button, the guide's button),
// so that a screenshot of any state can be taken again.
struct DashboardLaunchOptions {
    bool opensDashboard = false;
    std::optional<QString> screenshotPath;
    // Absent: the window takes the shell's size for the screen (16:9 at 0.9 of it, centred).
    std::optional<QSize> size;
    // Absent: the appearance the program follows otherwise.
    std::optional<bool> dark;
    // The art host (the game simulator's stand-in); absent: the setting as it stands.
    std::optional<QUrl> artHost;
    std::optional<int> selectRow;
    std::optional<double> atSeconds;
    bool pinsScoreboard = false;
    std::optional<int> pendingRow;
    std::optional<int> hoverRow;
    bool opensFilters = false;
    std::optional<int> contextMenuRow;
    bool opensSpeedMenu = false;
    bool opensGuide = false;

    // The options of `arguments` (the program's name first; unknown arguments are the recorder's and are
    // left alone), or the text of the first mistake.
    static std::variant<DashboardLaunchOptions, QString> parse(const QStringList& arguments);
};

}  // namespace kestrum

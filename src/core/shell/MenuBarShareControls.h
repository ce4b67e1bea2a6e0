#pragma once

#include "core/share/LeagueShareStatus.h"

#include <QString>

namespace kestrum {

// What the tray panel's League Share controls stand on.
struct MenuBarShareState {
    bool hasCoordinator = false;  // false in a build without League Share
    bool hasScreenAccess = false;
    bool isRunning = false;
    bool isShareWindowVisible = false;
    LeagueShareStatus status;
};

// The panel's League Share controls. A share "session" is open while the share runs or its window is
// visible: then the main command stops both, and a second command pauses (stops the share, keeps the
// window, which then says "Sharing paused") or resumes.
struct MenuBarShareControls {
    bool isCommandEnabled = false;
    QString commandTitle;  // "Start Kestrum Share" or "Stop Kestrum Share"
    QString commandHelp;   // the start's help; empty for the stop
    bool showsPause = false;
    QString pauseTitle;   // "Pause Kestrum Share" or "Resume Kestrum Share"
    QString pauseSymbol;  // "pause.fill" or "play.fill"
    bool showsStatus = false;
    QString statusTitle;
    QString statusSymbol;
    QString note;  // why the controls cannot start a share; empty when they can

    friend bool operator==(const MenuBarShareControls&, const MenuBarShareControls&) = default;
};

MenuBarShareControls menuBarShareControls(const MenuBarShareState& state);

}  // namespace kestrum

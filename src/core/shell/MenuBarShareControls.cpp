#include "core/shell/MenuBarShareControls.h"

namespace kestrum {

namespace {

QString shareNote(const MenuBarShareState& state) {
    if (!state.hasScreenAccess)
        return QStringLiteral("Screen Recording permission is required for Kestrum Share");
    if (!state.hasCoordinator) return QStringLiteral("Kestrum Share is not part of this version yet.");
    return {};
}

}  // namespace

MenuBarShareControls menuBarShareControls(const MenuBarShareState& state) {
    MenuBarShareControls controls;
    controls.note = shareNote(state);
    const bool isSessionOpen = state.hasCoordinator && (state.isRunning || state.isShareWindowVisible);
    // A session stays closable whatever the permission says; a new one needs the permission.
    controls.isCommandEnabled = isSessionOpen || (state.hasCoordinator && state.hasScreenAccess);
    if (isSessionOpen) {
        controls.commandTitle = QStringLiteral("Stop Kestrum Share");
        controls.showsPause = true;
        controls.pauseTitle =
            state.isRunning ? QStringLiteral("Pause Kestrum Share") : QStringLiteral("Resume Kestrum Share");
        controls.pauseSymbol = state.isRunning ? QStringLiteral("pause.fill") : QStringLiteral("play.fill");
        controls.showsStatus = true;
        controls.statusTitle = state.status.title();
        controls.statusSymbol = state.status.symbol();
    } else {
        controls.commandTitle = QStringLiteral("Start Kestrum Share");
        controls.commandHelp = QStringLiteral("Open a League-only window for Discord or OBS");
    }
    return controls;
}

}  // namespace kestrum

// The key handling of DashboardController: the window's key map and the Tab key's monitor.
#include "core/dashboard/DashboardController.h"

namespace kestrum {

bool DashboardController::handleKey(int key, int modifiers, const QString& text, bool isAutoRepeat,
                                    bool isPress, bool fromSidebar) {
    return handleKey({key, Qt::KeyboardModifiers(modifiers), text, isAutoRepeat, isPress,
                      fromSidebar ? DashboardKeyFocus::sidebar : DashboardKeyFocus::playbackSurface});
}

bool DashboardController::handleKey(const DashboardKeyInput& input) {
    const DashboardKeyDecision decision = decideDashboardKey(input, playback_->hasPlayer());
    if (decision.handled) perform(decision.action);
    return decision.handled;
}

void DashboardController::perform(DashboardKeyAction action) {
    using Action = DashboardKeyAction;
    switch (action) {
        case Action::skipBackward:
            return playback_->skip(-5);
        case Action::skipForward:
            return playback_->skip(5);
        case Action::volumeUp:
            return playback_->stepVolume(DashboardPlayback::kVolumeStep);
        case Action::volumeDown:
            return playback_->stepVolume(-DashboardPlayback::kVolumeStep);
        case Action::togglePlayback:
            return playback_->togglePlayback();
        case Action::toggleMute:
            return playback_->toggleMute();
        case Action::resetSpeed:
            return playback_->resetSpeed();
        case Action::speedDown:
            return playback_->stepSpeed(-1);
        case Action::speedUp:
            return playback_->stepSpeed(1);
        case Action::toggleScoreboardPin:
            return setScoreboardPinned(!isScoreboardPinned_);
        case Action::refreshLibrary:
            return refreshLibrary();
        case Action::exitCommand:
            setGuidePresented(false);
            return setScoreboard(false, false);
        case Action::deleteCommand:
            return sidebar_->deleteCommand();
        case Action::moveSelectionUp:
            return sidebar_->moveUp();
        case Action::moveSelectionDown:
            return sidebar_->moveDown();
        case Action::none:
            return;
    }
}

void DashboardController::attachTabKeyWindow(QObject* window) {
    tabKeyMonitor_.install(reinterpret_cast<DashboardTabKeyMonitor::WindowID>(window));
}

void DashboardController::detachTabKeyWindow() {
    tabKeyMonitor_.remove();
}

bool DashboardController::handleTabKey(QObject* window, int key, int modifiers, bool isPress,
                                       bool isAutoRepeat) {
    return tabKeyMonitor_.handle({key, Qt::KeyboardModifiers(modifiers), isPress, isAutoRepeat,
                                  reinterpret_cast<DashboardTabKeyMonitor::WindowID>(window)});
}

void DashboardController::setTabScoreboardPressed(bool pressed) {
    if (!playback_->hasPlayer()) return;
    // Tab going down closes a pinned scoreboard; otherwise the scoreboard shows while Tab is held.
    if (pressed && isScoreboardPinned_) {
        setScoreboard(false, false, false);
        return;
    }
    setScoreboard(isScoreboardPinned_, pressed, false);
}

}  // namespace kestrum

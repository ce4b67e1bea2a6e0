#include "core/dashboard/DashboardKeyMap.h"

namespace kestrum {

namespace {

constexpr Qt::KeyboardModifiers kCommandModifiers = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;

DashboardKeyDecision handled(DashboardKeyAction action) {
    return {true, action};
}

bool isControlR(const DashboardKeyInput& input) {
    // Exactly Control: the keypad flag says where a key sits, not what was held.
    const Qt::KeyboardModifiers held = input.modifiers & ~Qt::KeypadModifier;
    return input.key == Qt::Key_R && held == Qt::ControlModifier;
}

DashboardKeyAction sidebarAction(const DashboardKeyInput& input) {
    switch (input.key) {
        case Qt::Key_Up:
            return DashboardKeyAction::moveSelectionUp;
        case Qt::Key_Down:
            return DashboardKeyAction::moveSelectionDown;
        case Qt::Key_Delete:
        case Qt::Key_Backspace:
            return DashboardKeyAction::deleteCommand;
        default:
            return DashboardKeyAction::none;
    }
}

DashboardKeyAction playbackAction(const DashboardKeyInput& input) {
    switch (input.key) {
        case Qt::Key_Left:
            return DashboardKeyAction::skipBackward;
        case Qt::Key_Right:
            return DashboardKeyAction::skipForward;
        case Qt::Key_Up:
            return DashboardKeyAction::volumeUp;
        case Qt::Key_Down:
            return DashboardKeyAction::volumeDown;
        case Qt::Key_Space:
            return DashboardKeyAction::togglePlayback;
        default:
            break;
    }
    const QString typed = input.text.toLower();
    if (typed == QLatin1String("p")) return DashboardKeyAction::togglePlayback;
    if (typed == QLatin1String("m")) return DashboardKeyAction::toggleMute;
    if (typed == QLatin1String("o")) return DashboardKeyAction::toggleScoreboardPin;
    if (typed == QLatin1String("0")) return DashboardKeyAction::resetSpeed;
    if (typed == QLatin1String("-")) return DashboardKeyAction::speedDown;
    if (typed == QLatin1String("=")) return DashboardKeyAction::speedUp;
    return DashboardKeyAction::none;
}

}  // namespace

DashboardKeyDecision decideDashboardKey(const DashboardKeyInput& input, bool hasPlayer) {
    if (!input.isPress) return {};
    if (isControlR(input)) return handled(DashboardKeyAction::refreshLibrary);
    if (input.modifiers & kCommandModifiers) return {};
    if (input.key == Qt::Key_Escape) return handled(DashboardKeyAction::exitCommand);
    if (input.focus == DashboardKeyFocus::sidebar) {
        if (const DashboardKeyAction action = sidebarAction(input); action != DashboardKeyAction::none) {
            return handled(action);
        }
    }
    const DashboardKeyAction action = playbackAction(input);
    if (action == DashboardKeyAction::none) return {};
    if (action != DashboardKeyAction::toggleScoreboardPin && !hasPlayer) return {};
    return handled(action);
}

}  // namespace kestrum

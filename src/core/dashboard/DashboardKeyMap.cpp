#include "core/dashboard/DashboardKeyMap.h"

#include <array>

namespace kestrum {

namespace {

using Action = DashboardKeyAction;
using Scope = DashboardKeyScope;

constexpr Qt::KeyboardModifiers kCommandModifiers = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;

constexpr std::array kBindings{
    DashboardKeyBinding{Scope::window, Qt::Key_R, 0, true, Action::refreshLibrary, "Control-R"},
    DashboardKeyBinding{Scope::window, Qt::Key_Escape, 0, false, Action::exitCommand, "Escape"},
    DashboardKeyBinding{Scope::sidebar, Qt::Key_Up, 0, false, Action::moveSelectionUp, "↑"},
    DashboardKeyBinding{Scope::sidebar, Qt::Key_Down, 0, false, Action::moveSelectionDown, "↓"},
    DashboardKeyBinding{Scope::sidebar, Qt::Key_Delete, 0, false, Action::deleteCommand, "Delete"},
    DashboardKeyBinding{Scope::sidebar, Qt::Key_Backspace, 0, false, Action::deleteCommand, "Backspace"},
    DashboardKeyBinding{Scope::playback, Qt::Key_Space, 0, false, Action::togglePlayback, "Space"},
    DashboardKeyBinding{Scope::playback, 0, 'p', false, Action::togglePlayback, "P"},
    DashboardKeyBinding{Scope::playback, Qt::Key_Left, 0, false, Action::skipBackward, "←"},
    DashboardKeyBinding{Scope::playback, Qt::Key_Right, 0, false, Action::skipForward, "→"},
    DashboardKeyBinding{Scope::playback, Qt::Key_Up, 0, false, Action::volumeUp, "↑"},
    DashboardKeyBinding{Scope::playback, Qt::Key_Down, 0, false, Action::volumeDown, "↓"},
    DashboardKeyBinding{Scope::playback, 0, 'm', false, Action::toggleMute, "M"},
    DashboardKeyBinding{Scope::playback, 0, '-', false, Action::speedDown, "-"},
    DashboardKeyBinding{Scope::playback, 0, '=', false, Action::speedUp, "="},
    DashboardKeyBinding{Scope::playback, 0, '0', false, Action::resetSpeed, "0"},
    DashboardKeyBinding{Scope::playback, 0, 'o', false, Action::toggleScoreboardPin, "O"},
};

bool matches(const DashboardKeyBinding& binding, const DashboardKeyInput& input) {
    // The keypad flag says where a key sits, not what was held.
    const Qt::KeyboardModifiers held = input.modifiers & ~Qt::KeypadModifier;
    if (binding.withControl != (held == Qt::ControlModifier)) return false;
    if (!binding.withControl && (held & kCommandModifiers)) return false;
    if (binding.key != 0) return input.key == binding.key;
    return input.text.toLower() == QString(QLatin1Char(binding.typed));
}

bool applies(DashboardKeyScope scope, DashboardKeyFocus focus) {
    return scope != Scope::sidebar || focus == DashboardKeyFocus::sidebar;
}

}  // namespace

std::span<const DashboardKeyBinding> dashboardKeyBindings() {
    return kBindings;
}

DashboardKeyDecision decideDashboardKey(const DashboardKeyInput& input, bool hasPlayer) {
    if (!input.isPress) return {};
    // The scopes in turn, so that a sidebar binding wins over a playback one on the same key.
    for (const Scope scope : {Scope::window, Scope::sidebar, Scope::playback}) {
        if (!applies(scope, input.focus)) continue;
        for (const DashboardKeyBinding& binding : kBindings) {
            if (binding.scope != scope || !matches(binding, input)) continue;
            if (scope == Scope::playback && binding.action != Action::toggleScoreboardPin && !hasPlayer)
                return {};
            return {true, binding.action};
        }
    }
    return {};
}

}  // namespace kestrum

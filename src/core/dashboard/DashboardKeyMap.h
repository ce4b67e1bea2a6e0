#pragma once

#include <QString>
#include <Qt>

#include <cstdint>
#include <span>

namespace kestrum {

// Which part of the review window holds the keyboard focus when a key arrives.
enum class DashboardKeyFocus : std::uint8_t {
    // The movie's surface (and the timeline under it): the playback keys.
    playbackSurface,
    // The list of match cards: Up and Down move the selection, Delete is the delete command; every other
    // key goes on to the playback keys, as it does from the surface.
    sidebar,
};

// One key event as the window's key handling receives it, in Qt's terms: `key` is a Qt::Key, `text` the
// characters it types (empty for arrows and the like). On Linux the command key is Super (Qt's Meta).
struct DashboardKeyInput {
    int key = 0;
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
    QString text;
    bool isAutoRepeat = false;
    bool isPress = true;  // false: the key went up
    DashboardKeyFocus focus = DashboardKeyFocus::playbackSurface;
};

// What a key asks the review window to do.
enum class DashboardKeyAction : std::uint8_t {
    none,
    skipBackward,         // skip(-5)
    skipForward,          // skip(5)
    volumeUp,             // volume by +0.05
    volumeDown,           // volume by -0.05
    togglePlayback,       // Space, P
    toggleMute,           // M
    resetSpeed,           // 0
    speedDown,            // -
    speedUp,              // =
    toggleScoreboardPin,  // O
    refreshLibrary,       // Control-R
    exitCommand,          // Escape: the scoreboard and the guide close
    deleteCommand,        // Delete on the sidebar: skip(-10), deleting nothing
    moveSelectionUp,      // Up on the sidebar
    moveSelectionDown,    // Down on the sidebar
};

// `handled` false lets the key travel on to whatever else wants it (the key filter then does not accept
// the event); the action is none then.
struct DashboardKeyDecision {
    bool handled = false;
    DashboardKeyAction action = DashboardKeyAction::none;

    friend bool operator==(const DashboardKeyDecision&, const DashboardKeyDecision&) = default;
};

// Where a binding of the key map applies.
enum class DashboardKeyScope : std::uint8_t {
    window,    // from either focus
    sidebar,   // only while the list of cards has the focus (before the playback keys)
    playback,  // from either focus, once no sidebar binding took the key
};

// One row of the key map: the single source of the keys, read both by the key handling and by the
// guide. A row matches on `key` (a Qt::Key) when it is not 0, else on `typed`, the character the key
// types (lower-cased).
struct DashboardKeyBinding {
    DashboardKeyScope scope;
    int key;
    char typed;
    // Control and nothing else must be held (Control-R); otherwise Control, Alt and Super must not be.
    bool withControl;
    DashboardKeyAction action;
    const char* keyLabel;  // as the guide names the key: "Space", "P", "←"
};

// Every binding, in the order they are tried (and the guide lists them).
std::span<const DashboardKeyBinding> dashboardKeyBindings();

// The review window's key map. Keys act on the way down, auto-repeats included (holding Right keeps
// skipping); releases are never handled. Control-R (Ctrl and nothing else) refreshes the library, and
// Escape closes the scoreboard, from either focus. Any other key held with Ctrl, Alt or Super is left to
// the desktop. A playback key finds no player: ignored, so the key travels on; O is handled with or
// without one. Letters match either case; "0", "-" and "=" match by the character typed, so the keypad's
// digits count too. Tab is not here: DashboardTabKeyMonitor takes it before the focus system does.
DashboardKeyDecision decideDashboardKey(const DashboardKeyInput& input, bool hasPlayer);

}  // namespace kestrum

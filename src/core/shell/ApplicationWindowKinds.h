#pragma once

#include "platform/ports/ApplicationWindows.h"

namespace kestrum {

// The three kinds of window the shell's rules tell apart. Titles compare exactly; "contains" ignores case
// (Unicode case folding, so it does not depend on the user's language).

// The review window: titled "Kestrum Dashboard", or an identifier containing "dashboard".
bool isReviewWindow(const ApplicationWindow& window);
// The settings window: a title or an identifier containing "settings".
bool isSettingsWindow(const ApplicationWindow& window);
// The League Share window: titled "Kestrum Share", or an identifier containing "league-share".
bool isShareWindow(const ApplicationWindow& window);

}  // namespace kestrum

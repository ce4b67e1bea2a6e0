#pragma once

#include <QLatin1String>

namespace kestrum {

// The notification of a saved recording, posted on NotificationCenter::shared() by the save path once
// the movie is in the recordings folder; the review window, the menu bar and the settings observe it to
// refresh. Its user information holds both keys below.
namespace RecordingNotifications {
inline constexpr QLatin1String recordingSaved("com.tidemoss.Kestrum.recordingSaved");
// The final movie's location, a QUrl of a local file.
inline constexpr QLatin1String urlKey("url");
// A bool: whether the movie is a highlight; false for a recording of a whole game.
inline constexpr QLatin1String isHighlightKey("isHighlight");
}  // namespace RecordingNotifications

}  // namespace kestrum

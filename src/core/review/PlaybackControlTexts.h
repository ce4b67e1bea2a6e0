#pragma once

#include <QList>
#include <QString>
#include <QVariant>

#include <array>
#include <vector>

namespace kestrum {

// The texts and symbols of the timeline strip's controls that depend on state.

// The speeds the pop-up offers, in this order; each row is 26 points high.
inline constexpr std::array<double, 9> kPlaybackRates{0.25, 0.5, 0.75, 1, 1.25, 1.5, 2, 4, 8};
inline constexpr double kPlaybackRateRowHeight = 26;

// "%g×": "0.25×", "1×", "8×".
QString playbackRateLabel(double rate);

// The rows of a speed menu, one per entry of kPlaybackRates: the rate, its label, and whether it is
// `selectedRate`.
std::vector<QList<QVariant>> playbackRateRows(double selectedRate);

// The play button: "Pause (Space or P)" with "pause.fill" while playing, "Play (Space or P)" with
// "play.fill" otherwise.
QString playButtonToolTip(bool isPlaying);
QString playButtonSymbolName(bool isPlaying);

// The volume control's symbol: muted or 0 "speaker.slash.fill", below a third "speaker.fill", below two
// thirds "speaker.wave.1.fill", from there "speaker.wave.2.fill".
QString volumeSymbolName(double volume, bool isMuted);

// The mute button's tip: "Unmute" while muted, "Mute" otherwise.
QString muteToolTip(bool isMuted);

inline const QString kPlaybackRateToolTip = QStringLiteral("Playback speed (- / =)");
inline const QString kVolumeLabel = QStringLiteral("Volume");

}  // namespace kestrum

#include "core/review/PlaybackControlTexts.h"

namespace kestrum {

QString playbackRateLabel(double rate) {
    return QString::asprintf("%g", rate) + QStringLiteral("\u00D7");
}

std::vector<QList<QVariant>> playbackRateRows(double selectedRate) {
    std::vector<QList<QVariant>> rows;
    for (const double rate : kPlaybackRates)
        rows.push_back({rate, playbackRateLabel(rate), rate == selectedRate});
    return rows;
}

QString playButtonToolTip(bool isPlaying) {
    return isPlaying ? QStringLiteral("Pause (Space or P)") : QStringLiteral("Play (Space or P)");
}

QString playButtonSymbolName(bool isPlaying) {
    return isPlaying ? QStringLiteral("pause.fill") : QStringLiteral("play.fill");
}

QString volumeSymbolName(double volume, bool isMuted) {
    if (isMuted || volume <= 0) return QStringLiteral("speaker.slash.fill");
    if (volume < 1.0 / 3.0) return QStringLiteral("speaker.fill");
    if (volume < 2.0 / 3.0) return QStringLiteral("speaker.wave.1.fill");
    return QStringLiteral("speaker.wave.2.fill");
}

QString muteToolTip(bool isMuted) {
    return isMuted ? QStringLiteral("Unmute") : QStringLiteral("Mute");
}

}  // namespace kestrum

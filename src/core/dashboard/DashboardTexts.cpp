#include "core/dashboard/DashboardTexts.h"

#include "core/review/PlaybackControlTexts.h"

#include <cmath>

namespace kestrum::DashboardTexts {

PlaybackFeedback playing() {
    return {QStringLiteral("Playing"), QStringLiteral("play.fill")};
}

PlaybackFeedback paused() {
    return {QStringLiteral("Paused"), QStringLiteral("pause.fill")};
}

PlaybackFeedback skipped(double seconds) {
    const long long whole = std::llround(std::abs(seconds));
    const QString n = QString::number(whole);
    if (seconds < 0) {
        return {QStringLiteral("Back %1 seconds").arg(n), QStringLiteral("gobackward.") + n};
    }
    return {QStringLiteral("Forward %1 seconds").arg(n), QStringLiteral("goforward.") + n};
}

PlaybackFeedback speed(double rate) {
    return {QStringLiteral("Speed ") + playbackRateLabel(rate), QStringLiteral("speedometer")};
}

PlaybackFeedback volume(double volume) {
    const long long percent = std::llround(volume * 100);
    return {QStringLiteral("Volume %1%").arg(percent),
            percent == 0 ? QStringLiteral("speaker.slash.fill") : QStringLiteral("speaker.wave.2.fill")};
}

PlaybackFeedback muted(bool isMuted) {
    if (isMuted) return {QStringLiteral("Muted"), QStringLiteral("speaker.slash.fill")};
    return {QStringLiteral("Unmuted"), QStringLiteral("speaker.wave.2.fill")};
}

PlaybackFeedback riotIdCopied() {
    return {QStringLiteral("Riot ID copied"), QStringLiteral("checkmark.circle.fill")};
}

QString damagedMessage(bool showsDocument) {
    const QString cannotOpen =
        QStringLiteral("The movie file could not be opened. It may be damaged or incomplete.");
    if (!showsDocument) return cannotOpen;
    return cannotOpen +
           QStringLiteral(" Its events are on the timeline below; hold Tab or press O for the scoreboard.");
}

QString trashFailure(const QStringList& lines) {
    return QStringLiteral("Some recordings could not be moved to Trash:\n\n") + lines.join(QLatin1Char('\n'));
}

QString refreshFailure(const QString& error) {
    return QStringLiteral("The recordings folder could not be refreshed:\n\n") + error;
}

}  // namespace kestrum::DashboardTexts

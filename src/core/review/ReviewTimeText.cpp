#include "core/review/ReviewTimeText.h"

#include <algorithm>
#include <cmath>

namespace kestrum {

namespace {

// Far beyond any recording (over 30,000 years) and far inside a long long: a huge finite input cannot
// overflow the conversion.
constexpr double kLargestSeconds = 1e12;

long long clampedWholeSeconds(double seconds) {
    return static_cast<long long>(std::min(seconds, kLargestSeconds));
}

}  // namespace

QString minutesAndSeconds(long long wholeSeconds, int minuteDigits) {
    return QStringLiteral("%1:%2")
        .arg(wholeSeconds / 60, minuteDigits, 10, QLatin1Char('0'))
        .arg(wholeSeconds % 60, 2, 10, QLatin1Char('0'));
}

QString formatTime(double seconds) {
    if (!std::isfinite(seconds) || seconds < 0) return QStringLiteral("0:00");
    return minutesAndSeconds(clampedWholeSeconds(std::floor(seconds)), 1);
}

QString playheadTimeText(double currentSeconds, double durationSeconds) {
    if (durationSeconds > 0 && currentSeconds > durationSeconds) return formatTime(durationSeconds);
    return formatTime(currentSeconds);
}

QString timerText(double seconds) {
    if (std::isnan(seconds) || seconds <= 0) return QStringLiteral("LIVE");
    return minutesAndSeconds(clampedWholeSeconds(std::ceil(seconds)), 1);
}

QString gameClockText(double gameTimeSeconds) {
    if (!std::isfinite(gameTimeSeconds) || gameTimeSeconds < 0) return QStringLiteral("00:00");
    return minutesAndSeconds(clampedWholeSeconds(std::trunc(gameTimeSeconds)), 2);
}

}  // namespace kestrum

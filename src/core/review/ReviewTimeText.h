#pragma once

#include <QString>

namespace kestrum {

// The time texts of the review panels.

// The timeline's time: the floor of `seconds` as minutes and seconds, "%d:%02d"; minutes do not roll into
// hours ("60:00" at 3600). A negative, infinite or NaN value gives "0:00".
QString formatTime(double seconds);

// The playhead's time as `formatTime` writes it, never past a known length: with `durationSeconds` above
// 0 the time is kept within 0 and that length (a timeline of 0:30 never reads "0:45 / 0:30"); a length of
// 0 or less, not known yet, keeps the time as it is.
QString playheadTimeText(double currentSeconds, double durationSeconds);

// A countdown to an objective: "LIVE" at 0 or below (and for NaN); otherwise the ceiling of `seconds` as
// minutes, ":" and "%02d" seconds, so 61.2 reads "1:02".
QString timerText(double seconds);

// The scoreboard's game clock: the truncated game time as "%02d:%02d" minutes and seconds; a negative or
// non-finite time reads "00:00".
QString gameClockText(double gameTimeSeconds);

// Whole seconds as minutes, ":" and "%02d" seconds, "1:02" for 62; the shared tail of the texts above.
QString minutesAndSeconds(long long wholeSeconds, int minuteDigits);

}  // namespace kestrum

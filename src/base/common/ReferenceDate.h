#pragma once

#include <QDateTime>

#include <chrono>
#include <compare>

namespace kestrum {

// A wall-clock date stored as seconds since 2001-01-01 00:00:00 UTC, as a double. This is the form
// the stored documents use for dates, so keeping the double itself makes a read-write round trip exact.
struct ReferenceDate {
    double secondsSince2001 = 0;

    // Seconds between the Unix epoch and 2001-01-01 00:00:00 UTC.
    static constexpr double kUnixOffsetSeconds = 978307200.0;

    static ReferenceDate now() { return fromSystemTime(std::chrono::system_clock::now()); }
    static ReferenceDate fromSystemTime(std::chrono::system_clock::time_point time) {
        const double unixSeconds = std::chrono::duration<double>(time.time_since_epoch()).count();
        return {unixSeconds - kUnixOffsetSeconds};
    }
    static ReferenceDate fromDateTime(const QDateTime& dateTime) {
        return {static_cast<double>(dateTime.toMSecsSinceEpoch()) / 1000.0 - kUnixOffsetSeconds};
    }
    double unixSeconds() const { return secondsSince2001 + kUnixOffsetSeconds; }
    QDateTime toDateTime() const {
        return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(unixSeconds() * 1000.0));
    }
    // Seconds from `earlier` to this date; negative when this date comes first.
    double secondsSince(ReferenceDate earlier) const { return secondsSince2001 - earlier.secondsSince2001; }

    friend auto operator<=>(const ReferenceDate&, const ReferenceDate&) = default;
};

}  // namespace kestrum

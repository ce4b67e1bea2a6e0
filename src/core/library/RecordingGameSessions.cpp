#include "core/library/RecordingGameSessions.h"

#include <QRegularExpression>

namespace kestrum {

namespace {

// The locale's long date without the weekday and with the month abbreviated: the platform's
// abbreviated date style, which Qt has no name for.
QString abbreviatedDateFormat(const QLocale& locale) {
    static const QRegularExpression weekday(QStringLiteral(R"(,?\s*d{3,4}\s*,?)"));
    QString format = locale.dateFormat(QLocale::LongFormat);
    format.remove(weekday);
    format.replace(QStringLiteral("MMMM"), QStringLiteral("MMM"));
    return format.trimmed();
}

QString dayLabel(const QDate& day, const QDate& today, const QLocale& locale) {
    if (day == today) return QStringLiteral("Today");
    if (day == today.addDays(-1)) return QStringLiteral("Yesterday");
    return locale.toString(day, abbreviatedDateFormat(locale));
}

}  // namespace

std::vector<RecordingGameSession> groupSessions(const std::vector<MatchVideo>& matches) {
    std::vector<RecordingGameSession> sessions;
    for (const auto& match : matches) {
        if (sessions.empty() ||
            sessions.back().matches.back().date.secondsSince(match.date) > kSessionGapSeconds) {
            sessions.push_back(RecordingGameSession{{match}});
        } else {
            sessions.back().matches.push_back(match);
        }
    }
    return sessions;
}

QString sessionHeader(const RecordingGameSession& session, const QDateTime& now, const QLocale& locale) {
    const QDateTime newest = session.matches.front().date.toDateTime().toLocalTime();
    const QString day = dayLabel(newest.date(), now.toLocalTime().date(), locale);
    const QString newestTime = locale.toString(newest.time(), QLocale::ShortFormat);
    if (session.matches.size() == 1) return day + QStringLiteral(" \u00B7 ") + newestTime;
    const QDateTime oldest = session.matches.back().date.toDateTime().toLocalTime();
    return day + QStringLiteral(" \u00B7 ") + locale.toString(oldest.time(), QLocale::ShortFormat) +
           QStringLiteral("\u2013") + newestTime;
}

}  // namespace kestrum

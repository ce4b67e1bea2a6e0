#pragma once

#include "core/library/MatchVideo.h"
#include "core/library/RecordingGameSession.h"

#include <QDateTime>
#include <QLocale>
#include <QString>

#include <vector>

namespace kestrum {

// The longest gap, in seconds, between two neighbouring entries of one session.
inline constexpr double kSessionGapSeconds = 3600;

// `matches` (newest first) cut into sessions wherever a neighbour is more than kSessionGapSeconds older
// than the entry before it. Only the gap between neighbours counts, so a long evening stays one session.
std::vector<RecordingGameSession> groupSessions(const std::vector<MatchVideo>& matches);

// The label of a session in `locale`, with `now` (local time) deciding "Today" and "Yesterday"; other
// days read as abbreviated month, day and year ("Jan 2, 2026" in English). One entry gives "day ·
// time"; more give "day · oldest time–newest time", times as hour and minute ("10:00 AM").
QString sessionHeader(const RecordingGameSession& session, const QDateTime& now, const QLocale& locale);

}  // namespace kestrum

#include "SyntheticRecordingDetail.h"

namespace kestrum::synthetic {

std::shared_ptr<const RecordingDetail> recordingDetailOf(const RecordingSessionData& document,
                                                         double movieDurationSeconds) {
    auto detail = std::make_shared<RecordingDetail>();
    detail->events = document.events;
    detail->scoreboard = document.scoreboard.value_or(std::vector<RecordingScoreboardSnapshot>{});
    detail->matchData = document.matchData;
    detail->duration = movieDurationSeconds;
    return detail;
}

std::shared_ptr<const RecordingDetail> recordingDetailOf(const SyntheticGame& game) {
    return recordingDetailOf(game.document, game.movieDurationSeconds);
}

}  // namespace kestrum::synthetic

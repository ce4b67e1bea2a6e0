#include "core/review/RecordingScoreboardModel.h"

#include "core/review/ReviewTimeText.h"
#include "core/review/ScoreboardColumns.h"
#include "core/review/TeamObjectives.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kestrum {

namespace {

std::vector<ReviewRowListModel::Row> rowsOf(const std::vector<const RecordingScoreboardPlayer*>& column,
                                            std::size_t count, const ScoreboardRowContext& context) {
    std::vector<ReviewRowListModel::Row> rows;
    rows.reserve(count);
    for (std::size_t index = 0; index < count; ++index) {
        rows.push_back(scoreboardRow(index < column.size() ? column[index] : nullptr, context));
    }
    return rows;
}

}  // namespace

RecordingScoreboardModel::RecordingScoreboardModel(FileActions& fileActions, Clock& clock, QObject* parent)
    : QObject(parent),
      fileActions_(fileActions),
      blueTeam_(new ScoreboardTeamHeader(blueTeamTitle(), this)),
      redTeam_(new ScoreboardTeamHeader(redTeamTitle(), this)),
      blueRows_(new ReviewRowListModel(scoreboardRowRoleNames(), this)),
      redRows_(new ReviewRowListModel(scoreboardRowRoleNames(), this)),
      hover_(clock, [this] {
          refreshRows();
          emit hoverChanged();
      }) {
    refresh();
}

RecordingScoreboardModel::~RecordingScoreboardModel() = default;

void RecordingScoreboardModel::setRecording(std::shared_ptr<const RecordingDetail> recording) {
    recording_ = std::move(recording);
    clock_ = recording_ ? ScoreboardClock(recording_->scoreboard) : ScoreboardClock();
    participants_ =
        MatchParticipantIndex(recording_ && recording_->matchData ? &*recording_->matchData : nullptr);
    snapshotIndex_ = clock_.currentSnapshotIndex(currentTime_);
    refreshRows();
    refreshHeader();
}

void RecordingScoreboardModel::setLocalPlayer(const ScoreboardLocalPlayer& localPlayer) {
    localPlayer_ = localPlayer;
    refreshRows();
}

void RecordingScoreboardModel::setCurrentTime(double seconds) {
    if (seconds == currentTime_ || std::isnan(seconds)) return;
    currentTime_ = seconds;
    emit currentTimeChanged();
    refresh();
}

void RecordingScoreboardModel::setShowsObjectives(bool shows) {
    if (shows == showsObjectives_) return;
    showsObjectives_ = shows;
    emit showsObjectivesChanged();
}

void RecordingScoreboardModel::enterRow(const QString& playerID) {
    hover_.enter(playerID);
}

void RecordingScoreboardModel::leaveRow() {
    hover_.leave();
}

void RecordingScoreboardModel::leaveRowOf(const QString& playerID) {
    hover_.leave(playerID);
}

void RecordingScoreboardModel::copyRiotId(const QString& playerID) {
    const RecordingScoreboardSnapshot* snapshot = currentSnapshot();
    if (!snapshot) return;
    const auto player = std::find_if(
        snapshot->players.begin(), snapshot->players.end(),
        [&](const RecordingScoreboardPlayer& row) { return scoreboardPlayerID(row) == playerID; });
    if (player == snapshot->players.end()) return;
    const QString text = riotIdText(*player);
    fileActions_.copyText(text);
    hover_.markCopied(playerID);
    emit riotIdCopied(text);
}

void RecordingScoreboardModel::refresh() {
    const std::optional<std::size_t> index = clock_.currentSnapshotIndex(currentTime_);
    if (index != snapshotIndex_) {
        snapshotIndex_ = index;
        refreshRows();
    }
    refreshHeader();
}

void RecordingScoreboardModel::refreshHeader() {
    static const std::vector<RecordingEvent> noEvents;
    const std::vector<const RecordingEvent*> elapsed =
        elapsedEvents(recording_ ? recording_->events : noEvents, currentTime_);
    blueTeam_->update(blueKillTotal_, teamObjectives(elapsed, RecordingTeam::blue, currentTime_));
    redTeam_->update(redKillTotal_, teamObjectives(elapsed, RecordingTeam::red, currentTime_));

    const double gameTime = clock_.gameClock(currentTime_);
    QString clockText = gameClockText(gameTime);
    ObjectiveTimer nextDragon = nextDragonTimer(elapsed, currentTime_, gameTime);
    ObjectiveTimer nextObjective = nextBigObjectiveTimer(elapsed, currentTime_, gameTime);
    // The seconds change at every frame; what the view shows changes once a second.
    const auto shows = [](const ObjectiveTimer& a, const ObjectiveTimer& b) {
        return a.name == b.name && a.artName == b.artName && a.text == b.text && a.helpText == b.helpText;
    };
    const bool changed =
        clockText != clockText_ || !shows(nextDragon, nextDragon_) || !shows(nextObjective, nextObjective_);
    clockText_ = std::move(clockText);
    nextDragon_ = std::move(nextDragon);
    nextObjective_ = std::move(nextObjective);
    if (changed) emit headerChanged();
}

void RecordingScoreboardModel::refreshRows() {
    const RecordingScoreboardSnapshot* snapshot = currentSnapshot();
    std::vector<const RecordingScoreboardPlayer*> blue;
    std::vector<const RecordingScoreboardPlayer*> red;
    if (snapshot) {
        blue = teamColumn(*snapshot, kBlueTeamWord);
        red = teamColumn(*snapshot, kRedTeamWord);
    }
    blueKillTotal_ = teamKillTotal(blue);
    redKillTotal_ = teamKillTotal(red);
    const std::size_t count = std::max(blue.size(), red.size());
    const ScoreboardRowContext context{participants_, hover_.hoveredPlayerID(), hover_.copiedPlayerID(),
                                       localPlayer_};
    blueRows_->setRows(rowsOf(blue, count, context));
    redRows_->setRows(rowsOf(red, count, context));
    emit rowsChanged();
}

const RecordingScoreboardSnapshot* RecordingScoreboardModel::currentSnapshot() const {
    if (!recording_ || !snapshotIndex_ || *snapshotIndex_ >= recording_->scoreboard.size()) return nullptr;
    return &recording_->scoreboard[*snapshotIndex_];
}

}  // namespace kestrum

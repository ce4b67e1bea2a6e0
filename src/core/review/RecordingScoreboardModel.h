#pragma once

#include "base/async/Clock.h"
#include "core/library/detail/RecordingDetail.h"
#include "core/review/MatchParticipantIndex.h"
#include "core/review/ReviewRowListModel.h"
#include "core/review/ScoreboardClock.h"
#include "core/review/ScoreboardHoverState.h"
#include "core/review/ScoreboardRowValues.h"
#include "core/review/ScoreboardTeamHeader.h"
#include "core/review/ScoreboardTimers.h"
#include "platform/ports/FileActions.h"

#include <QObject>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace kestrum {

// The two scoreboard panels as the views bind them: the header (the game clock, each team's kill total
// and objectives, the timers of the next dragon and the next big objective) and the rows of the ten
// players, blue on the left and red on the right, paired by index. Both are functions of the recording
// and `currentTime`: a seek shows the match as it stood then. The work that depends only on the recording
// (the median clock offset, the index of after-game participants) is done once when it is set; a new
// `currentTime` finds its snapshot by a binary search and rebuilds the rows only when the snapshot (or the
// hover or copy state) changed.
//
// Rows: `blueRows` and `redRows` always have the same count, the longer team's; the shorter is padded
// with rows whose "exists" is false. Roles: see scoreboardRowRoleNames (ScoreboardRowValues.h).
// Team headers: see ScoreboardTeamHeader.
//
// A row is entered and left by `enterRow(playerID)` and `leaveRow()`; the hover shows after 0.12 seconds.
// `leaveRowOf(playerID)` clears only that row's pending or shown hover: the pointer may reach the next
// row before the view tells that it left this one.
// `copyRiotId(playerID)` copies the row's Riot ID through the file actions, emits `riotIdCopied(text)`
// (the review window shows its toast) and marks the row copied for 1.2 seconds.
//
// Threads: the main thread; the delays run on the Clock. The file actions and the clock must outlive it.
class RecordingScoreboardModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(double currentTime READ currentTime WRITE setCurrentTime NOTIFY currentTimeChanged)
    Q_PROPERTY(
        bool showsObjectives READ showsObjectives WRITE setShowsObjectives NOTIFY showsObjectivesChanged)

    Q_PROPERTY(QString clockText READ clockText NOTIFY headerChanged)
    Q_PROPERTY(kestrum::ScoreboardTeamHeader* blueTeam READ blueTeam CONSTANT)
    Q_PROPERTY(kestrum::ScoreboardTeamHeader* redTeam READ redTeam CONSTANT)
    Q_PROPERTY(QString nextDragonName READ nextDragonName NOTIFY headerChanged)
    Q_PROPERTY(QString nextDragonArtName READ nextDragonArtName NOTIFY headerChanged)
    Q_PROPERTY(QString nextDragonText READ nextDragonText NOTIFY headerChanged)
    Q_PROPERTY(QString nextDragonHelp READ nextDragonHelp NOTIFY headerChanged)
    Q_PROPERTY(QString nextObjectiveName READ nextObjectiveName NOTIFY headerChanged)
    Q_PROPERTY(QString nextObjectiveArtName READ nextObjectiveArtName NOTIFY headerChanged)
    Q_PROPERTY(QString nextObjectiveText READ nextObjectiveText NOTIFY headerChanged)
    Q_PROPERTY(QString nextObjectiveHelp READ nextObjectiveHelp NOTIFY headerChanged)
    Q_PROPERTY(double timerArtSize READ timerArtSize CONSTANT)
    Q_PROPERTY(double timerArtSpacing READ timerArtSpacing CONSTANT)

    Q_PROPERTY(bool hasSnapshot READ hasSnapshot NOTIFY rowsChanged)
    Q_PROPERTY(kestrum::ReviewRowListModel* blueRows READ blueRows CONSTANT)
    Q_PROPERTY(kestrum::ReviewRowListModel* redRows READ redRows CONSTANT)
    Q_PROPERTY(QString blueTeamTitle READ blueTeamTitle CONSTANT)
    Q_PROPERTY(QString redTeamTitle READ redTeamTitle CONSTANT)
    Q_PROPERTY(QString kdaTitle READ kdaTitle CONSTANT)
    Q_PROPERTY(QString itemsTitle READ itemsTitle CONSTANT)
    Q_PROPERTY(QString creepScoreTitle READ creepScoreTitle CONSTANT)
    Q_PROPERTY(QString roleTitle READ roleTitle CONSTANT)
    Q_PROPERTY(QString copySymbolName READ copySymbolName CONSTANT)
    Q_PROPERTY(QString hoveredPlayerID READ hoveredPlayerID NOTIFY hoverChanged)
    Q_PROPERTY(QString copiedPlayerID READ copiedPlayerID NOTIFY hoverChanged)

  public:
    RecordingScoreboardModel(FileActions& fileActions, Clock& clock, QObject* parent = nullptr);
    ~RecordingScoreboardModel() override;

    // A new recording (null for none); the panels show it at the current time.
    void setRecording(std::shared_ptr<const RecordingDetail> recording);
    // The local player, to mark their row; from the recording's entry in the library.
    void setLocalPlayer(const ScoreboardLocalPlayer& localPlayer);

    double currentTime() const { return currentTime_; }
    void setCurrentTime(double seconds);
    bool showsObjectives() const { return showsObjectives_; }
    void setShowsObjectives(bool shows);

    // The game time at the current time, in seconds, by the recording's median offset.
    double gameTime() const { return clock_.gameClock(currentTime_); }
    QString clockText() const { return clockText_; }
    ScoreboardTeamHeader* blueTeam() const { return blueTeam_; }
    ScoreboardTeamHeader* redTeam() const { return redTeam_; }
    const ObjectiveTimer& nextDragon() const { return nextDragon_; }
    const ObjectiveTimer& nextObjective() const { return nextObjective_; }
    QString nextDragonName() const { return nextDragon_.name; }
    QString nextDragonArtName() const { return nextDragon_.artName; }
    QString nextDragonText() const { return nextDragon_.text; }
    QString nextDragonHelp() const { return nextDragon_.helpText; }
    QString nextObjectiveName() const { return nextObjective_.name; }
    QString nextObjectiveArtName() const { return nextObjective_.artName; }
    QString nextObjectiveText() const { return nextObjective_.text; }
    QString nextObjectiveHelp() const { return nextObjective_.helpText; }
    double timerArtSize() const { return 24; }
    double timerArtSpacing() const { return 4; }

    bool hasSnapshot() const { return snapshotIndex_.has_value(); }
    // The index of the current snapshot in the recording's list; absent with none.
    const std::optional<std::size_t>& currentSnapshotIndex() const { return snapshotIndex_; }
    ReviewRowListModel* blueRows() const { return blueRows_; }
    ReviewRowListModel* redRows() const { return redRows_; }
    QString blueTeamTitle() const { return QStringLiteral("BLUE TEAM"); }
    QString redTeamTitle() const { return QStringLiteral("RED TEAM"); }
    QString kdaTitle() const { return QStringLiteral("K / D / A"); }
    QString itemsTitle() const { return QStringLiteral("ITEMS"); }
    // The farm column's title, beside the four the scoreboard names.
    QString creepScoreTitle() const { return QStringLiteral("CS"); }
    QString roleTitle() const { return QStringLiteral("Role"); }
    QString copySymbolName() const { return QStringLiteral("doc.on.doc"); }
    QString hoveredPlayerID() const { return hover_.hoveredPlayerID().value_or(QString()); }
    QString copiedPlayerID() const { return hover_.copiedPlayerID().value_or(QString()); }

    Q_INVOKABLE void enterRow(const QString& playerID);
    Q_INVOKABLE void leaveRow();
    Q_INVOKABLE void leaveRowOf(const QString& playerID);
    Q_INVOKABLE void copyRiotId(const QString& playerID);

  signals:
    void currentTimeChanged();
    void showsObjectivesChanged();
    void headerChanged();
    void rowsChanged();
    void hoverChanged();
    void riotIdCopied(const QString& text);

  private:
    void refresh();
    // The header's counts run over the events at every call; the kill totals come from refreshRows.
    void refreshHeader();
    // The rows and the kill totals of the current snapshot.
    void refreshRows();
    const RecordingScoreboardSnapshot* currentSnapshot() const;

    FileActions& fileActions_;
    // All main thread.
    std::shared_ptr<const RecordingDetail> recording_;
    ScoreboardClock clock_;
    MatchParticipantIndex participants_;
    ScoreboardLocalPlayer localPlayer_;
    double currentTime_ = 0;
    bool showsObjectives_ = true;
    std::optional<std::size_t> snapshotIndex_;
    std::int64_t blueKillTotal_ = 0;
    std::int64_t redKillTotal_ = 0;
    QString clockText_ = QStringLiteral("00:00");
    ObjectiveTimer nextDragon_;
    ObjectiveTimer nextObjective_;
    ScoreboardTeamHeader* blueTeam_;  // child
    ScoreboardTeamHeader* redTeam_;   // child
    ReviewRowListModel* blueRows_;    // child
    ReviewRowListModel* redRows_;     // child
    ScoreboardHoverState hover_;      // last: its delays are cancelled before the fields above go
};

}  // namespace kestrum

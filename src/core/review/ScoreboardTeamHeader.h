#pragma once

#include "core/review/ReviewRowListModel.h"
#include "core/review/TeamObjectives.h"

#include <QObject>
#include <QString>

namespace kestrum {

// One team's part of the scoreboard header: its title, its kill total and its objectives.
//
// `badges` holds the objectives that show, in this order: "voidGrubs" (from the first grub), "riftHerald",
// "baronPowerPlay" (while it lasts), "elderDragons" (from the first Elder). Roles: "kind", "artName",
// "text" (the grub or Elder count, the power play's time left, empty for the herald), "helpText".
// `dragonSlots` holds the four slots. Roles: "isFilled", "artName" (empty when empty), "helpText".
//
// Threads: the main thread.
class ScoreboardTeamHeader : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString killsText READ killsText NOTIFY changed)
    Q_PROPERTY(bool hasDragonSoul READ hasDragonSoul NOTIFY changed)
    Q_PROPERTY(kestrum::ReviewRowListModel* badges READ badges CONSTANT)
    Q_PROPERTY(kestrum::ReviewRowListModel* dragonSlots READ dragonSlots CONSTANT)

  public:
    ScoreboardTeamHeader(QString title, QObject* parent = nullptr);

    // Publishes the team's kill total ("%lld") and objectives; reports a change only when there is one.
    void update(long long killTotal, const TeamObjectives& objectives);

    QString title() const { return title_; }
    QString killsText() const { return killsText_; }
    bool hasDragonSoul() const { return hasDragonSoul_; }
    ReviewRowListModel* badges() const { return badges_; }
    ReviewRowListModel* dragonSlots() const { return dragonSlots_; }

  signals:
    void changed();

  private:
    const QString title_;
    QString killsText_ = QStringLiteral("0");  // main thread
    bool hasDragonSoul_ = false;               // main thread
    ReviewRowListModel* badges_;               // child
    ReviewRowListModel* dragonSlots_;          // child
};

}  // namespace kestrum

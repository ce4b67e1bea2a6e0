#include "core/review/ScoreboardTeamHeader.h"

#include <utility>

namespace kestrum {

ScoreboardTeamHeader::ScoreboardTeamHeader(QString title, QObject* parent)
    : QObject(parent),
      title_(std::move(title)),
      badges_(new ReviewRowListModel({"kind", "artName", "text", "helpText"}, this)),
      dragonSlots_(new ReviewRowListModel({"isFilled", "artName", "helpText"}, this)) {
    update(0, TeamObjectives());
}

void ScoreboardTeamHeader::update(long long killTotal, const TeamObjectives& objectives) {
    std::vector<ReviewRowListModel::Row> badges;
    if (objectives.voidGrubCount > 0) {
        badges.push_back({QStringLiteral("voidGrubs"), QStringLiteral("void_grub"),
                          QString::number(objectives.voidGrubCount), objectives.voidGrubHelp});
    }
    if (objectives.hasRiftHerald) {
        badges.push_back({QStringLiteral("riftHerald"), QStringLiteral("rift_herald"), QString(),
                          objectives.riftHeraldHelp});
    }
    if (objectives.baronPowerPlaySeconds) {
        badges.push_back({QStringLiteral("baronPowerPlay"), QStringLiteral("baron"),
                          objectives.baronPowerPlayText, objectives.baronPowerPlayHelp});
    }
    if (objectives.elderDragonCount > 0) {
        badges.push_back({QStringLiteral("elderDragons"), QStringLiteral("dragon_elder"),
                          QString::number(objectives.elderDragonCount), objectives.elderDragonHelp});
    }
    badges_->setRows(std::move(badges));

    std::vector<ReviewRowListModel::Row> slotRows;
    for (const DragonSlot& slot : objectives.dragonSlots)
        slotRows.push_back({slot.isFilled, slot.artName, slot.helpText});
    dragonSlots_->setRows(std::move(slotRows));

    const QString killsText = QString::number(killTotal);
    if (killsText == killsText_ && objectives.hasDragonSoul == hasDragonSoul_) return;
    killsText_ = killsText;
    hasDragonSoul_ = objectives.hasDragonSoul;
    emit changed();
}

}  // namespace kestrum

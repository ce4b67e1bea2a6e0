#include "core/review/TeamObjectives.h"

#include "core/review/ObjectiveEvents.h"
#include "core/review/ReviewTimeText.h"
#include "core/telemetry/vocabulary/DragonKind.h"
#include "core/telemetry/vocabulary/LiveEventNames.h"
#include "core/telemetry/vocabulary/TextCase.h"

#include <cmath>

namespace kestrum {

namespace {

namespace names = liveEventName;

// The counts of the help texts stand where "%lld" stands in them.
QString withCount(const char* format, long long count) {
    return QString::fromUtf8(format).replace(QStringLiteral("%lld"), QString::number(count));
}

void fillDragonSlots(TeamObjectives& objectives, const std::vector<const RecordingEvent*>& dragons) {
    objectives.hasDragonSoul = dragons.size() >= static_cast<std::size_t>(kDragonsForSoul);
    for (std::size_t slot = 0; slot < objectives.dragonSlots.size(); ++slot) {
        DragonSlot& target = objectives.dragonSlots[slot];
        if (slot >= dragons.size()) {
            target.helpText = QStringLiteral("Empty dragon slot");
            continue;
        }
        const std::optional<std::string>& detail = dragons[slot]->detail;
        target.isFilled = true;
        const std::string_view art = dragonAssetName(detail.value_or(""));
        target.artName = QString::fromUtf8(art.data(), static_cast<qsizetype>(art.size()));
        target.helpText = dragonName(detail);
        if (objectives.hasDragonSoul && slot + 1 == objectives.dragonSlots.size()) {
            target.helpText += QStringLiteral(" Soul secured");
        }
    }
}

void fillBaronPowerPlay(TeamObjectives& objectives, const RecordingEvent* lastBaron, double currentTime) {
    if (!lastBaron) return;
    const double remaining = kBaronPowerPlaySeconds - (currentTime - lastBaron->videoTime);
    if (!(remaining > 0) || remaining > kBaronPowerPlaySeconds) return;
    objectives.baronPowerPlaySeconds = remaining;
    objectives.baronPowerPlayText = minutesAndSeconds(static_cast<long long>(std::ceil(remaining)), 1);
    objectives.baronPowerPlayHelp = QStringLiteral("Baron power play time remaining");
}

}  // namespace

QString dragonName(const std::optional<std::string>& detail) {
    if (!detail || detail->empty()) return QStringLiteral("Dragon");
    const QString text = QString::fromStdString(*detail);
    if (containsIgnoringCase(*detail, "dragon")) return text;
    return text + QStringLiteral(" Dragon");
}

TeamObjectives teamObjectives(const std::vector<const RecordingEvent*>& elapsed, RecordingTeam team,
                              double currentTime) {
    TeamObjectives objectives;
    std::vector<const RecordingEvent*> dragons;
    const RecordingEvent* lastBaron = nullptr;
    for (const RecordingEvent* event : elapsed) {
        if (event->team != team) continue;
        if (isVoidGrubKill(*event)) ++objectives.voidGrubCount;
        if (event->name == names::heraldKill) objectives.hasRiftHerald = true;
        if (event->name == names::baronKill) lastBaron = event;
        if (isElderDragonKill(*event)) ++objectives.elderDragonCount;
        if (isElementalDragonKill(*event)) dragons.push_back(event);
    }
    objectives.voidGrubHelp = withCount("%lld of 3 Void Grubs secured", objectives.voidGrubCount);
    if (objectives.hasRiftHerald) objectives.riftHeraldHelp = QStringLiteral("Rift Herald secured");
    if (objectives.elderDragonCount == 1) objectives.elderDragonHelp = QStringLiteral("Elder Dragon secured");
    if (objectives.elderDragonCount > 1) {
        objectives.elderDragonHelp = withCount("%lld Elder Dragons secured", objectives.elderDragonCount);
    }
    fillBaronPowerPlay(objectives, lastBaron, currentTime);
    fillDragonSlots(objectives, dragons);
    return objectives;
}

}  // namespace kestrum

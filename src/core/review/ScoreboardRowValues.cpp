#include "core/review/ScoreboardRowValues.h"

#include "core/library/LibraryPositions.h"
#include "core/review/RankToolTip.h"
#include "core/review/ScoreboardColumns.h"
#include "core/telemetry/vocabulary/ChampionNames.h"
#include "core/telemetry/vocabulary/PlayerDisplayName.h"

#include <QVariantList>

#include <cmath>

namespace kestrum {

namespace {

QVariantList itemIDsBySlot(const RecordingScoreboardPlayer& player) {
    QVariantList ids(kScoreboardItemSlots, QVariant(qint64{0}));
    for (const RecordingScoreboardPlayer::Item& item : player.items) {
        if (item.slot >= 0 && item.slot < kScoreboardItemSlots)
            ids[static_cast<int>(item.slot)] = qint64{item.itemID};
    }
    return ids;
}

QString respawnText(const RecordingScoreboardPlayer& player) {
    if (!player.isDead || !(player.respawnTimer > 0)) return {};
    return QString::number(static_cast<long long>(std::ceil(std::min(player.respawnTimer, 1e6))));
}

QString rankToolTipOf(const RecordingScoreboardPlayer& player, const MatchParticipantIndex& participants) {
    const RecordingMatchData::Participant* participant = participants.find(player);
    if (!participant) return {};
    return rankToolTip(*participant).value_or(QString());
}

}  // namespace

bool ScoreboardLocalPlayer::matches(const RecordingScoreboardPlayer& player) const {
    if (!championIdentifier) return false;
    const std::optional<std::string> wanted = normalizedChampion(*championIdentifier);
    if (!wanted) return false;
    if (normalizedChampion(cleanedChampionName(player)) != wanted &&
        normalizedChampion(player.championName) != wanted) {
        return false;
    }
    if (!position || !player.position) return true;
    const std::optional<std::string> wantedPosition = normalizedPosition(*position);
    return !wantedPosition || normalizedPosition(*player.position) == wantedPosition;
}

QList<QByteArray> scoreboardRowRoleNames() {
    return {"exists",       "playerID",      "championName", "championIdentifier",
            "displayName",  "level",         "isDead",       "respawnText",
            "kills",        "deaths",        "assists",      "kdaText",
            "creepScore",   "roleName",      "itemIDs",      "rankToolTip",
            "riotId",       "riotIdToolTip", "isCopied",     "isHovered",
            "isLocalPlayer"};
}

ReviewRowListModel::Row scoreboardRow(const RecordingScoreboardPlayer* player,
                                      const ScoreboardRowContext& context) {
    if (!player) {
        ReviewRowListModel::Row empty(scoreboardRowRoleNames().size());
        empty[0] = false;
        return empty;
    }
    const QString playerID = scoreboardPlayerID(*player);
    const QString riotId = riotIdText(*player);
    const bool isCopied = context.copiedPlayerID == playerID;
    return {true,
            playerID,
            QString::fromStdString(player->championName),
            QString::fromStdString(cleanedChampionName(*player)),
            QString::fromStdString(playerDisplayName(*player)),
            qint64{player->level},
            player->isDead,
            respawnText(*player),
            qint64{player->scores.kills},
            qint64{player->scores.deaths},
            qint64{player->scores.assists},
            kdaText(player->scores),
            qint64{player->scores.creepScore},
            roleName(player->position),
            itemIDsBySlot(*player),
            rankToolTipOf(*player, context.participants),
            riotId,
            riotIdToolTip(riotId, isCopied),
            isCopied,
            context.hoveredPlayerID == playerID,
            context.localPlayer.matches(*player)};
}

}  // namespace kestrum

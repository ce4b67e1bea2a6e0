#pragma once

#include "core/review/MatchParticipantIndex.h"
#include "core/review/ReviewRowListModel.h"
#include "core/telemetry/RecordingScoreboardPlayer.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>
#include <string>

namespace kestrum {

// The local player of the recording, to mark their row: a champion key and a position, each absent when
// unknown. A row is the local player's when its champion matches (letters and digits, in any case) and,
// when both sides know a position, the positions match too.
struct ScoreboardLocalPlayer {
    std::optional<std::string> championIdentifier;
    std::optional<std::string> position;

    bool matches(const RecordingScoreboardPlayer& player) const;
};

// What a row depends on besides its player.
struct ScoreboardRowContext {
    const MatchParticipantIndex& participants;
    const std::optional<QString>& hoveredPlayerID;
    const std::optional<QString>& copiedPlayerID;
    const ScoreboardLocalPlayer& localPlayer;
};

// The item slots of a row: the game's six and the trinket, numbered 0 to 6.
inline constexpr int kScoreboardItemSlots = 7;

// The roles of a team's rows, in order:
// "exists" (false for the gap of a shorter team; every other value then empty), "playerID",
// "championName", "championIdentifier" (the champion key, for the portrait), "displayName", "level",
// "isDead", "respawnText" (whole seconds, while dead), "kills", "deaths", "assists", "kdaText",
// "creepScore", "roleName", "itemIDs" (seven item ids by slot, 0 where empty), "rankToolTip" (empty without
// after-game data), "riotId", "riotIdToolTip", "isCopied", "isHovered", "isLocalPlayer".
QList<QByteArray> scoreboardRowRoleNames();

// The row of `player`; null: the empty row of a gap.
ReviewRowListModel::Row scoreboardRow(const RecordingScoreboardPlayer* player,
                                      const ScoreboardRowContext& context);

}  // namespace kestrum

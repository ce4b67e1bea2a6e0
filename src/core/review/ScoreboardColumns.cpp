#include "core/review/ScoreboardColumns.h"

#include "core/library/LibraryPositions.h"
#include "core/telemetry/vocabulary/TextCase.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace kestrum {

namespace {

constexpr std::array<std::string_view, 5> kPositionOrder{"TOP", "JUNGLE", "MIDDLE", "BOTTOM", "UTILITY"};
constexpr int kUnknownPositionRank = 5;

}  // namespace

int positionRank(const std::optional<std::string>& position) {
    if (!position) return kUnknownPositionRank;
    const std::string upper = upperCased(*position);
    const auto found = std::find(kPositionOrder.begin(), kPositionOrder.end(), upper);
    return found == kPositionOrder.end() ? kUnknownPositionRank
                                         : static_cast<int>(found - kPositionOrder.begin());
}

const std::string& playerSortName(const RecordingScoreboardPlayer& player) {
    if (player.riotId) return *player.riotId;
    if (player.riotIdGameName) return *player.riotIdGameName;
    return player.summonerName;
}

std::string teamWordOf(const RecordingScoreboardPlayer& player) {
    return upperCased(player.team);
}

std::vector<const RecordingScoreboardPlayer*> teamColumn(const RecordingScoreboardSnapshot& snapshot,
                                                         std::string_view teamWord) {
    struct Keyed {
        int rank;
        const RecordingScoreboardPlayer* player;
    };
    std::vector<Keyed> keyed;
    for (const RecordingScoreboardPlayer& player : snapshot.players) {
        if (teamWordOf(player) == teamWord) keyed.push_back({positionRank(player.position), &player});
    }
    std::stable_sort(keyed.begin(), keyed.end(), [](const Keyed& a, const Keyed& b) {
        if (a.rank != b.rank) return a.rank < b.rank;
        return playerSortName(*a.player) < playerSortName(*b.player);
    });
    std::vector<const RecordingScoreboardPlayer*> column;
    column.reserve(keyed.size());
    for (const Keyed& entry : keyed) column.push_back(entry.player);
    return column;
}

std::int64_t teamKillTotal(const std::vector<const RecordingScoreboardPlayer*>& column) {
    return std::accumulate(
        column.begin(), column.end(), std::int64_t{0},
        [](std::int64_t sum, const RecordingScoreboardPlayer* player) { return sum + player->scores.kills; });
}

QString roleName(const std::optional<std::string>& position) {
    if (!position) return {};
    return QString::fromStdString(laneDisplayName(*position).value_or(std::string()));
}

QString kdaText(const RecordingScoreboardPlayer::Scores& scores) {
    return QStringLiteral("%1 / %2 / %3").arg(scores.kills).arg(scores.deaths).arg(scores.assists);
}

QString riotIdText(const RecordingScoreboardPlayer& player) {
    if (player.riotId && !player.riotId->empty()) return QString::fromStdString(*player.riotId);
    if (player.riotIdGameName && !player.riotIdGameName->empty()) {
        QString text = QString::fromStdString(*player.riotIdGameName);
        if (player.riotIdTagLine && !player.riotIdTagLine->empty()) {
            text += QLatin1Char('#') + QString::fromStdString(*player.riotIdTagLine);
        }
        return text;
    }
    return QString::fromStdString(player.summonerName);
}

QString riotIdToolTip(const QString& riotId, bool isCopied) {
    if (isCopied) return QStringLiteral("Riot ID copied");
    return QStringLiteral("Riot ID ") + riotId + QStringLiteral(". Click to copy");
}

QString scoreboardPlayerID(const RecordingScoreboardPlayer& player) {
    return QString::fromStdString(teamWordOf(player)) + QLatin1Char('|') +
           QString::fromStdString(player.summonerName);
}

}  // namespace kestrum

#include "core/review/RankToolTip.h"

#include "core/telemetry/vocabulary/TextCase.h"

#include <array>
#include <utility>

namespace kestrum {

namespace {

constexpr std::array<std::pair<std::string_view, const char*>, 4> kQueueNames{{
    {"RANKED_SOLO_5x5", "Ranked Solo/Duo"},
    {"RANKED_FLEX_SR", "Ranked Flex"},
    {"RANKED_TEAM_5x5", "Ranked 5s"},
    {"RANKED_TEAM_3x3", "Ranked 3s"},
}};

}  // namespace

QString rankedQueueName(std::string_view queueType) {
    for (const auto& [type, name] : kQueueNames) {
        if (type == queueType) return QString::fromUtf8(name);
    }
    return QStringLiteral("Ranked");
}

QString rankLabel(const RecordingMatchData::Rank& rank) {
    QString label = QString::fromStdString(capitalizedWords(rank.tier));
    if (!rank.division.empty()) label += QLatin1Char(' ') + QString::fromStdString(rank.division);
    return label;
}

std::optional<QString> rankToolTip(const RecordingMatchData::Participant& participant) {
    if (!participant.currentRank) return std::nullopt;
    const RecordingMatchData::Rank& rank = *participant.currentRank;
    QString tip = rankedQueueName(rank.queueType) + QStringLiteral(": ") + rankLabel(rank) +
                  QStringLiteral(", ") + QString::number(rank.leaguePoints);
    if (!participant.seasonHighRank) return tip + QStringLiteral(" LP");
    return tip + QStringLiteral(" LP. Highest observed this season: ") +
           rankLabel(*participant.seasonHighRank) + QLatin1Char('.');
}

}  // namespace kestrum

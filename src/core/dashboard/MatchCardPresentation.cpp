#include "core/dashboard/MatchCardPresentation.h"

#include <QStringList>

namespace kestrum::MatchCardPresentation {

namespace {

QString upper(const std::optional<std::string>& word) {
    return word ? QString::fromStdString(*word).toUpper() : QString();
}

bool hasFullKda(const MatchVideo& match) {
    return match.finalKills && match.finalDeaths && match.finalAssists;
}

}  // namespace

MapArt mapArt(const MatchVideo& match) {
    const QString mode = upper(match.gameMode);
    if (mode == QLatin1String("PRACTICE") || mode == QLatin1String("TOOL")) {
        return {QStringLiteral("map_practice_tool"), QStringLiteral("Practice Tool")};
    }
    switch (match.mapID.value_or(0)) {
        case 11:
            return {QStringLiteral("map_summoners_rift"), QStringLiteral("Summoner's Rift")};
        case 12:
            return {QStringLiteral("map_howling_abyss"), QStringLiteral("Howling Abyss")};
        case 21:
            return {QStringLiteral("map_nexus_blitz"), QStringLiteral("Nexus Blitz")};
        case 30:
            return {QStringLiteral("map_arena"), QStringLiteral("Arena")};
        default:
            break;
    }
    if (mode == QLatin1String("CLASSIC"))
        return {QStringLiteral("map_summoners_rift"), QStringLiteral("League map")};
    return {std::nullopt, QStringLiteral("League map")};
}

RoleArt roleArt(const std::optional<std::string>& position) {
    const QString word = upper(position);
    if (word == QLatin1String("TOP")) return {QStringLiteral("role_top"), QStringLiteral("Top")};
    if (word == QLatin1String("JUNGLE")) return {QStringLiteral("role_jungle"), QStringLiteral("Jungle")};
    if (word == QLatin1String("MIDDLE")) return {QStringLiteral("role_mid"), QStringLiteral("Mid")};
    if (word == QLatin1String("BOTTOM")) return {QStringLiteral("role_bot"), QStringLiteral("Bot")};
    if (word == QLatin1String("UTILITY")) return {QStringLiteral("role_support"), QStringLiteral("Support")};
    if (word == QLatin1String("SUPPORT")) return {QStringLiteral("role_support"), std::nullopt};
    return {};
}

QString kdaLine(const MatchVideo& match) {
    if (!hasFullKda(match)) return QStringLiteral("–/–/–");
    return QStringLiteral("%1/%2/%3").arg(*match.finalKills).arg(*match.finalDeaths).arg(*match.finalAssists);
}

QString kdaRatio(const MatchVideo& match) {
    if (!hasFullKda(match)) return QStringLiteral("—");
    if (*match.finalDeaths == 0) return QStringLiteral("Perfect KDA");
    const double ratio = static_cast<double>(*match.finalKills + *match.finalAssists) /
                         static_cast<double>(*match.finalDeaths);
    return QString::asprintf("%.2f:1 KDA", ratio);
}

QString championIdentifier(const MatchVideo& match) {
    if (match.championAssetName) return QString::fromStdString(*match.championAssetName);
    if (match.champion) return QString::fromStdString(*match.champion);
    return {};
}

QString accessibilityLabel(const MatchVideo& match) {
    QString label;
    if (match.didWin) label = *match.didWin ? QStringLiteral("Victory, ") : QStringLiteral("Defeat, ");
    QStringList pieces;
    if (match.champion) pieces << QString::fromStdString(*match.champion);
    const RoleArt role = roleArt(match.role);
    if (role.label) {
        pieces << *role.label;
    } else if (match.role) {
        pieces << QString::fromStdString(*match.role);
    }
    label += pieces.join(QStringLiteral(", "));
    if (hasFullKda(match)) label += QStringLiteral(", final KDA ") + kdaLine(match);
    return label;
}

QString favoriteTitle(bool isFavorite) {
    return isFavorite ? QStringLiteral("Remove from Favorites") : QStringLiteral("Add to Favorites");
}

QString cardTitle(const QString& title) {
    const QString separator = QStringLiteral(" · ");
    QStringList parts = title.split(separator);
    for (QString& part : parts) part.replace(QLatin1Char(' '), QChar(0x00A0));
    return parts.join(separator);
}

QString deletionActionTitle(bool isPending) {
    return isPending ? QStringLiteral("Undo Move to Trash") : QStringLiteral("Move to Trash");
}

}  // namespace kestrum::MatchCardPresentation

#include "SimulatedMatch.h"

#include "ServiceAnswers.h"

namespace kestrum::simulator {

SimulatedMatch::SimulatedMatch(MatchScript script, const GameClock& clock)
    : script_(std::move(script)), clock_(clock) {}

QJsonArray SimulatedMatch::playerList(double time) const {
    QJsonArray rows;
    for (const auto& player : script_.players) rows.append(script_.playerAt(player, time));
    return rows;
}

QJsonArray SimulatedMatch::eventFeed(double time) const {
    QJsonArray rows;
    for (const auto& event : script_.events) {
        if (event.value(QStringLiteral("EventTime")).toDouble() > time) break;
        rows.append(event);
    }
    return rows;
}

QJsonObject SimulatedMatch::activePlayerRow(double time) const {
    QJsonObject active{{QStringLiteral("summonerName"), script_.activePlayer},
                       {QStringLiteral("currentGold"), 500.0 + time * 2.0}};
    for (const auto& player : script_.players) {
        if (player.base.value(QStringLiteral("summonerName")).toString() != script_.activePlayer) continue;
        const QJsonObject row = script_.playerAt(player, time);
        for (const char* key : {"riotId", "riotIdGameName", "riotIdTagLine", "level"}) {
            const QString name = QString::fromLatin1(key);
            if (row.contains(name)) active.insert(name, row.value(name));
        }
    }
    return active;
}

QJsonObject SimulatedMatch::allGameData(double time) const {
    const QJsonObject gameData{{QStringLiteral("gameMode"), script_.gameMode},
                               {QStringLiteral("gameTime"), time},
                               {QStringLiteral("mapName"), QStringLiteral("Map11")},
                               {QStringLiteral("mapNumber"), 11},
                               {QStringLiteral("mapTerrain"), QStringLiteral("Default")}};
    return {{QStringLiteral("activePlayer"), activePlayerRow(time)},
            {QStringLiteral("allPlayers"), playerList(time)},
            {QStringLiteral("events"), QJsonObject{{QStringLiteral("Events"), eventFeed(time)}}},
            {QStringLiteral("gameData"), gameData}};
}

SimulatorAnswer SimulatedMatch::answer(const QString& path) {
    if (path == QLatin1String("/replay/game")) {
        if (!script_.replay) return ServiceAnswers::notFound(path);
        return ServiceAnswers::json(
            QJsonObject{{QStringLiteral("fov"), 50.0}, {QStringLiteral("interfaceAll"), true}});
    }
    const std::optional<double> time = clock_.gameTime();
    if (!time) return ServiceAnswers::notFound(path);
    const QString word = ServiceAnswers::endpointWord(path);
    if (!path.startsWith(QLatin1String("/liveclientdata/"))) return ServiceAnswers::notFound(path);
    if (word == QLatin1String("gamestats")) {
        return ServiceAnswers::json(QJsonObject{{QStringLiteral("gameMode"), script_.gameMode},
                                                {QStringLiteral("gameTime"), *time},
                                                {QStringLiteral("mapName"), QStringLiteral("Map11")},
                                                {QStringLiteral("mapNumber"), 11},
                                                {QStringLiteral("mapTerrain"), QStringLiteral("Default")}});
    }
    if (word == QLatin1String("activeplayername")) return ServiceAnswers::jsonString(script_.activePlayer);
    if (word == QLatin1String("playerlist")) return ServiceAnswers::json(playerList(*time));
    if (word == QLatin1String("eventdata")) {
        return ServiceAnswers::json(QJsonObject{{QStringLiteral("Events"), eventFeed(*time)}});
    }
    if (word == QLatin1String("allgamedata")) return ServiceAnswers::json(allGameData(*time));
    return ServiceAnswers::notFound(path);
}

}  // namespace kestrum::simulator

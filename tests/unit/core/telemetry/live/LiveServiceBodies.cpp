#include "LiveServiceBodies.h"

#include "core/telemetry/SessionDocumentCodec.h"

#include <QJsonDocument>

namespace kestrum::test {

QJsonObject gameStatsBody(double gameTime, const QString& gameMode) {
    return {{QStringLiteral("gameMode"), gameMode},
            {QStringLiteral("gameTime"), gameTime},
            {QStringLiteral("mapNumber"), 11}};
}

QJsonObject allGameDataBody(const QString& activeName, const QJsonArray& players, const QString& gameMode) {
    return {{QStringLiteral("activePlayer"), QJsonObject{{QStringLiteral("summonerName"), activeName}}},
            {QStringLiteral("allPlayers"), players},
            {QStringLiteral("gameData"), QJsonObject{{QStringLiteral("gameMode"), gameMode}}}};
}

QJsonObject allGameDataPlayer(const QString& summonerName, const QString& championName,
                              const QString& position, const QString& rawChampionName) {
    QJsonObject player{{QStringLiteral("summonerName"), summonerName},
                       {QStringLiteral("championName"), championName},
                       {QStringLiteral("position"), position}};
    if (!rawChampionName.isEmpty()) player.insert(QStringLiteral("rawChampionName"), rawChampionName);
    return player;
}

QJsonObject eventDataBody(const QJsonArray& events) {
    return {{QStringLiteral("Events"), events}};
}

QJsonObject championKill(int id, double time, const QString& killer, const QString& victim) {
    return {
        {QStringLiteral("EventID"), id},        {QStringLiteral("EventName"), QStringLiteral("ChampionKill")},
        {QStringLiteral("EventTime"), time},    {QStringLiteral("KillerName"), killer},
        {QStringLiteral("VictimName"), victim}, {QStringLiteral("Assisters"), QJsonArray{}}};
}

QByteArray playerListBody(const std::vector<RecordingScoreboardPlayer>& players) {
    auto encoded = encodeScoreboardPlayers(players);
    return encoded.ok() ? QByteArray::fromStdString(encoded.value()) : QByteArray();
}

QByteArray nameBody(const QString& name) {
    const QByteArray wrapped = QJsonDocument(QJsonArray{name}).toJson(QJsonDocument::Compact);
    return wrapped.mid(1, wrapped.size() - 2);
}

}  // namespace kestrum::test

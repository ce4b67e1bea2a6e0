#pragma once

#include "core/telemetry/RecordingScoreboardPlayer.h"
#include "support/ScoreboardPlayerRow.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <vector>

namespace kestrum::test {

// Bodies of the local service's answers, in the service's own form.
QJsonObject gameStatsBody(double gameTime, const QString& gameMode = QStringLiteral("CLASSIC"));
QJsonObject allGameDataBody(const QString& activeName, const QJsonArray& players,
                            const QString& gameMode = QStringLiteral("CLASSIC"));
QJsonObject allGameDataPlayer(const QString& summonerName, const QString& championName,
                              const QString& position, const QString& rawChampionName = {});
QJsonObject eventDataBody(const QJsonArray& events);
QJsonObject championKill(int id, double time, const QString& killer, const QString& victim);
QByteArray playerListBody(const std::vector<RecordingScoreboardPlayer>& players);
// A JSON string body, as /liveclientdata/activeplayername answers.
QByteArray nameBody(const QString& name);

}  // namespace kestrum::test

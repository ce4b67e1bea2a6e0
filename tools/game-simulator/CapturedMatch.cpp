#include "CapturedMatch.h"

#include "ServiceAnswers.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

namespace kestrum::simulator {

CapturedMatch::CapturedMatch(QDir directory, bool replay)
    : directory_(std::move(directory)), replay_(replay) {}

std::optional<QByteArray> CapturedMatch::savedFile(const QString& word) const {
    QFile file(directory_.filePath(word + QStringLiteral(".json")));
    if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
    return file.readAll();
}

std::optional<SimulatorAnswer> CapturedMatch::derived(const QString& word) const {
    const auto all = savedFile(QStringLiteral("allgamedata"));
    if (!all) return std::nullopt;
    const QJsonObject root = QJsonDocument::fromJson(*all).object();
    if (word == QLatin1String("eventdata") && root.value(QStringLiteral("events")).isObject()) {
        return ServiceAnswers::json(root.value(QStringLiteral("events")).toObject());
    }
    if (word == QLatin1String("playerlist") && root.value(QStringLiteral("allPlayers")).isArray()) {
        return ServiceAnswers::json(root.value(QStringLiteral("allPlayers")).toArray());
    }
    if (word == QLatin1String("gamestats") && root.value(QStringLiteral("gameData")).isObject()) {
        return ServiceAnswers::json(root.value(QStringLiteral("gameData")).toObject());
    }
    if (word == QLatin1String("activeplayername") && root.value(QStringLiteral("activePlayer")).isObject()) {
        // The service names the local player by the full riot id where it has one.
        const QJsonObject active = root.value(QStringLiteral("activePlayer")).toObject();
        const QJsonValue riotId = active.value(QStringLiteral("riotId"));
        return ServiceAnswers::jsonString(
            riotId.isString() ? riotId.toString() : active.value(QStringLiteral("summonerName")).toString());
    }
    return std::nullopt;
}

SimulatorAnswer CapturedMatch::answer(const QString& path) {
    if (path == QLatin1String("/replay/game")) {
        return replay_ ? ServiceAnswers::json(QJsonObject{{QStringLiteral("fov"), 50.0}})
                       : ServiceAnswers::notFound(path);
    }
    if (!path.startsWith(QLatin1String("/liveclientdata/"))) return ServiceAnswers::notFound(path);
    const QString word = ServiceAnswers::endpointWord(path);
    if (auto bytes = savedFile(word)) return {200, *bytes};
    if (auto answer = derived(word)) return *answer;
    return ServiceAnswers::notFound(path);
}

}  // namespace kestrum::simulator
